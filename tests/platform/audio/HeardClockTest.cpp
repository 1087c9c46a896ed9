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

// A server that counts in steps of 20 milliseconds tells at the start of each what is heard by its
// end.
TEST(HeardClock, AServerThatCountsInStepsIsNotBelievedWhatIsStillToCome)
{
    HeardClock clock;
    clock.Restart(48000);
    for (int ms = 0; ms < 2000; ++ms) {
        if (ms % 57 == 3)
            clock.Sample((ms / 20 + 1) * 960.0, kStart + std::chrono::milliseconds(ms), true);
        if (ms > 500) {
            const double ahead =
                clock.At(kStart + std::chrono::milliseconds(ms), kPlenty) - ms * 48;
            ASSERT_GE(ahead, 0.0);
            ASSERT_LE(ahead, 48 * 3.0);
        }
    }
}

TEST(HeardClock, WhatASampleToldTooLowIsForgottenSoon)
{
    HeardClock clock;
    clock.Restart(48000);
    clock.Sample(0, kStart, true);
    for (int i = 1; i <= 12; ++i)
        clock.Sample(4800 + i * 480, kStart + i * 10ms, true);
    EXPECT_NEAR(clock.At(kStart + 120ms, kPlenty), 4800 + 5760, 1e-6);
}

TEST(HeardClock, WhatOneDeviceToldCountsNoMoreOnAnother)
{
    HeardClock clock;
    clock.Restart(48000);
    clock.Sample(4800, kStart, true);
    clock.ForgetSamples();
    EXPECT_NEAR(clock.At(kStart + 10ms, kPlenty), 5280, 1e-6);
    clock.Sample(9600, kStart + 10ms, true);
    EXPECT_NEAR(clock.At(kStart + 10ms, kPlenty), 9600, 1e-6);
}

TEST(HeardClock, ARestBetweenTwoSamplesIsNoSign)
{
    HeardClock clock;
    clock.Restart(48000);
    clock.Sample(4800, kStart, true);
    clock.Sample(9600, kStart + 100ms, false);
    clock.Sample(9600, kStart + 1s, true);
    EXPECT_NEAR(clock.At(kStart + 1s, kPlenty), 9600, 1e-6);
    clock.Freeze(kStart + 2s, kPlenty);
    clock.Sample(60000, kStart + 3s, true);
    EXPECT_NEAR(clock.At(kStart + 3s, kPlenty), 60000, 1e-6);
    clock.Restart(48000);
    clock.Sample(480000, kStart + 4s, true);
    EXPECT_NEAR(clock.At(kStart + 4s, kPlenty), 480000, 1e-6);
}

} // namespace
} // namespace lantern
