// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "PacketInterpreter.h"
#include "Painter.h"
#include "PictureMemory.h"
#include "Track.h"

#include <QImage>

namespace lantern::tool {

// A song's picture, which nobody watches: it is looked at only when it stands.
class OfflinePicture {
public:
    OfflinePicture();

    PictureMemory& Memory() { return m_memory; }
    // Clear at packet 0, as the player shows it before the first one.
    void RunTo(const OneBasedArray<CdgPacket>& packets, PacketIndex packet);

private:
    class NoPainter final : public Painter {
        void PaintDisplay() override {}
    };

    VirtualBuffers m_buffers;
    PictureMemory m_memory{m_buffers};
    NoPainter m_painter;
    PacketInterpreter m_interpreter{m_memory, m_painter};
};

// What the window would show of the picture, 288 by 192 pixels in its colours.
QImage VisiblePicture(PictureMemory& picture);
// The same, scaled to a size by the window's own means, on the surface of the picture's buffers.
void ShowScaled(PictureMemory& picture, QSize size);
// The same as an image.
QImage ScaledPicture(PictureMemory& picture, QSize size, PictureLook look);

QByteArray PngOf(const QImage& image);

} // namespace lantern::tool
