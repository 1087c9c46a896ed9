// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "VirtualBuffers.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>

namespace lantern {

// A tile of which no two rows are alike.
inline constexpr std::array<std::uint8_t, 12> kTileRows = {0x3F, 0x00, 0x20, 0x01, 0x2A, 0x15,
                                                           0x38, 0x07, 0x1E, 0x21, 0x33, 0x0C};

class Buffers : public testing::Test {
protected:
    Buffers() { buffers.FGvbinit(); }

    int Open(int width, int height)
    {
        const int handle = buffers.FGvballoc(width, height);
        buffers.FGvbopen(handle);
        return handle;
    }
    // Gives each pixel of the active buffer an index that tells its place.
    void Number(int width, int height)
    {
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x)
                Put(x, y, y * width + x + 1);
        }
    }
    void Put(int x, int y, int index)
    {
        buffers.FGsetcolor(index);
        buffers.FGputpixel(x, y);
    }

    VirtualBuffers buffers;
};

} // namespace lantern
