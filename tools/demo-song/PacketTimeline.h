// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Track.h"

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace lantern::demo {

struct Colour {
    std::uint8_t red = 0, green = 0, blue = 0; // 0 to 15 each, as the disc carries them
};
using Palette = std::array<Colour, 16>;
using TileRows = std::array<std::uint8_t, 12>;

CdgPacket MemoryPreset(int colour);
CdgPacket BorderPreset(int colour);
CdgPacket TileBlock(int column, int row, int colour0, int colour1, const TileRows& rows);
CdgPacket TileBlockXor(int column, int row, int colour0, int colour1, const TileRows& rows);
CdgPacket ScrollPreset(int colour, int verticalCommand, int verticalOffset);
CdgPacket LoadLow(const Palette& palette);
CdgPacket LoadHigh(const Palette& palette);

// The packets of a disc by their time. What must come at its time is placed before what only has
// to come soon.
class PacketTimeline {
public:
    explicit PacketTimeline(double seconds);

    // Takes the first free packet at or after the time, and returns the time after it.
    double Place(double seconds, const CdgPacket& packet);

    std::vector<CdgPacket> Packets() const; // gaps are packets of zero bytes

private:
    std::vector<std::optional<CdgPacket>> m_slots;
};

} // namespace lantern::demo
