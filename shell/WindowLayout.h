// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Zoom.h"

#include <QSize>

#include <cstdint>

// Where the parts of the main window lie, in twips except where a name says pixels.
namespace lantern {

// Around the picture, for a window state. The unit is the horizontal one on all sides.
constexpr std::int32_t MarginXFor(bool isMaximised, std::int32_t twipsX)
{
    return (isMaximised ? 20 : 20 + 5) * twipsX;
}

// The picture in a client area: within the margin, above a bar of the height given, three to two,
// in the middle of what is left over.
TwipRect PictureRect(TwipSize client, std::int32_t marginX, std::int32_t barHeight);

// The message line in the border under a picture.
TwipRect SystemTextRect(const TwipRect& picture, std::int32_t height, std::int32_t twipsY);

// What the window can't be made smaller than.
QSize MinimumPixels(int toolbarPixels);

} // namespace lantern
