// SPDX-License-Identifier: GPL-3.0-or-later
#include "Zoom.h"

#include "PictureMemory.h"
#include "Rounding.h"

#include <cstdlib>

namespace lantern {

int ValidZoomStep(int step)
{
    return step < kFullScreenStep || step > kLargestZoomStep ? kDefaultZoomStep : step;
}

int NearestZoomForArea(std::int64_t areaPixels)
{
    constexpr std::int64_t kUnitArea = std::int64_t{kVisibleWidth} * kVisibleHeight;
    int nearest = 1;
    for (int step = 2; step <= kLargestZoomStep; ++step) {
        const auto distance = [&](std::int64_t i) {
            return std::abs(i * i * kUnitArea - areaPixels);
        };
        if (distance(step) < distance(nearest))
            nearest = step;
    }
    return nearest;
}

int NextZoomStep(int step)
{
    return step >= kLargestZoomStep ? kFullScreenStep : step + 1;
}

int PreviousZoomStep(int step)
{
    return step <= kFullScreenStep ? kLargestZoomStep : step - 1;
}

TwipSize WindowSizeForZoom(int step, float factor, const WindowFrame& frame)
{
    const double scale = step * static_cast<double>(factor);
    // The gap between picture and toolbar is counted with the horizontal unit, in both directions.
    const std::int32_t gap = 5 * frame.twipsX;
    return {RoundToEven(scale * kVisibleWidth * frame.twipsX + 2 * frame.marginX),
            RoundToEven(frame.toolbarHeight + scale * kVisibleHeight * frame.twipsY +
                        2 * frame.marginX + gap)};
}

} // namespace lantern
