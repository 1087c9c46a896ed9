// SPDX-License-Identifier: GPL-3.0-or-later
#include "PicDrop.h"

#include "PictureSurface.h"
#include "modDragDrop.h"

#include <utility>

namespace lantern {

PicDrop::PicDrop(PictureSurface& pic, OpenMedia openMedia)
    : m_pic(pic), m_openMedia(std::move(openMedia))
{
    m_pic.DragOver = [this](DropData& data, DragState state) { return DragOver(data, state); };
    m_pic.Drop = [this](DropData& data) { return Drop(data); };
}

// Fetching the list is a question to another program, and the list stays as it is while the drag
// lasts: it is asked once.
DropEffect PicDrop::DragOver(DropData& data, DragState state)
{
    if (state == DragState::Enter) {
        UnicodeDropFiles(data);
        m_effect = FirstUsableFile(data.Files).isEmpty() ? DropEffect::None : DropEffect::Move;
    } else if (state == DragState::Leave) {
        m_effect = DropEffect::None;
    }
    return m_effect;
}

bool PicDrop::Drop(DropData& data)
{
    m_effect = DropEffect::None;
    if (!UnicodeDropFiles(data))
        return false;
    const QString file = FirstUsableFile(data.Files);
    if (file.isEmpty())
        return false;
    QMetaObject::invokeMethod(
        &m_pic, [this, file] { m_openMedia(file); }, Qt::QueuedConnection);
    return true;
}

} // namespace lantern
