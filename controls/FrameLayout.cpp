// SPDX-License-Identifier: GPL-3.0-or-later
#include "FrameLayout.h"

#include <array>

namespace lantern {
namespace {

// By border style. The one for the title bar is the raised line around all of it.
constexpr std::array<std::uint32_t, 9> kEdgeLines = {
    0,
    EdgeRaisedInner,
    EdgeSunkenOuter,
    EdgeRaisedOuter | EdgeRaisedInner,
    EdgeSunkenOuter | EdgeSunkenInner,
    EdgeSunkenOuter | EdgeRaisedInner,
    EdgeRaisedOuter | EdgeSunkenInner,
    EdgeRaisedInner,
    EdgeSunkenOuter,
};
constexpr std::int32_t kFlatBorder = 8;

constexpr int kGroupMargin = 5; // pixels beside the caption
constexpr int kTitleMargin = 4;
constexpr int kTitleTop = 2;
constexpr int kTitlePadding = 4; // pixels by which the title bar is higher than its text

std::uint32_t EdgeLinesOf(std::int32_t border)
{
    const auto style = static_cast<std::size_t>(static_cast<std::uint32_t>(border));
    return style < kEdgeLines.size() ? kEdgeLines[style] : 0;
}

int CaptionLeft(std::int32_t align, int width, int textWidth, int margin, int twips)
{
    switch (align) {
    case AlignCaptionLeft:
        return margin;
    case AlignCaptionRight:
        return width - textWidth - margin;
    case AlignCaptionCentre: {
        const int leftTwips = (width - textWidth) * twips / 2; // may end between two pixels
        return NearestPixel(leftTwips, twips);
    }
    default:
        return 0;
    }
}

FrameLayout LayoutTitleBar(const FrameLook& look, QSize size, TwipsPerPixel twips,
                           const MeasureFrameText& measure)
{
    FrameLayout layout;
    const QSize text = measure(look.caption);
    layout.titleBar = {0, 0, size.width(), text.height() + kTitlePadding};
    layout.edge = {0, 0, size.width(), size.height()};
    layout.edgeLines = EdgeLinesOf(look.border);
    layout.edgeSides = EdgeAllSides;
    layout.text = look.caption;
    layout.textLeft = CaptionLeft(look.align, size.width(), text.width(), kTitleMargin, twips.x);
    layout.textTop = kTitleTop;
    return layout;
}

FrameLayout LayoutGroupBox(const FrameLook& look, QSize size, TwipsPerPixel twips,
                           const MeasureFrameText& measure)
{
    FrameLayout layout;
    const QChar blank = QLatin1Char(' ');
    const bool hasText = !look.caption.isEmpty() && look.caption != blank;
    if (hasText)
        layout.text = blank + look.caption + blank;
    const QSize text = measure(layout.text);
    const int top = look.caption.isEmpty() ? 0 : RoundToEven(text.height() / 2.0);
    layout.edge = {0, top, size.width(), size.height()};
    layout.edgeLines = EdgeLinesOf(look.border);
    layout.edgeSides = look.isDivider ? EdgeTop : EdgeAllSides;
    if (look.border == kFlatBorder)
        layout.edgeSides |= EdgeMonochrome;
    const int margin = look.border != 0 ? kGroupMargin : 0;
    layout.textLeft = CaptionLeft(look.align, size.width(), text.width(), margin, twips.x);
    return layout;
}

} // namespace

FrameLayout LayoutFrame(const FrameLook& look, QSize size, TwipsPerPixel twips,
                        const MeasureFrameText& measure)
{
    return look.border == kTitleBarBorder ? LayoutTitleBar(look, size, twips, measure)
                                          : LayoutGroupBox(look, size, twips, measure);
}

} // namespace lantern
