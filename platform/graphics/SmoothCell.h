// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ColourRamps.h"
#include "DistanceTable.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace lantern {

// The square between the centres of four pixels, ready to be painted.
struct SmoothCell {
    static constexpr std::size_t kMostLooks = 4; // those of its four pixels
    // Over the nodes of DistanceTable, row by row.
    using Field = std::array<std::int16_t, DistanceTable::kNodes>;

    enum class Kind : std::uint8_t {
        Pair,   // an edge between two colours: one field, the distance into the second
        Shades, // colours on one line: a field for each step from one to the next
        Crowd,  // other colours: a field for each, the greatest ones mix
    };

    int column = 0;
    Kind kind = Kind::Pair;
    std::uint8_t looks = 2;
    std::array<Field, kMostLooks>
        fields{}; // 508 of a Pair's and Shades' are a pixel, 254 of a Crowd's
    // Of a pair, the first; of a crowd, from the second-nearest colour to the nearest one:
    // nearest * kMostLooks + second-nearest.
    std::array<const std::uint32_t*, kMostLooks * kMostLooks> ramps{};
    std::array<std::uint32_t, kMostLooks> shades{}; // in the order along the line
};

// The 4 by 4 pixels around a cell, by their looks.
struct CellWindow {
    // Each row's first pixel, of which four exist.
    explicit CellWindow(const std::array<const std::uint8_t*, 4>& rows);

    std::uint8_t Look(std::size_t row, std::size_t column) const;
    WindowMask MaskOf(std::uint8_t look) const;

    std::array<std::uint64_t, 2> halves{}; // two rows each, the first pixel in the lowest byte
};

// Fills in all but the column. Two of the inner four pixels differ.
void MakeCell(const CellWindow& window, const DistanceTable& table, ColourRamps& colours,
              SmoothCell& cell);

} // namespace lantern
