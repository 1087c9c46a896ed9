// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ToolbarTable.h"
#include "Twips.h"

// Where the toolbar lies in a window, and how its parts follow its width. In twips.
namespace lantern {

// The strip along the bottom of a client area, within the margin of the window's state.
constexpr TwipRect TBarRect(TwipSize client, std::int32_t marginY)
{
    return {marginY, client.height - kTBar.height - marginY, client.width - 2 * marginY,
            kTBar.height};
}

struct BarLayout {
    std::int32_t rightGroupLeft = 0; // TBar2 stays at the right end
    bool isZoomVisible = false;      // TBarZoom goes before it would cover the left group
    std::int32_t sliderLeft = 0;     // ctlSlider runs up to what stands in TBar2
    std::int32_t sliderWidth = 0;

    bool operator==(const BarLayout&) const = default;
};

constexpr BarLayout LayoutBar(std::int32_t barWidth, std::int32_t twipsX)
{
    const TwipRect lastOfLeftGroup = ToolbarButtonOf(CommandId::Options).rect;
    const std::int32_t bothGroups = lastOfLeftGroup.left + lastOfLeftGroup.width + kTBar2.width;
    return {barWidth - kTBar2.width, barWidth >= bothGroups, 33 * twipsX, barWidth - 167 * twipsX};
}

} // namespace lantern
