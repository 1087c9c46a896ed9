// SPDX-License-Identifier: GPL-3.0-or-later
#include "Rounding.h"

#include <gtest/gtest.h>

namespace lantern {
namespace {

TEST(RoundToEven, TiesGoToTheEvenNeighbour)
{
    EXPECT_EQ(RoundToEven(0.5), 0);
    EXPECT_EQ(RoundToEven(1.5), 2);
    EXPECT_EQ(RoundToEven(2.5), 2);
    EXPECT_EQ(RoundToEven(-0.5), 0);
    EXPECT_EQ(RoundToEven(-1.5), -2);
    EXPECT_EQ(RoundToEven(-2.5), -2);
}

TEST(RoundToEven, OthersGoToTheNearest)
{
    EXPECT_EQ(RoundToEven(2.4999), 2);
    EXPECT_EQ(RoundToEven(2.5001), 3);
    EXPECT_EQ(RoundToEven(-2.5001), -3);
    EXPECT_EQ(RoundToEven(333.333), 333);
}

TEST(RoundToEven, WhatDoesNotFitBecomesTheNearestThatDoes)
{
    EXPECT_EQ(RoundToEven(2147483647.4), 2147483647);
    EXPECT_EQ(RoundToEven(1e300), 2147483647);
    EXPECT_EQ(RoundToEven(-1e300), -2147483647 - 1);
    EXPECT_EQ(RoundToEven(std::numeric_limits<double>::infinity()), 2147483647);
    EXPECT_EQ(RoundToEven(std::numeric_limits<double>::quiet_NaN()), 0);
}

} // namespace
} // namespace lantern
