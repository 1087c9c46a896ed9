// SPDX-License-Identifier: GPL-3.0-or-later
#include "PacketSheet.h"

#include "Process.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace lantern::test {
namespace {

constexpr double kPacketsPerSecond = 300.0;
constexpr std::size_t kPacketSize = 24;
constexpr std::size_t kDataOffset = 4;
constexpr char kGraphicsCommand = 9;

Packet LoadColours(std::uint8_t instruction, const Packet::Colours& colours)
{
    Packet packet{.instruction = instruction};
    for (std::size_t i = 0; i < colours.size(); ++i) {
        // Four bits each: 00rrrrgg 00ggbbbb.
        const int red = qRed(colours[i]) / 17;
        const int green = qGreen(colours[i]) / 17;
        const int blue = qBlue(colours[i]) / 17;
        packet.data[2 * i] = static_cast<std::uint8_t>((red << 2) | (green >> 2));
        packet.data[2 * i + 1] = static_cast<std::uint8_t>(((green & 3) << 4) | blue);
    }
    return packet;
}

Packet OneColour(std::uint8_t instruction, int colour)
{
    Packet packet{.instruction = instruction};
    packet.data[0] = static_cast<std::uint8_t>(colour);
    return packet;
}

} // namespace

Packet Packet::MemoryPreset(int colour)
{
    return OneColour(1, colour);
}

Packet Packet::BorderPreset(int colour)
{
    return OneColour(2, colour);
}

Packet Packet::Tile(int column, int row, int colour0, int colour1,
                    const std::array<std::uint8_t, 12>& rows)
{
    Packet packet{.instruction = 6};
    packet.data = {static_cast<std::uint8_t>(colour0), static_cast<std::uint8_t>(colour1),
                   static_cast<std::uint8_t>(row), static_cast<std::uint8_t>(column)};
    std::ranges::copy(rows, packet.data.begin() + 4);
    return packet;
}

Packet Packet::LoadColoursLow(const Colours& colours)
{
    return LoadColours(30, colours);
}

Packet Packet::LoadColoursHigh(const Colours& colours)
{
    return LoadColours(31, colours);
}

PacketSheet::PacketSheet(double seconds)
    : m_packets(static_cast<std::size_t>(std::lround(seconds * kPacketsPerSecond)))
{
}

void PacketSheet::Put(int number, const Packet& packet)
{
    Packet& place = m_packets.at(static_cast<std::size_t>(number) - 1);
    if (place.instruction != 0)
        throw std::logic_error("two packets with the number " + std::to_string(number));
    place = packet;
}

void PacketSheet::Write(const std::filesystem::path& path) const
{
    std::string bytes(m_packets.size() * kPacketSize, '\0');
    for (std::size_t i = 0; i < m_packets.size(); ++i) {
        const Packet& packet = m_packets[i];
        if (packet.instruction == 0)
            continue;
        bytes[i * kPacketSize] = kGraphicsCommand;
        bytes[i * kPacketSize + 1] = static_cast<char>(packet.instruction);
        std::ranges::transform(
            packet.data, bytes.begin() + static_cast<std::ptrdiff_t>(i * kPacketSize + kDataOffset),
            [](std::uint8_t byte) { return static_cast<char>(byte); });
    }
    WriteFile(path, bytes);
}

} // namespace lantern::test
