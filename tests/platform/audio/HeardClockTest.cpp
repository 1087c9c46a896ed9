// SPDX-License-Identifier: GPL-3.0-or-later
#include "HeardClock.h"

#include <gtest/gtest.h>

namespace lantern {
namespace {

using namespace std::chrono_literals;

constexpr HeardClock::TimePoint kStart{100s};
constexpr double kPlenty = 1e9;

TEST(HeardClock, NothingIsHeardBeforeTheFirstSample)
{
    HeardClock clock;
    clock.Restart(48000);
    EXPECT_EQ(clock.At(kStart, kPlenty), 0);
    EXPECT_EQ(clock.At(kStart + 10s, kPlenty), 0);
}

TEST(HeardClock, ItGoesOnBetweenSamplesAtTheRate)
{
    HeardClock clock;
    clock.Restart(48000);
    clock.Sample(4800, kStart, true);
    EXPECT_NEAR(clock.At(kStart + 10ms, kPlenty), 5280, 1e-6);
    EXPECT_NEAR(clock.At(kStart - 10ms, kPlenty), 4320, 1e-6);
}

TEST(HeardClock, ASampleBeforeTheFirstFrameCountsUpToIt)
{
    HeardClock clock;
    clock.Restart(48000);
    clock.Sample(-4800, kStart, true);
    EXPECT_EQ(clock.At(kStart + 50ms, kPlenty), 0);
    EXPECT_NEAR(clock.At(kStart + 150ms, kPlenty), 2400, 1e-6);
}

TEST(HeardClock, WhatWasNotWrittenIsNotHeard)
{
    HeardClock clock;
    clock.Restart(48000);
    clock.Sample(1000, kStart, true);
    EXPECT_EQ(clock.At(kStart + 1s, 3000), 3000);
}

TEST(HeardClock, ARestartForgetsWhatWasHeardAndTakesTheNewRate)
{
    HeardClock clock;
    clock.Restart(48000);
    clock.Sample(1000, kStart, true);
    clock.Restart(8000);
    EXPECT_EQ(clock.At(kStart, kPlenty), 0);
    EXPECT_EQ(clock.At(kStart + 1s, kPlenty), 0);
    clock.Sample(1000, kStart, true);
    EXPECT_NEAR(clock.At(kStart + 1s, kPlenty), 9000, 1e-6);
}

TEST(HeardClock, ItStandsStillWhileNothingSounds)
{
    HeardClock clock;
    clock.Restart(48000);
    clock.Sample(1000, kStart, true);
    clock.Freeze(kStart + 100ms, kPlenty);
    EXPECT_NEAR(clock.At(kStart + 5s, kPlenty), 5800, 1e-6);
    clock.Sample(6000, kStart + 6s, false);
    EXPECT_EQ(clock.At(kStart + 9s, kPlenty), 6000);
}

} // namespace
} // namespace lantern
