// SPDX-License-Identifier: GPL-3.0-or-later
#include "Twips.h"

#include <gtest/gtest.h>

namespace lantern {
namespace {

TEST(PixelsOf, PlacesAreTheNearestPixelsAndSizesTheWholeOnes)
{
    EXPECT_EQ(PixelsOf({150, 165, 300, 314}, {15, 15}), QRect(10, 11, 20, 20));
    EXPECT_EQ(PixelsOf({157, 158, 15, 15}, {15, 15}), QRect(10, 11, 1, 1));
    EXPECT_EQ(PixelsOf({24, 25, 36, 40}, {12, 10}), QRect(2, 2, 3, 4));
    EXPECT_EQ(PixelsOf({-15, -30, 0, 0}, {15, 15}), QRect(-1, -2, 0, 0));
    EXPECT_EQ(PixelsOf(TwipSize{2805, 1649}, {15, 15}), QSize(187, 109));
}

TEST(NearestPixel, TiesGoToTheEvenOne)
{
    EXPECT_EQ(NearestPixel(15, 10), 2);
    EXPECT_EQ(NearestPixel(25, 10), 2);
    EXPECT_EQ(NearestPixel(26, 10), 3);
    EXPECT_EQ(NearestPixel(-15, 10), -2);
}

TEST(CentredOn, AWindowIsCentredAlsoOnADesktopSmallerThanIt)
{
    EXPECT_EQ(CentredOn({19200, 12000}, {9390, 6585}), (TwipRect{4905, 2707, 9390, 6585}));
    EXPECT_EQ(CentredOn({1000, 1000}, {2000, 3000}), (TwipRect{-500, -1000, 2000, 3000}));
}

} // namespace
} // namespace lantern
