// SPDX-License-Identifier: GPL-3.0-or-later
#include "PaintPace.h"
#include "Recorders.h"

#include <gtest/gtest.h>

namespace lantern {
namespace {

class CountingPainter : public Painter {
public:
    void PaintDisplay() override { ++Paints; }
    int Paints = 0;
};

class PaintPaceTest : public ::testing::Test {
protected:
    static constexpr int kTicks = 100; // a second

    // A second in which every so many ticks a few paints are asked for. The window looks after each
    // tick, and its painting takes that long. The result is how often it painted.
    int PlaySecond(int asks, double paintSeconds, int everyTicks = 1)
    {
        const double begin = host.Seconds;
        const int before = paintings;
        for (int tick = 1; tick <= kTicks; ++tick) {
            host.Seconds = begin + static_cast<double>(tick) / kTicks;
            for (int ask = 0; ask < asks && tick % everyTicks == 0; ++ask)
                Ask();
            PaintIfDue(paintSeconds);
        }
        host.Seconds = begin + 1;
        return paintings - before;
    }

    void Ask()
    {
        pace.PaintDisplay();
        isDue = true;
    }

    void PaintIfDue(double seconds)
    {
        if (!isDue || pace.SecondsToWait() > 0)
            return;
        isDue = false;
        ++paintings;
        const double begin = host.Seconds;
        host.Seconds += seconds;
        pace.NotePainted(begin);
    }

    RecorderHost host;
    CountingPainter painter;
    PaintPace pace{painter, host};
    bool isDue = false;
    int paintings = 0;
};

TEST_F(PaintPaceTest, EveryPaintIsPassedOn)
{
    PlaySecond(3, 0.007);
    EXPECT_EQ(painter.Paints, 300);
}

TEST_F(PaintPaceTest, TheUsualPaceIsNeverHeldBackHoweverLongAPaintingTakes)
{
    for (int second = 0; second < 60; ++second)
        EXPECT_EQ(PlaySecond(1, 0.009, 5), 20) << second;
}

TEST_F(PaintPaceTest, FiftyASecondAreNeverHeldBackEither)
{
    for (int second = 0; second < 60; ++second)
        EXPECT_EQ(PlaySecond(1, 0.009, 2), 50) << second;
}

TEST_F(PaintPaceTest, AFlashOfASongIsShownWhole)
{
    PlaySecond(1, 0.009, 5);
    for (int step = 0; step < 25; ++step) {
        Ask();
        PaintIfDue(0.009);
    }
    EXPECT_EQ(paintings, 20 + 25);
}

TEST_F(PaintPaceTest, AFlickerGetsTwoPercentOfTheTime)
{
    PlaySecond(3, 0.004);
    for (int second = 0; second < 10; ++second)
        EXPECT_NEAR(PlaySecond(3, 0.004), 5, 1) << second; // a painting every 200 ms
}

TEST_F(PaintPaceTest, OnePaintATickIsAFlickerToo)
{
    PlaySecond(1, 0.004);
    EXPECT_NEAR(PlaySecond(1, 0.004), 5, 1);
}

TEST_F(PaintPaceTest, AFlickerOfASlowWindowIsStillSeenThreeTimesASecond)
{
    PlaySecond(3, 0.009);
    int seen = 0;
    for (int second = 0; second < 10; ++second)
        seen += PlaySecond(3, 0.009);
    EXPECT_NEAR(seen, 29, 1); // a third of a second and a tick apart
}

TEST_F(PaintPaceTest, AFlickerOfASmallWindowIsShownAtEveryTick)
{
    PlaySecond(3, 0.0001);
    EXPECT_EQ(PlaySecond(3, 0.0001), kTicks);
}

TEST_F(PaintPaceTest, TheEndOfAFlickerIsSeenAtOnce)
{
    PlaySecond(3, 0.007);
    PlaySecond(3, 0.007);
    Ask();
    PaintIfDue(0.007); // just painted, or held back
    Ask();
    const double wait = pace.SecondsToWait();
    EXPECT_GT(wait, 0.0);
    EXPECT_LE(wait, 0.11);
    host.Seconds += wait + 0.001;
    EXPECT_EQ(pace.SecondsToWait(), 0);
}

TEST_F(PaintPaceTest, ACalmTrackAfterAFlickerIsShownWholeAgain)
{
    PlaySecond(3, 0.007);
    PlaySecond(1, 0.007, 5);
    EXPECT_EQ(PlaySecond(1, 0.007, 5), 20);
}

TEST_F(PaintPaceTest, WithoutAPaintNothingIsHeldBack)
{
    EXPECT_EQ(pace.SecondsToWait(), 0);
    pace.NotePainted(host.Seconds - 3);
    EXPECT_EQ(pace.SecondsToWait(), 0);
}

} // namespace
} // namespace lantern
