// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "RetainedSurface.h"
#include "Twips.h"

#include <QRect>

#include <cstdint>
#include <optional>

namespace lantern {

// Where the pointer stands in a menu that opens at it, in pixels from its corner.
inline constexpr int kInsideMenu = 5;

// How a menu is laid out. It is reckoned in twips; pixels come out at the end.
struct MenuGeometry {
    TwipsPerPixel twips;
    std::int32_t itemHeight = 0; // twips
    bool hasIcons = false;
    bool hasSidePicture = false;

    // Both in twips. The widest caption is kept in 16 bits, where it may wrap around.
    std::int32_t Height(std::size_t items) const;
    std::int32_t Width(std::int32_t widestCaptionPixels) const;

    // In pixels, from the left of the window.
    int TextLeft() const;
    int IconLeft() const { return hasSidePicture ? 20 : 4; }
    int SeparatorLeft() const { return hasSidePicture ? 21 : 4; }

    int ItemTop(std::size_t index) const;      // in pixels
    int SeparatorTop(std::size_t index) const; // of the upper of its two lines, in pixels
    Box Bar(std::size_t index, int windowWidth) const;
};

// Moves a menu up and to the left so that it ends on the screen; it may then begin off it.
QRect KeptOnScreen(const QRect& menu, const QRect& screen);

// The hot item after the pointer has moved to a point of the window, given in twips as the size is:
// nothing where there is nothing to redraw.
std::optional<std::int16_t> HotItemAt(const MenuGeometry& geometry, double x, double y,
                                      std::int32_t width, std::int32_t height,
                                      std::int16_t hotItem);

} // namespace lantern
