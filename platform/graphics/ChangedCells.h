// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "PictureScaler.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace lantern {

// The cells of a picture, each the size of a tile, and whether anything in them looks different.
class ChangedCells {
public:
    void Reset(int width, int height); // all unchanged
    // Looks at one row of the picture. The lines are of the picture's width.
    void CompareRow(int y, std::span<const std::uint8_t> before,
                    std::span<const std::uint8_t> after);
    void CompareRow(int y, std::span<const std::uint8_t> before, const ColourWords& coloursBefore,
                    std::span<const std::uint8_t> after, const ColourWords& coloursAfter);

    struct Block {
        AxisRange columns; // in pixels of the picture
        AxisRange rows;
        bool operator==(const Block&) const = default;
    };
    // The changed cells as few rectangles, none of which overlap.
    std::vector<Block> Blocks();

private:
    std::span<std::uint8_t> Band(int y);
    std::vector<AxisRange> ChangedRuns(std::span<const std::uint8_t> band) const;

    int m_width = 0;
    int m_height = 0;
    // For each band of rows a tile high, what differs in each column.
    std::vector<std::uint8_t> m_columns;
};

} // namespace lantern
