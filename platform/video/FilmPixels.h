// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace lantern {

struct FilmRect {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
};

// Pixels of a whole film's picture, 0xFFRRGGBB.
struct FilmPixels {
    const std::uint32_t* pixels = nullptr;
    int stride = 0; // pixels from one row to the next
};

} // namespace lantern
