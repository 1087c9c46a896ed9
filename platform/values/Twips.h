// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Rounding.h"

#include <QRect>

#include <cstdint>

// Lengths in twips, 1/1440 inch, the unit of the windows' layout.
namespace lantern {

struct TwipSize {
    std::int32_t width = 0;
    std::int32_t height = 0;

    bool operator==(const TwipSize&) const = default;
};

struct TwipRect {
    std::int32_t left = 0;
    std::int32_t top = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;

    bool operator==(const TwipRect&) const = default;
};

// Of a screen: 15 at 96 dots per inch.
struct TwipsPerPixel {
    std::int32_t x = 15;
    std::int32_t y = 15;
};

// The rectangle of that size in the middle of a desktop.
constexpr TwipRect CentredOn(TwipSize desktop, TwipSize window)
{
    return {(desktop.width - window.width) / 2, (desktop.height - window.height) / 2, window.width,
            window.height};
}

// To the nearest pixel, ties to the even one.
inline int NearestPixel(std::int32_t twips, std::int32_t twipsPerPixel)
{
    return RoundToEven(static_cast<double>(twips) / twipsPerPixel);
}

// A size loses the part of a pixel that it doesn't fill.
constexpr QSize PixelsOf(TwipSize size, TwipsPerPixel twips)
{
    return {size.width / twips.x, size.height / twips.y};
}

// The place is the nearest pixel.
inline QRect PixelsOf(const TwipRect& rect, TwipsPerPixel twips)
{
    return {QPoint(NearestPixel(rect.left, twips.x), NearestPixel(rect.top, twips.y)),
            PixelsOf(TwipSize{rect.width, rect.height}, twips)};
}

} // namespace lantern
