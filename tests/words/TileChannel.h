// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Track.h"

#include <array>
#include <cstdint>
#include <deque>
#include <random>
#include <set>
#include <utility>
#include <vector>

namespace lantern::test {

// A picture that is brought to a disc packet by packet, as an encoder does: what it should be is
// put here, and each packet brings the tile that is wanted most.
class TileChannel {
public:
    static constexpr int kWidth = 300;
    static constexpr int kHeight = 216;
    static constexpr int kColours = 16;

    enum class Urgency : std::uint8_t { Sung, Drawn };
    using Palette = std::array<std::uint16_t, kColours>; // 0xRGB

    // One packet in so many is lost or has wrong bits; 0 for none.
    TileChannel(bool exclusive, int damagedOneIn, std::uint32_t seed);

    void Put(int x, int y, std::uint8_t index, Urgency urgency);
    std::uint8_t Wanted(int x, int y) const { return m_wanted[Index(x, y)]; }
    // These come before any tile.
    void Clear(std::uint8_t index);
    void Load(const Palette& palette);
    void ScrollUp(std::uint8_t index); // by one row of tiles

    void SendOne();
    int SentCount() const { return m_packets.Count(); }
    bool IsIdle() const { return m_queue.empty() && m_dirty.empty(); }
    OneBasedArray<CdgPacket> Take() { return std::move(m_packets); }

private:
    static std::size_t Index(int x, int y) { return static_cast<std::size_t>(y * kWidth + x); }
    void QueueTile(int tile);
    CdgPacket Damaged(CdgPacket packet);

    bool m_exclusive;
    int m_damagedOneIn;
    std::mt19937 m_random;
    std::vector<std::uint8_t> m_wanted;
    std::vector<std::uint8_t> m_shown;
    std::set<std::pair<Urgency, int>> m_dirty;
    std::deque<CdgPacket> m_queue;
    OneBasedArray<CdgPacket> m_packets;
};

} // namespace lantern::test
