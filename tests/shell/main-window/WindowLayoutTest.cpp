// SPDX-License-Identifier: GPL-3.0-or-later
#include "WindowLayout.h"

#include "Zoom.h"

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
    EXPECT_EQ(PictureRect({700, 2000}, 375, 0), (TwipRect{375, 375, 0, 1250}));
    EXPECT_EQ(PictureRect({2000, 700}, 375, 0), (TwipRect{375, 375, 1250, 0}));
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

TEST(WindowLayout, TheMarginOfTheToolbarIsSmallerInFullScreen)
{
    EXPECT_EQ(MarginYFor(false, 15), 150);
    EXPECT_EQ(MarginYFor(true, 15), 75);
    EXPECT_EQ(MarginYFor(false, 12), 120);
}

TEST(WindowLayout, TheWindowOfSizeTwoIsLaidOutToTheTwip)
{
    const WindowLayout layout = LayoutWindow({.client = {9390, 7305}, .twips = {15, 15}});
    EXPECT_EQ(layout, (WindowLayout{.skinner = {0, 0, 9390, 7305},
                                    .bar = {150, 6435, 9090, 720},
                                    .pic = {375, 375, 8640, 5760},
                                    .systemText = {375, 6180, 8640, 225}}));
}

TEST(WindowLayout, TheSmallestWindowHoldsSizeOne)
{
    const QSize smallest = MinimumPixels(kTBar.height / 15);
    const WindowLayout layout = LayoutWindow(
        {.client = {smallest.width() * 15, smallest.height() * 15}, .twips = {15, 15}});
    EXPECT_EQ(layout, (WindowLayout{.skinner = {0, 0, 5070, 4425},
                                    .bar = {150, 3555, 4770, 720},
                                    .pic = {375, 375, 4320, 2880},
                                    .systemText = {375, 3300, 4320, 225}}));
}

TEST(WindowLayout, InFullScreenThePictureGrowsIntoThePlaceOfAHiddenBar)
{
    WindowSituation situation = {
        .client = {1600 * 15, 900 * 15}, .twips = {15, 15}, .isMaximised = true};
    const WindowLayout withBar = LayoutWindow(situation);
    EXPECT_EQ(withBar.bar, (TwipRect{75, 12705, 23850, 720}));
    EXPECT_EQ(withBar.pic, (TwipRect{2921, 300, 18158, 12105}));
    situation.isBarVisible = false;
    const WindowLayout without = LayoutWindow(situation);
    EXPECT_EQ(without.bar, withBar.bar) << "it is where the pointer brings it up";
    EXPECT_EQ(without.pic, (TwipRect{2325, 300, 19350, 12900}));
}

TEST(WindowLayout, ABarThatIsHiddenLeavesItsGapToo)
{
    const WindowSituation shown = {.client = {9390, 7305}, .twips = {15, 15}};
    WindowSituation hidden = shown;
    hidden.isBarVisible = false;
    hidden.client.height -= 720 + 75;
    EXPECT_EQ(LayoutWindow(hidden).pic, LayoutWindow(shown).pic);
}

TEST(WindowLayout, TheGapAboveTheBarIsInVerticalUnitsAndTheMarginsInHorizontalOnes)
{
    const WindowLayout layout = LayoutWindow({.client = {4500, 10000}, .twips = {12, 10}});
    EXPECT_EQ(layout.bar, (TwipRect{120, 10000 - 720 - 120, 4500 - 240, 720}));
    EXPECT_EQ(layout.pic.left, 300);
    EXPECT_EQ(layout.pic.width, 3900);
    EXPECT_EQ(layout.pic.height, 2600);
    EXPECT_EQ(layout.pic.top, (10000 - 2600 - (720 + 50)) / 2);
    EXPECT_EQ(layout.systemText.top, layout.pic.top + 2600 + 30);
}

TEST(WindowLayout, AtEverySizeThePartsStayInsideAndApart)
{
    for (const bool isMaximised : {false, true}) {
        for (int width = 338; width <= 2000; ++width) {
            for (int height = 295; height <= 1300; height += 13) {
                const TwipSize client = {width * 15, height * 15};
                const WindowLayout layout =
                    LayoutWindow({.client = client, .twips = {15, 15}, .isMaximised = isMaximised});
                const TwipRect& pic = layout.pic;
                const TwipRect& bar = layout.bar;
                ASSERT_GT(pic.width, 0);
                ASSERT_GT(pic.height, 0);
                ASSERT_LE(std::abs(pic.width - 1.5 * pic.height), 0.75);
                // Both sides of the picture are equally wide, but for the twip that rounds.
                ASSERT_LE(std::abs(2 * pic.left + pic.width - client.width), 1);
                ASSERT_LE(pic.top + pic.height, bar.top) << width << "x" << height;
                ASSERT_EQ(bar.left + bar.width + bar.left, client.width);
                ASSERT_EQ(layout.systemText.left, pic.left);
                ASSERT_EQ(layout.systemText.width, pic.width);
                ASSERT_LE(layout.systemText.top + layout.systemText.height, bar.top + 225);
            }
        }
    }
}

} // namespace
} // namespace lantern
