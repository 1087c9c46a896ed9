// SPDX-License-Identifier: GPL-3.0-or-later
#include "WindowLayout.h"

#include <gtest/gtest.h>

#include <cmath>

namespace lantern {
namespace {

TEST(WindowLayout, TheMarginIsSmallerInFullScreen)
{
    EXPECT_EQ(MarginXFor(false, 15), 375);
    EXPECT_EQ(MarginXFor(true, 15), 300);
    EXPECT_EQ(MarginXFor(false, 12), 300);
}

TEST(WindowLayout, AThreeToTwoAreaIsFilledExactly)
{
    const TwipSize client = {3000 + 750, 2000 + 750};
    EXPECT_EQ(PictureRect(client, 375, 0), (TwipRect{375, 375, 3000, 2000}));
}

TEST(WindowLayout, TheBarTakesItsHeightFromThePicture)
{
    const TwipSize client = {3000 + 750, 2000 + 750 + 795};
    EXPECT_EQ(PictureRect(client, 375, 795), (TwipRect{375, 375, 3000, 2000}));
}

TEST(WindowLayout, ATallAreaCentresThePictureVertically)
{
    const TwipSize client = {3000 + 750, 5000};
    EXPECT_EQ(PictureRect(client, 375, 0), (TwipRect{375, 1500, 3000, 2000}));
}

TEST(WindowLayout, AWideAreaCentresThePictureHorizontally)
{
    const TwipSize client = {9000, 2000 + 750};
    EXPECT_EQ(PictureRect(client, 375, 0), (TwipRect{3000, 375, 3000, 2000}));
}

TEST(WindowLayout, TheWindowOfAStepHoldsAPictureOfThatStep)
{
    for (int step = 1; step <= 5; ++step) {
        const WindowFrame frame = {15, 15, 375, kTBar.height};
        const TwipRect picture =
            LayoutWindow({.client = WindowSizeForZoom(step, 1.0F, frame), .twips = {15, 15}}).pic;
        EXPECT_EQ(picture.width / 15, 288 * step);
        EXPECT_EQ(picture.height / 15, 192 * step);
    }
}

TEST(WindowLayout, EverySizeKeepsThreeToTwoAndStaysInsideTheArea)
{
    for (int width = 338; width < 2000; width += 7) {
        for (int height = 247; height < 1400; height += 11) {
            const TwipSize client = {width * 15, height * 15};
            const TwipRect picture = PictureRect(client, 375, 0);
            ASSERT_LE(std::abs(picture.width - 1.5 * picture.height), 0.75)
                << width << "x" << height;
            ASSERT_GE(picture.left, 375);
            ASSERT_GE(picture.top, 375);
            ASSERT_LE(picture.left + picture.width, client.width - 374);
            ASSERT_LE(picture.top + picture.height, client.height - 374);
        }
    }
}

TEST(WindowLayout, TiesAreRoundedToTheEvenTwip)
{
    // A height of 1001 leaves 499 and a half at the top of 2000.
    EXPECT_EQ(PictureRect({1502, 2000}, 0, 0), (TwipRect{0, 500, 1502, 1001}));
    EXPECT_EQ(PictureRect({1502, 2002}, 0, 0), (TwipRect{0, 500, 1502, 1001}));
}

TEST(WindowLayout, AnAreaSmallerThanItsMarginsHoldsNoPicture)
{
    EXPECT_EQ(PictureRect({700, 2000}, 375, 0).width, 0);
    EXPECT_EQ(PictureRect({2000, 700}, 375, 0).height, 0);
    EXPECT_EQ(PictureRect({0, 0}, 375, 795), (TwipRect{375, 375, 0, 0}));
}

TEST(WindowLayout, TheMessageLiesThreePixelsUnderThePicture)
{
    EXPECT_EQ(SystemTextRect({100, 200, 3000, 2000}, 15), (TwipRect{100, 2245, 3000, 225}));
}

TEST(WindowLayout, TheSmallestWindowFollowsTheToolbar)
{
    EXPECT_EQ(MinimumPixels(0), QSize(338, 247));
    EXPECT_EQ(MinimumPixels(48), QSize(338, 295));
}

} // namespace
} // namespace lantern
