// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace lantern {

// The pixels of one colour among 4 by 4: bit row * 4 + column.
using WindowMask = std::uint16_t;

// How far points between four pixels lie inside of a colour's edge, told from the pixels that have
// this colour and their surroundings. The points, or nodes, are those of the square between the
// centres of the inner four of 4 by 4 pixels: its corners, the middles of its sides and its own
// middle. Each is read from the pixels around it alone, alike on both sides of it: so the squares
// of a picture agree where they meet.
//
// The distances were learned from shapes as letters have them; see LetterSeed.h.
class DistanceTable {
public:
    static constexpr int kNodes = 9; // row by row
    // 127 of these are half a pixel, and no distance is longer; negative ones lie outside.
    using Distances = std::array<std::int8_t, kNodes>;

    static constexpr int kCornerSide = 3;  // a corner sees 3 by 3 pixels
    static constexpr int kSideColumns = 4; // the middle of a level side sees 4 by 3
    static constexpr int kSideRows = 3;
    static constexpr int kMiddleSide = 4;

    // The seed has a distance for each class of patterns: of corners, of sides, of the middle.
    explicit DistanceTable(std::span<const std::int8_t> seed);

    void Read(WindowMask mask, Distances& distances) const
    {
        const WindowMask turned = Transposed(mask);
        distances = {Corner(mask),       Side(mask),       Corner(mask >> 1U),
                     Side(turned),       m_middles[mask],  Side(turned >> 4U),
                     Corner(mask >> 4U), Side(mask >> 4U), Corner(mask >> 5U)};
    }

private:
    static constexpr unsigned kCornerBits = 0x777; // of three rows of four
    static constexpr unsigned kSideBits = 0xFFF;

    static WindowMask Transposed(unsigned mask)
    {
        unsigned swapped = (mask ^ (mask >> 3)) & 0x0A0AU;
        mask ^= swapped ^ (swapped << 3);
        swapped = (mask ^ (mask >> 6)) & 0x00CCU;
        return static_cast<WindowMask>(mask ^ swapped ^ (swapped << 6));
    }
    std::int8_t Corner(unsigned mask) const { return m_corners[mask & kCornerBits]; }
    std::int8_t Side(unsigned mask) const { return m_sides[mask & kSideBits]; }

    std::array<std::int8_t, kCornerBits + 1> m_corners{};
    std::array<std::int8_t, kSideBits + 1> m_sides{};
    std::vector<std::int8_t> m_middles;
};

} // namespace lantern
