// SPDX-License-Identifier: GPL-3.0-or-later
#include "Zoom.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace lantern {
namespace {

constexpr std::int64_t kUnitArea = 288 * 192;

TEST(Zoom, AnAreaOfAWholeStepIsThatStep)
{
    for (int step = 1; step <= 5; ++step)
        EXPECT_EQ(NearestZoomForArea(step * step * kUnitArea), step);
}

TEST(Zoom, EveryAreaGetsTheNearestStepAndATieTheSmallerOne)
{
    for (std::int64_t area = 0; area < 40 * kUnitArea; area += 24) {
        int nearest = 5;
        for (int step = 4; step >= 1; --step) {
            if (std::abs(step * step * kUnitArea - area) <=
                std::abs(nearest * nearest * kUnitArea - area))
                nearest = step;
        }
        ASSERT_EQ(NearestZoomForArea(area), nearest) << area;
    }
}

TEST(Zoom, AnAreaExactlyBetweenTwoStepsIsTheSmallerOne)
{
    EXPECT_EQ(NearestZoomForArea(kUnitArea * 5 / 2), 1);
    EXPECT_EQ(NearestZoomForArea(kUnitArea * 5 / 2 + 1), 2);
    EXPECT_EQ(NearestZoomForArea(kUnitArea * 13 / 2), 2);
    EXPECT_EQ(NearestZoomForArea(kUnitArea * 13 / 2 + 1), 3);
}

TEST(Zoom, NoAreaIsTheSmallestStep)
{
    EXPECT_EQ(NearestZoomForArea(0), 1);
}

TEST(Zoom, TheRingLeadsThroughFullScreenInBothDirections)
{
    for (int step = 0; step < 5; ++step) {
        EXPECT_EQ(NextZoomStep(step), step + 1);
        EXPECT_EQ(PreviousZoomStep(step + 1), step);
    }
    EXPECT_EQ(NextZoomStep(5), 0);
    EXPECT_EQ(PreviousZoomStep(0), 5);
}

TEST(Zoom, AStepOutsideTheRangeIsTheDefault)
{
    for (int step = 0; step <= 5; ++step)
        EXPECT_EQ(ValidZoomStep(step), step);
    EXPECT_EQ(ValidZoomStep(-1), 2);
    EXPECT_EQ(ValidZoomStep(6), 2);
}

TEST(Zoom, TheWindowIsThePictureWithItsMarginsTheToolbarAndTheGap)
{
    const WindowFrame frame = {.twipsX = 15, .twipsY = 15, .marginX = 375, .toolbarHeight = 720};
    EXPECT_EQ(WindowSizeForZoom(2, 1.0F, frame),
              (TwipSize{576 * 15 + 750, 720 + 384 * 15 + 750 + 75}));
    EXPECT_EQ(WindowSizeForZoom(1, 1.5F, frame),
              (TwipSize{432 * 15 + 750, 720 + 288 * 15 + 750 + 75}));
}

TEST(Zoom, TheGapIsCountedWithTheHorizontalUnit)
{
    const WindowFrame frame = {.twipsX = 12, .twipsY = 15, .marginX = 0, .toolbarHeight = 0};
    EXPECT_EQ(WindowSizeForZoom(1, 1.0F, frame), (TwipSize{288 * 12, 192 * 15 + 60}));
}

TEST(Zoom, SizesAreRoundedToTheNearestTwipAndTiesToTheEvenOne)
{
    // 288 * 1.001953125 = 288.5625; with twips of 1 it is rounded up, and 192.375 + 5 down.
    const WindowFrame frame = {.twipsX = 1, .twipsY = 1, .marginX = 0, .toolbarHeight = 0};
    EXPECT_EQ(WindowSizeForZoom(1, 1.001953125F, frame), (TwipSize{289, 197}));
    // 288 + 4.5 = 292.5 goes to 292, and 288 + 13.5 = 301.5 to 302.
    EXPECT_EQ(WindowSizeForZoom(1, 1.015625F, frame), (TwipSize{292, 200}));
    EXPECT_EQ(WindowSizeForZoom(1, 1.046875F, frame), (TwipSize{302, 206}));
}

} // namespace
} // namespace lantern
