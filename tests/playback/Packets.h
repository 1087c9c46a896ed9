// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Track.h"

#include <array>
#include <cstdint>

// Packets as an encoder would make them, for tests.
namespace lantern::packets {

inline CdgPacket Graphics(int instruction, std::array<std::uint8_t, 16> data = {})
{
    return {
        .Command = 9, .Instruction = static_cast<std::uint8_t>(instruction), .PacketData = data};
}

inline CdgPacket MemoryPreset(std::uint8_t colour, std::uint8_t repeat = 0)
{
    return Graphics(1, {colour, repeat});
}

inline CdgPacket BorderPreset(std::uint8_t colour)
{
    return Graphics(2, {colour});
}

struct TileFields {
    std::uint8_t colour0 = 0;
    std::uint8_t colour1 = 0;
    std::uint8_t row = 0;
    std::uint8_t column = 0;
    std::uint8_t channel = 0;
    bool exclusive = false;
    std::array<std::uint8_t, 12> rows = {};
};

inline CdgPacket Tile(const TileFields& tile)
{
    CdgPacket packet = Graphics(tile.exclusive ? 38 : 6);
    auto& data = packet.PacketData;
    data[0] = static_cast<std::uint8_t>(tile.colour0 | (tile.channel >> 2 & 3) << 4);
    data[1] = static_cast<std::uint8_t>(tile.colour1 | (tile.channel & 3) << 4);
    data[2] = tile.row;
    data[3] = tile.column;
    std::copy(tile.rows.begin(), tile.rows.end(), data.begin() + 4);
    return packet;
}

struct ScrollFields {
    bool copy = false;
    std::uint8_t colour = 0;
    int horizontal = 0;
    int horizontalOffset = 0;
    int vertical = 0;
    int verticalOffset = 0;
};

inline CdgPacket Scroll(const ScrollFields& scroll)
{
    return Graphics(scroll.copy ? 24 : 20,
                    {scroll.colour,
                     static_cast<std::uint8_t>(scroll.horizontal << 4 | scroll.horizontalOffset),
                     static_cast<std::uint8_t>(scroll.vertical << 4 | scroll.verticalOffset)});
}

// Eight entries, each as three digits of four bits: 0xRGB.
inline CdgPacket Colours(bool high, std::array<std::uint16_t, 8> entries)
{
    CdgPacket packet = Graphics(high ? 31 : 30);
    for (std::size_t i = 0; i < entries.size(); ++i) {
        packet.PacketData[2 * i] = static_cast<std::uint8_t>(entries[i] >> 6);
        packet.PacketData[2 * i + 1] = static_cast<std::uint8_t>(entries[i] & 0x3F);
    }
    return packet;
}

} // namespace lantern::packets
