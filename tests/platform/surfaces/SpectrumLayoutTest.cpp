// SPDX-License-Identifier: GPL-3.0-or-later
#include "SpectrumLayout.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace lantern {
namespace {

TEST(SpectrumLayout, FillsTheFieldOfTheOptionsWindowWithEvenBars)
{
    const SpectrumLayout once = LayOutSpectrum({275, 36}, 1.0);
    EXPECT_EQ(once.count, 55);
    EXPECT_EQ(once.barWidth, 4);
    EXPECT_EQ(once.pitch, 5);
    const SpectrumLayout twice = LayOutSpectrum({550, 72}, 2.0);
    EXPECT_EQ(twice.count, 55);
    EXPECT_EQ(twice.barWidth, 8);
    EXPECT_EQ(twice.pitch, 10);
}

TEST(SpectrumLayout, AllBarsLieWithinTheFieldAndInItsMiddle)
{
    for (const qreal ratio : {1.0, 1.25, 1.5, 1.75, 2.0, 3.0}) {
        for (int width = 0; width < 300; ++width) {
            const SpectrumLayout layout = LayOutSpectrum({width, 40}, ratio);
            if (layout.count == 0)
                continue;
            const int right = layout.Bar(layout.count - 1, 1.0F).right() + 1;
            ASSERT_GE(layout.left, 0) << width << " at " << ratio;
            ASSERT_LE(right, width) << width << " at " << ratio;
            ASSERT_LE(std::abs(layout.left - (width - right)), 1) << width << " at " << ratio;
            ASSERT_LT(width - right + layout.left, layout.pitch) << width << " at " << ratio;
        }
    }
}

TEST(SpectrumLayout, ABarGrowsFromTheBottomAndLeavesRoomForItsCap)
{
    const SpectrumLayout layout = LayOutSpectrum({550, 72}, 2.0);
    EXPECT_EQ(layout.Bar(1, 0.0F).height(), 0);
    EXPECT_EQ(layout.Bar(1, 0.5F), QRect(layout.left + 10, 38, 8, 34));
    EXPECT_EQ(layout.Bar(1, 1.0F), QRect(layout.left + 10, 4, 8, 68));
    EXPECT_EQ(layout.Cap(1, 1.0F), QRect(layout.left + 10, 0, 8, 2));
    EXPECT_EQ(layout.Cap(1, 0.5F), QRect(layout.left + 10, 34, 8, 2));
    EXPECT_TRUE(layout.Cap(1, 0.001F).isEmpty());
}

TEST(SpectrumLayout, AFieldWithoutRoomHasNoBars)
{
    EXPECT_EQ(LayOutSpectrum({0, 0}, 1.0).count, 0);
    EXPECT_EQ(LayOutSpectrum({3, 36}, 1.0).count, 0);
    EXPECT_EQ(LayOutSpectrum({275, 2}, 1.0).count, 0);
    EXPECT_EQ(LayOutSpectrum({4, 3}, 1.0).count, 1);
}

} // namespace
} // namespace lantern
