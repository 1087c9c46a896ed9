// SPDX-License-Identifier: GPL-3.0-or-later
#include "WindowLayout.h"

#include "Rounding.h"

#include <algorithm>

namespace lantern {
namespace {

constexpr double kAspect = 1.5;
constexpr int kBarGapPixels = 5; // between the picture's area and the toolbar

} // namespace

WindowLayout LayoutWindow(const WindowSituation& situation)
{
    const TwipSize client = situation.client;
    const TwipsPerPixel twips = situation.twips;
    const std::int32_t barHeight =
        situation.isBarVisible ? kTBar.height + kBarGapPixels * twips.y : 0;
    WindowLayout layout;
    layout.skinner = {0, 0, client.width, client.height};
    layout.bar = TBarRect(client, MarginYFor(situation.isMaximised, twips.x));
    layout.pic = PictureRect(client, MarginXFor(situation.isMaximised, twips.x), barHeight);
    layout.systemText = SystemTextRect(layout.pic, twips.y);
    return layout;
}

TwipRect PictureRect(TwipSize client, std::int32_t marginX, std::int32_t barHeight)
{
    TwipRect picture = {marginX, marginX, std::max(client.width - 2 * marginX, 0),
                        std::max(client.height - 2 * marginX - barHeight, 0)};
    if (picture.width == 0 || picture.height == 0)
        return picture;
    const double ratio = static_cast<double>(picture.width) / picture.height;
    if (ratio <= kAspect) {
        picture.height = RoundToEven(picture.height * ratio / kAspect);
        picture.top = RoundToEven((client.height - picture.height - barHeight) / 2.0);
    } else {
        picture.width = RoundToEven(picture.width / ratio * kAspect);
        picture.left = RoundToEven((client.width - picture.width) / 2.0);
    }
    return picture;
}

TwipRect SystemTextRect(const TwipRect& picture, std::int32_t twipsY)
{
    return {picture.left, picture.top + picture.height + 3 * twipsY, picture.width,
            kSystemText.height};
}

QSize MinimumPixels(int toolbarPixels)
{
    return {338, toolbarPixels + 242 + 5};
}

} // namespace lantern
