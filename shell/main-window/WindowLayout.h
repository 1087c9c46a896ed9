// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ToolbarLayout.h"
#include "Twips.h"

#include <QRect>
#include <QSize>

#include <cstdint>

// Where the parts of the main window lie, in twips except where a name says pixels.
namespace lantern {

// Around the picture, and around the toolbar, for a window state. The unit is the horizontal one
// on all sides.
constexpr std::int32_t MarginXFor(bool isMaximised, std::int32_t twipsX)
{
    return (isMaximised ? 20 : 20 + 5) * twipsX;
}

constexpr std::int32_t MarginYFor(bool isMaximised, std::int32_t twipsX)
{
    return (isMaximised ? 5 : 5 + 5) * twipsX;
}

inline constexpr TwipRect kSystemText = {5385, 525, 1710, 225};

// All that the places depend on.
struct WindowSituation {
    TwipSize client;
    TwipsPerPixel twips;
    bool isMaximised = false;
    bool isBarVisible = true;
};

struct WindowLayout {
    TwipRect skinner;
    TwipRect bar; // a hidden one has its place, too; LayoutBar tells where its parts lie
    TwipRect pic;
    TwipRect systemText;

    bool operator==(const WindowLayout&) const = default;
};

WindowLayout LayoutWindow(const WindowSituation& situation);

// The picture in a client area: within the margin, above a bar of the height given, three to two,
// in the middle of what is left over.
TwipRect PictureRect(TwipSize client, std::int32_t marginX, std::int32_t barHeight);

// The message line in the border under a picture.
TwipRect SystemTextRect(const TwipRect& picture, std::int32_t twipsY);

// What the window can't be made smaller than, and not larger than.
QSize MinimumPixels(int toolbarPixels);
inline constexpr QSize kMaximumPixels = {200000, 200000};

} // namespace lantern
