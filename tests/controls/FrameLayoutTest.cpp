// SPDX-License-Identifier: GPL-3.0-or-later
#include "FrameLayout.h"

#include <gtest/gtest.h>

#include <array>

namespace lantern {
namespace {

constexpr TwipsPerPixel kTwips = {15, 15};
constexpr QSize kSize(200, 100);

// Ten pixels a letter, so that the numbers below can be read.
QSize Measure(const QString& text)
{
    return {static_cast<int>(text.size()) * 10, 14};
}

FrameLayout Layout(const FrameLook& look, QSize size = kSize)
{
    return LayoutFrame(look, size, kTwips, Measure);
}

FrameLook Titled(std::int32_t border, std::int32_t align = AlignCaptionLeft)
{
    return {border, align, false, QStringLiteral("Group")};
}

TEST(FrameLayout, EachStyleHasItsEdge)
{
    constexpr std::array<std::uint32_t, 9> kEdges = {0, 4, 2, 5, 10, 6, 9, 4, 2};
    for (std::int32_t border = 0; border < 9; ++border) {
        const FrameLayout layout = Layout(Titled(border));
        EXPECT_EQ(layout.edgeLines, kEdges.at(static_cast<std::size_t>(border))) << border;
        EXPECT_EQ(layout.edgeSides, border == 8 ? 0x800FU : 15U) << border;
    }
}

TEST(FrameLayout, AStyleThatThereIsNotHasNoEdge)
{
    for (const std::int32_t border : {-2147483647, -1, 9, 15, 2147483647}) {
        EXPECT_EQ(Layout(Titled(border)).edgeLines, 0U) << border;
        EXPECT_EQ(Layout(Titled(border)).textLeft, 5) << border;
    }
}

TEST(FrameLayout, TheEdgeRunsThroughTheMiddleOfTheCaption)
{
    const FrameLayout layout = Layout(Titled(1));
    EXPECT_EQ(layout.edge, (Box{0, 7, 200, 100}));
    EXPECT_EQ(layout.text, QStringLiteral(" Group "));
    EXPECT_EQ(layout.textTop, 0);
    EXPECT_EQ(layout.titleBar, Box());
}

TEST(FrameLayout, HalfOfAnOddHeightGoesToTheEvenPixel)
{
    for (const auto& [height, top] : {std::pair{13, 6}, {15, 8}, {17, 8}, {19, 10}, {12, 6}}) {
        const FrameLayout layout =
            LayoutFrame(Titled(1), kSize, kTwips,
                        [lines = height](const QString&) { return QSize(10, lines); });
        EXPECT_EQ(layout.edge.top, top) << height;
    }
}

TEST(FrameLayout, WithoutCaptionTheEdgeIsAtTheVeryTop)
{
    FrameLook look;
    EXPECT_EQ(Layout(look).edge, (Box{0, 0, 200, 100}));
    EXPECT_EQ(Layout(look).text, QString());
}

TEST(FrameLayout, ACaptionOfOneBlankPrintsNothingAndKeepsItsPlace)
{
    FrameLook look;
    look.caption = QStringLiteral(" ");
    EXPECT_EQ(Layout(look).edge, (Box{0, 7, 200, 100}));
    EXPECT_EQ(Layout(look).text, QString());
    look.caption = QStringLiteral("  ");
    EXPECT_EQ(Layout(look).text, QStringLiteral("    "));
}

TEST(FrameLayout, TheCaptionStandsAsItIsAligned)
{
    // Seven letters of ten pixels in two hundred.
    EXPECT_EQ(Layout(Titled(1, AlignCaptionLeft)).textLeft, 5);
    EXPECT_EQ(Layout(Titled(1, AlignCaptionRight)).textLeft, 125);
    EXPECT_EQ(Layout(Titled(1, AlignCaptionCentre)).textLeft, 65);
    for (const std::int32_t other : {-1, 3, 100})
        EXPECT_EQ(Layout(Titled(1, other)).textLeft, 0) << other;
}

TEST(FrameLayout, WithoutEdgeTheCaptionHasNoMargin)
{
    EXPECT_EQ(Layout(Titled(0, AlignCaptionLeft)).textLeft, 0);
    EXPECT_EQ(Layout(Titled(0, AlignCaptionRight)).textLeft, 130);
    EXPECT_EQ(Layout(Titled(0, AlignCaptionCentre)).textLeft, 65);
    EXPECT_EQ(Layout(Titled(0)).edgeLines, 0U);
}

TEST(FrameLayout, TheCentreIsReckonedInTwips)
{
    const FrameLook look = Titled(1, AlignCaptionCentre);
    EXPECT_EQ(Layout(look, QSize(201, 100)).textLeft, 65); // 982 twips, 65.47 pixels
    EXPECT_EQ(Layout(look, QSize(203, 100)).textLeft, 66); // 997 twips, 66.47 pixels
    EXPECT_EQ(Layout(look, QSize(69, 100)).textLeft, 0);   // 7 twips to the left of it
    EXPECT_EQ(Layout(look, QSize(50, 100)).textLeft, -10);
}

TEST(FrameLayout, ADividerIsATopEdgeOnly)
{
    FrameLook look = Titled(3);
    look.isDivider = true;
    EXPECT_EQ(Layout(look).edgeSides, static_cast<std::uint32_t>(EdgeTop));
    EXPECT_EQ(Layout(look).edgeLines, 5U);
    EXPECT_EQ(Layout(look).text, QStringLiteral(" Group "));
    look.border = 8;
    EXPECT_EQ(Layout(look).edgeSides, 0x8002U);
}

TEST(FrameLayout, ATitleBarIsAsHighAsItsTextAndFourPixels)
{
    const FrameLayout layout = Layout(Titled(7));
    EXPECT_EQ(layout.titleBar, (Box{0, 0, 200, 18}));
    EXPECT_EQ(layout.edge, (Box{0, 0, 200, 100}));
    EXPECT_EQ(layout.text, QStringLiteral("Group"));
    EXPECT_EQ(layout.textTop, 2);
    FrameLook look = Titled(7);
    look.isDivider = true;
    EXPECT_EQ(Layout(look).edgeSides, 15U);
    look.caption.clear();
    EXPECT_EQ(Layout(look).titleBar, (Box{0, 0, 200, 18}));
    EXPECT_EQ(Layout(look).text, QString());
}

TEST(FrameLayout, TheTextOfATitleBarKeepsFourPixelsOff)
{
    EXPECT_EQ(Layout(Titled(7, AlignCaptionLeft)).textLeft, 4);
    EXPECT_EQ(Layout(Titled(7, AlignCaptionRight)).textLeft, 146);
    EXPECT_EQ(Layout(Titled(7, AlignCaptionCentre)).textLeft, 75);
    EXPECT_EQ(Layout(Titled(7, 3)).textLeft, 0);
}

} // namespace
} // namespace lantern
