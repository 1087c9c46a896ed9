// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "PacketInterpreter.h"
#include "Painter.h"
#include "PictureMemory.h"
#include "ReferencePicture.h"

#include <gtest/gtest.h>

#include <vector>

namespace lantern {

// Shows nothing and remembers when it was asked to.
class RecordingPainter : public Painter {
public:
    explicit RecordingPainter(PictureMemory& picture) : m_picture(picture) {}

    void PaintDisplay() override
    {
        ++Paints;
        PaintedWhileCatchingUp = PaintedWhileCatchingUp || m_picture.CatchingUp;
        m_picture.PictureDirty = false;
    }

    int Paints = 0;
    bool PaintedWhileCatchingUp = false;

private:
    PictureMemory& m_picture;
};

// A picture with its interpreter, ready to draw.
struct PictureSet {
    PictureSet() { Picture.SetupGraphics(true); }
    ~PictureSet() { Picture.SetupGraphics(false); }
    PictureSet(const PictureSet&) = delete;
    PictureSet& operator=(const PictureSet&) = delete;

    void Show(PacketIndex packetNo, const CdgPacket& packet)
    {
        Picture.CurrentPacket = packet;
        Interpreter.ShowCode(packetNo);
    }

    int Pixel(int x, int y) const { return Buffers.FGgetpixel(x, y); }
    // The colour in which the top left pixel shows, 0xFFRRGGBB.
    std::uint32_t ShownColour() const
    {
        struct : ClipSink {
            void SetImage(const ClipImage& image) override { colour = image.pixels.front(); }
            std::uint32_t colour = 0;
        } sink;
        Buffers.FGvb2clip(0, 0, 0, 0, sink);
        return sink.colour;
    }
    std::vector<std::uint8_t> Pixels() const
    {
        const auto pixels = Buffers.Pixels(Picture.PictureBuffer);
        return {pixels.begin(), pixels.end()};
    }

    VirtualBuffers Buffers;
    PictureMemory Picture{Buffers};
    RecordingPainter Painter{Picture};
    PacketInterpreter Interpreter{Picture, Painter};
};

// Whether all that a paint shows is the same.
inline bool StateEquals(const PictureMemory& picture, const ReferencePicture& reference)
{
    return picture.ColourTable == reference.Colours && picture.BorderColour == reference.Border &&
           picture.ViewLeft == reference.Left && picture.ViewTop == reference.Top;
}

inline bool PixelsEqual(const PictureSet& set, const ReferencePicture& reference)
{
    return std::ranges::equal(set.Buffers.Pixels(set.Picture.PictureBuffer), reference.Pixels());
}

} // namespace lantern
