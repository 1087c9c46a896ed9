// SPDX-License-Identifier: GPL-3.0-or-later
#include "MenuGeometry.h"

#include "MenuState.h"

#include <cmath>

namespace lantern {
namespace {

constexpr int kTopMargin = 4; // pixels, as are the others
constexpr int kMargins = 9;
constexpr int kRightMargin = 5;

// By rounding with half an item more than the margin, rows count from 1. Ties go to the even one.
std::int16_t RowAt(double y, std::int32_t twipsPerPixel, std::int32_t itemHeight)
{
    const double row = std::nearbyint((kTopMargin * twipsPerPixel + y) / itemHeight);
    return static_cast<std::int16_t>(static_cast<std::int32_t>(row));
}

} // namespace

std::int32_t MenuGeometry::Height(std::size_t items) const
{
    return static_cast<std::int32_t>(items) * itemHeight + kMargins * twips.y;
}

std::int32_t MenuGeometry::Width(std::int32_t widestCaptionPixels) const
{
    const auto widest = static_cast<std::int16_t>(widestCaptionPixels * twips.x);
    if (hasIcons && hasSidePicture)
        return widest + twips.x * 52;
    return widest + twips.x * (hasIcons || hasSidePicture ? 32 : 13);
}

int MenuGeometry::TextLeft() const
{
    if (hasIcons && hasSidePicture)
        return 40;
    return hasIcons || hasSidePicture ? 22 : 5;
}

int MenuGeometry::ItemTop(std::size_t index) const
{
    return kTopMargin + NearestPixel(static_cast<std::int32_t>(index) * itemHeight, twips.y);
}

int MenuGeometry::SeparatorTop(std::size_t index) const
{
    const std::int32_t top = kTopMargin * twips.y + static_cast<std::int32_t>(index) * itemHeight;
    return NearestPixel(top + itemHeight / 2, twips.y);
}

Box MenuGeometry::Bar(std::size_t index, int windowWidth) const
{
    return {TextLeft() - 1, ItemTop(index), windowWidth - kRightMargin, ItemTop(index + 1)};
}

QRect KeptOnScreen(const QRect& menu, const QRect& screen)
{
    QRect kept = menu;
    if (kept.bottom() > screen.bottom())
        kept.moveBottom(screen.bottom());
    if (kept.right() > screen.right())
        kept.moveRight(screen.right());
    return kept;
}

std::optional<std::int16_t> HotItemAt(const MenuGeometry& geometry, double x, double y,
                                      std::int32_t width, std::int32_t height, std::int16_t hotItem)
{
    const TwipsPerPixel& twips = geometry.twips;
    const bool hasLeft = x < 0 || y < 0 || x > width || y > height;
    if (hasLeft)
        return hotItem == MenuState::kNone ? std::nullopt : std::optional(MenuState::kNone);
    if (x <= 0 || x >= width || RowAt(y, twips.y, geometry.itemHeight) == hotItem)
        return std::nullopt;
    // By the twips of a row across, which differ on a screen with pixels that aren't square.
    return RowAt(y, twips.x, geometry.itemHeight);
}

} // namespace lantern
