// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Twips.h"

#include <cstdint>

// The steps of the display size. Steps 1 to 5 are that multiple of the visible picture; step 0 is
// the whole screen. Lengths are in twips.
namespace lantern {

inline constexpr int kFullScreenStep = 0;
inline constexpr int kDefaultZoomStep = 2;
inline constexpr int kLargestZoomStep = 5;

// What a window of a zoom step is made of besides the picture.
struct WindowFrame {
    std::int32_t twipsX = 15; // twips in one pixel
    std::int32_t twipsY = 15;
    std::int32_t marginX = 0;
    std::int32_t toolbarHeight = 0;
};

// A step outside 0 to 5 becomes the default.
int ValidZoomStep(int step);

// The step whose picture is nearest in area; of two that are as near, the smaller one.
int NearestZoomForArea(std::int64_t areaPixels);

// The ring of steps: 1, 2, 3, 4, 5, 0 and round again.
int NextZoomStep(int step);
int PreviousZoomStep(int step);

// The window that shows the picture at the step's size times the factor.
TwipSize WindowSizeForZoom(int step, float factor, const WindowFrame& frame);

} // namespace lantern
