// SPDX-License-Identifier: GPL-3.0-or-later
#include "SkinLayout.h"

namespace lantern {
namespace {

bool Holds(const Box& box, int x, int y)
{
    return x >= box.left && x < box.right && y >= box.top && y < box.bottom;
}

} // namespace

QRgb SkinColour(char letter)
{
    switch (letter) {
    case 'O':
        return qRgb(255, 171, 8);
    case 'M':
        return qRgb(191, 128, 6);
    case 'D':
        return qRgb(127, 85, 4);
    default:
        return qRgb(0, 0, 0);
    }
}

SkinLayout LayOutSkin(int width, int height, int captionHeight)
{
    constexpr int kSide = kSkinBitmapSize;
    constexpr int kMargin = 3; // of the caption
    const int right = width - kSide;
    const int bottom = height - kSide;
    return {{{
                {0, 0, kSide, kSide},
                {kSide, 0, right, kSide},
                {right, 0, width, kSide},
                {0, kSide, kSide, bottom},
                {0, 0, width, height},
                {right, kSide, width, bottom},
                {0, bottom, kSide, height},
                {kSide, bottom, right, height},
                {right, bottom, width, height},
            }},
            {kMargin, kMargin, width - kMargin, kMargin + captionHeight}};
}

std::optional<SkinPlace> PlaceAt(const SkinLayout& layout, bool captionIsVisible, int x, int y)
{
    if (captionIsVisible && Holds(layout.caption, x, y))
        return SkinPlace{true, kSkinCentre, layout.caption};
    for (const std::size_t element : kSkinFrontToBack) {
        if (Holds(layout.elements[element], x, y))
            return SkinPlace{false, element, layout.elements[element]};
    }
    return std::nullopt;
}

} // namespace lantern
