// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "VirtualBuffers.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace lantern {

// A surface whose image is a plain vector, with a margin in each row that must stay untouched.
class RetainedImage : public ScaleSurface {
public:
    static constexpr std::uint32_t kUntouched = 0xDEADBEEF;
    static constexpr int kMargin = 3;

    RetainedImage(int newWidth, int newHeight, double newRatio = 1.0)
    {
        Replace(newWidth, newHeight, newRatio);
    }

    SurfaceImage Image() override
    {
        ++imageCalls;
        return {pixels.data(), width, height, width + kMargin, ratio, generation, look};
    }
    void Changed(const DeviceRect& rect) override { changes.push_back(rect); }

    void Replace(int newWidth, int newHeight, double newRatio)
    {
        width = newWidth;
        height = newHeight;
        ratio = newRatio;
        pixels.assign(Index(0, height), kUntouched);
        ++generation;
    }
    std::size_t Index(int x, int y) const
    {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width + kMargin) +
               static_cast<std::size_t>(x);
    }
    std::uint32_t At(int x, int y) const { return pixels[Index(x, y)]; }

    int width = 0;
    int height = 0;
    double ratio = 1.0;
    std::uint64_t generation = 0;
    PictureLook look = PictureLook::Sharp;
    std::vector<std::uint32_t> pixels;
    std::vector<DeviceRect> changes;
    int imageCalls = 0;
};

inline bool operator==(const DeviceRect& left, const DeviceRect& right)
{
    return left.left == right.left && left.top == right.top && left.width == right.width &&
           left.height == right.height;
}

} // namespace lantern
