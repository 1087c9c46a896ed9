// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRect>

#include <cstdint>

namespace lantern {

// Twips in one pixel of the primary screen: 15 at 96 dots per inch. A twip is 1/1440 inch.
struct TwipsPerPixel {
    std::int32_t x = 15;
    std::int32_t y = 15;
};

TwipsPerPixel ScreenTwips();
QRect DesktopRect(); // of the primary screen, in pixels

} // namespace lantern
