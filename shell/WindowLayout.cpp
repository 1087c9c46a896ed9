// SPDX-License-Identifier: GPL-3.0-or-later
#include "WindowLayout.h"

#include "Rounding.h"

#include <algorithm>

namespace lantern {
namespace {

constexpr double kAspect = 1.5;

} // namespace

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

TwipRect SystemTextRect(const TwipRect& picture, std::int32_t height, std::int32_t twipsY)
{
    return {picture.left, picture.top + picture.height + 3 * twipsY, picture.width, height};
}

QSize MinimumPixels(int toolbarPixels)
{
    return {338, toolbarPixels + 242 + 5};
}

} // namespace lantern
