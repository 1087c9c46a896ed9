// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "VirtualBuffers.h"

#include <gtest/gtest.h>

namespace lantern {

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
