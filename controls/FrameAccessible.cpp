// SPDX-License-Identifier: GPL-3.0-or-later
#include "FrameAccessible.h"

#include "ctlFrame.h"

namespace lantern {

FrameAccessible::FrameAccessible(ctlFrame& frame)
    : QAccessibleWidget(&frame, QAccessible::Grouping), m_frame(frame)
{
}

QString FrameAccessible::text(QAccessible::Text kind) const
{
    if (kind != QAccessible::Name)
        return QAccessibleWidget::text(kind);
    // Frames show an ampersand as it is, so it is read as it is.
    const QString given = m_frame.accessibleName();
    return given.isEmpty() ? m_frame.Caption().trimmed() : given;
}

} // namespace lantern
