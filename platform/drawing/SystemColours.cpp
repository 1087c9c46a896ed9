// SPDX-License-Identifier: GPL-3.0-or-later
#include "SystemColours.h"

#include <array>

namespace lantern {
namespace {

// The classic light palette, by system colour number. The same on every desktop, so that a design
// value means the same everywhere.
constexpr std::array<QRgb, 31> kSystemColours = {
    0xFFD4D0C8, // 0 scroll bar
    0xFF3A6EA5, // 1 desktop
    0xFF0A246A, // 2 active title bar
    0xFF808080, // 3 inactive title bar
    0xFFD4D0C8, // 4 menu
    0xFFFFFFFF, // 5 window
    0xFF000000, // 6 window frame
    0xFF000000, // 7 menu text
    0xFF000000, // 8 window text
    0xFFFFFFFF, // 9 title bar text
    0xFFD4D0C8, // 10 active border
    0xFFD4D0C8, // 11 inactive border
    0xFF808080, // 12 application workspace
    0xFF0A246A, // 13 selection
    0xFFFFFFFF, // 14 selected text
    0xFFD4D0C8, // 15 button face
    0xFF808080, // 16 button shadow
    0xFF808080, // 17 grey text
    0xFF000000, // 18 button text
    0xFFD4D0C8, // 19 inactive title bar text
    0xFFFFFFFF, // 20 button highlight
    0xFF404040, // 21 dark shadow
    0xFFD4D0C8, // 22 light
    0xFF000000, // 23 tool tip text
    0xFFFFFFE1, // 24 tool tip
    0xFFB5B5B5, // 25 alternate face
    0xFF000080, // 26 hot tracking
    0xFFA6CAF0, // 27 active title bar gradient
    0xFFC0C0C0, // 28 inactive title bar gradient
    0xFF0A246A, // 29 menu highlight
    0xFFD4D0C8, // 30 menu bar
};

constexpr QRgb kBlackPixel = 0xFF000000;

} // namespace

QRgb ResolveColour(ColourValue value)
{
    if ((value & 0x80000000u) == 0)
        return kBlackPixel | (value & 0xFF) << 16 | (value & 0xFF00) | (value >> 16 & 0xFF);
    const std::size_t number = value & 0xFF;
    return number < kSystemColours.size() ? kSystemColours[number] : kBlackPixel;
}

QRgb ResolveColour(SystemColour colour)
{
    return ResolveColour(SystemReference(colour));
}

} // namespace lantern
