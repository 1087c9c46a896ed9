// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Painter.h"
#include "PictureMemory.h"
#include "Track.h"

#include <cstdint>

namespace lantern {

// Applies subcode packets to the picture, and asks for a paint at the pace of 20 a second. It
// knows neither clock nor audio. Any bit pattern is a legal packet; there is no failure.
class PacketInterpreter {
public:
    PacketInterpreter(PictureMemory& picture, Painter& painter);

    // Interprets the picture's CurrentPacket, whose number in the stream is given. Packet 1
    // resets the picture first; number 0 resets and shows it, and reads no packet.
    void ShowCode(PacketIndex packetNo);
    // Black on the screen at once, whatever else goes on.
    void ClearPicture();

private:
    bool Interpret(bool repaint);
    void MemoryPreset();
    void BorderPreset();
    void TileBlock(bool exclusive);
    void Scroll(CdgInstruction instruction);
    void FillScrollEdge(CdgInstruction instruction, int minX, int maxX, int minY, int maxY,
                        int colour);
    void LoadColourTable(int baseEntry);

    PictureMemory& m_picture;
    VirtualBuffers& m_buffers;
    Painter& m_painter;
};

} // namespace lantern
