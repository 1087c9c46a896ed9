// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>

#include <array>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

namespace lantern::test {

// A graphics packet as the disc standard lays it out, made here from its fields.
struct Packet {
    std::uint8_t instruction = 0; // 0 for a packet that does nothing
    std::array<std::uint8_t, 16> data = {};

    using Colours = std::array<QRgb, 8>;
    static Packet MemoryPreset(int colour);
    static Packet BorderPreset(int colour);
    static Packet Tile(int column, int row, int colour0, int colour1,
                       const std::array<std::uint8_t, 12>& rows);
    // The format has four bits for each component: colours are multiples of 17.
    static Packet LoadColoursLow(const Colours& colours);
    static Packet LoadColoursHigh(const Colours& colours);
};

// The packets of a track, laid out in time: 300 to the second, the first one number 1.
class PacketSheet {
public:
    explicit PacketSheet(double seconds);

    // Puts a packet at its number, which has to be free.
    void Put(int number, const Packet& packet);
    void Write(const std::filesystem::path& path) const;

private:
    std::vector<Packet> m_packets;
};

} // namespace lantern::test
