// SPDX-License-Identifier: GPL-3.0-or-later
#include "WheelTurns.h"

#include <gtest/gtest.h>

namespace lantern {
namespace {

TEST(WheelTurns, ANotchIsOneStepInItsDirection)
{
    WheelTurns turns;
    EXPECT_EQ(turns.Add(120), 1);
    EXPECT_EQ(turns.Add(-120), -1);
}

TEST(WheelTurns, ATurnOfSeveralNotchesIsOneStep)
{
    WheelTurns turns;
    EXPECT_EQ(turns.Add(480), 1);
    EXPECT_EQ(turns.Add(0), 0);
}

TEST(WheelTurns, FineStepsAreGatheredToANotch)
{
    WheelTurns turns;
    int steps = 0;
    for (int i = 0; i < 24; ++i)
        steps += turns.Add(15);
    EXPECT_EQ(steps, 3);
}

TEST(WheelTurns, ATurnBackStartsAfresh)
{
    WheelTurns turns;
    EXPECT_EQ(turns.Add(100), 0);
    EXPECT_EQ(turns.Add(-100), 0);
    EXPECT_EQ(turns.Add(-20), -1);
}

TEST(WheelTurns, ASidewaysTurnIsNone)
{
    WheelTurns turns;
    EXPECT_EQ(turns.Add(0), 0);
}

} // namespace
} // namespace lantern
