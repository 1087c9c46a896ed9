// SPDX-License-Identifier: GPL-3.0-or-later
#include "PacketTimeline.h"

#include <cmath>
#include <stdexcept>

namespace lantern::demo {
namespace {

CdgPacket Tile(CdgInstruction code, int column, int row, int colour0, int colour1,
               const TileRows& rows)
{
    CdgPacket packet = GraphicsPacket(code);
    packet.PacketData[0] = static_cast<std::uint8_t>(colour0);
    packet.PacketData[1] = static_cast<std::uint8_t>(colour1);
    packet.PacketData[2] = static_cast<std::uint8_t>(row);
    packet.PacketData[3] = static_cast<std::uint8_t>(column);
    for (std::size_t i = 0; i < rows.size(); ++i)
        packet.PacketData[4 + i] = rows[i];
    return packet;
}

// Two bytes of six bits an entry: RRRRGG GGBBBB.
CdgPacket LoadColours(CdgInstruction code, const Palette& palette, std::size_t first)
{
    CdgPacket packet = GraphicsPacket(code);
    for (std::size_t i = 0; i < 8; ++i) {
        const Colour colour = palette[first + i];
        packet.PacketData[2 * i] = static_cast<std::uint8_t>(colour.red << 2 | colour.green >> 2);
        packet.PacketData[2 * i + 1] =
            static_cast<std::uint8_t>((colour.green & 3) << 4 | colour.blue);
    }
    return packet;
}

} // namespace

CdgPacket MemoryPreset(int colour)
{
    CdgPacket packet = GraphicsPacket(CdgInstruction::MemoryPreset);
    packet.PacketData[0] = static_cast<std::uint8_t>(colour);
    return packet;
}

CdgPacket BorderPreset(int colour)
{
    CdgPacket packet = GraphicsPacket(CdgInstruction::BorderPreset);
    packet.PacketData[0] = static_cast<std::uint8_t>(colour);
    return packet;
}

CdgPacket TileBlock(int column, int row, int colour0, int colour1, const TileRows& rows)
{
    return Tile(CdgInstruction::TileBlock, column, row, colour0, colour1, rows);
}

CdgPacket TileBlockXor(int column, int row, int colour0, int colour1, const TileRows& rows)
{
    return Tile(CdgInstruction::TileBlockXor, column, row, colour0, colour1, rows);
}

CdgPacket ScrollPreset(int colour, int verticalCommand, int verticalOffset)
{
    CdgPacket packet = GraphicsPacket(CdgInstruction::ScrollPreset);
    packet.PacketData[0] = static_cast<std::uint8_t>(colour);
    packet.PacketData[2] = static_cast<std::uint8_t>(verticalCommand << 4 | verticalOffset);
    return packet;
}

CdgPacket LoadLow(const Palette& palette)
{
    return LoadColours(CdgInstruction::LoadColourTableLow, palette, 0);
}

CdgPacket LoadHigh(const Palette& palette)
{
    return LoadColours(CdgInstruction::LoadColourTableHigh, palette, 8);
}

PacketTimeline::PacketTimeline(double seconds)
    : m_slots(static_cast<std::size_t>(std::lround(seconds * kPacketsPerSecond)))
{
}

double PacketTimeline::Place(double seconds, const CdgPacket& packet)
{
    auto slot = static_cast<std::size_t>(std::lround(seconds * kPacketsPerSecond));
    while (slot < m_slots.size() && m_slots[slot])
        ++slot;
    if (slot >= m_slots.size())
        throw std::runtime_error("the picture is longer than the song");
    m_slots[slot] = packet;
    return static_cast<double>(slot + 1) / kPacketsPerSecond;
}

std::vector<CdgPacket> PacketTimeline::Packets() const
{
    std::vector<CdgPacket> packets;
    packets.reserve(m_slots.size());
    for (const auto& slot : m_slots)
        packets.push_back(slot.value_or(CdgPacket()));
    return packets;
}

} // namespace lantern::demo
