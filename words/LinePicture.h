// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "LineReader.h"

#include <cstdint>
#include <vector>

namespace lantern {

// The letters of a line, cut out.
struct LineMask {
    int left = 0; // in the picture
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> pixels; // 1 for a letter's

    std::uint8_t At(int x, int y) const
    {
        return pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                      static_cast<std::size_t>(x)];
    }
};

// How the letters' edges look.
enum class LetterEdges : std::uint8_t { Crisp, Soft };

// As a reader reads it best: dark on white, twice as large with round edges, and with a margin.
GreyPicture PictureOf(const LineMask& mask, LetterEdges edges);
// The column of the mask that a column of that picture shows.
int MaskColumn(int pictureColumn);

} // namespace lantern
