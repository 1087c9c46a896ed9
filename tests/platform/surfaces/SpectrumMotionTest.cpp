// SPDX-License-Identifier: GPL-3.0-or-later
#include "SpectrumMotion.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <utility>
#include <vector>

namespace lantern {
namespace {

constexpr float kFrame = 1.0F / 60.0F;

TEST(SpectrumMotion, ABarRisesAtOnceAndThrowsItsCapUp)
{
    const SpectrumBar bar = MovedBar({}, 0.7F, kFrame);
    EXPECT_FLOAT_EQ(bar.height, 0.7F);
    EXPECT_FLOAT_EQ(bar.cap, 0.7F);
}

TEST(SpectrumMotion, ABarFallsEvenlyWhateverTheTimeBetweenTheFrames)
{
    SpectrumBar coarse = MovedBar({}, 1.0F, kFrame);
    SpectrumBar fine = coarse;
    for (int i = 0; i < 6; ++i) {
        const float before = coarse.height;
        coarse = MovedBar(coarse, 0.0F, 0.05F);
        EXPECT_NEAR(before - coarse.height, 0.08F, 1e-5F);
        for (int k = 0; k < 10; ++k)
            fine = MovedBar(fine, 0.0F, 0.005F);
        EXPECT_NEAR(coarse.height, fine.height, 1e-5F);
        EXPECT_NEAR(coarse.cap, fine.cap, 1e-5F);
    }
}

TEST(SpectrumMotion, ABarFallsNoLowerThanItsStrength)
{
    SpectrumBar bar = MovedBar({}, 1.0F, kFrame);
    bar = MovedBar(bar, 0.6F, 5.0F);
    EXPECT_FLOAT_EQ(bar.height, 0.6F);
}

TEST(SpectrumMotion, ACapStaysAMomentAndThenFallsEverFaster)
{
    SpectrumBar bar = MovedBar({}, 1.0F, kFrame);
    bar = MovedBar(bar, 0.0F, 0.3F);
    EXPECT_EQ(bar.cap, 1.0F);
    bar = MovedBar(bar, 0.0F, 0.1F);
    float last = bar.cap;
    float lastStep = 0.0F;
    EXPECT_LT(last, 1.0F);
    for (int i = 0; i < 3; ++i) {
        bar = MovedBar(bar, 0.0F, 0.1F);
        EXPECT_GT(last - bar.cap, lastStep);
        lastStep = last - std::exchange(last, bar.cap);
    }
}

TEST(SpectrumMotion, ACapIsNeverBelowItsBar)
{
    SpectrumBar bar;
    for (int i = 0; i < 600; ++i) {
        const float strength = 0.5F + 0.5F * std::sin(static_cast<float>(i) * 0.15F);
        bar = MovedBar(bar, strength, kFrame);
        ASSERT_GE(bar.cap, bar.height) << i;
        ASSERT_GE(bar.height, strength) << i;
        ASSERT_LE(bar.cap, 1.0F) << i;
    }
}

TEST(SpectrumMotion, WithoutSoundEverythingComesToRestWithinTwoSeconds)
{
    SpectrumMotion motion;
    motion.SetBarCount(3);
    EXPECT_TRUE(motion.IsAtRest());
    motion.Advance(std::vector<float>{1.0F, 0.01F, 0.5F}, kFrame);
    EXPECT_FALSE(motion.IsAtRest());
    for (int i = 0; i < 120; ++i)
        motion.Advance({}, kFrame);
    EXPECT_TRUE(motion.IsAtRest());
    EXPECT_EQ(motion.Bars()[0], SpectrumBar{});
}

TEST(SpectrumMotion, AFrameAfterAVeryLongTimeIsTheEnd)
{
    const SpectrumBar risen = MovedBar({}, 1.0F, kFrame);
    EXPECT_EQ(MovedBar(risen, 0.0F, 1e9F), SpectrumBar{});
}

TEST(SpectrumMotion, AStrengthOrTimeThatMakesNoSenseDoesNoHarm)
{
    const float nan = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(MovedBar({}, nan, kFrame).height, 0.0F);
    EXPECT_EQ(MovedBar({}, -3.0F, kFrame).height, 0.0F);
    EXPECT_EQ(MovedBar({}, 7.0F, kFrame).height, 1.0F);
    const SpectrumBar risen = MovedBar({}, 0.5F, nan);
    EXPECT_EQ(MovedBar(risen, 0.0F, -1.0F).height, 0.5F);
    EXPECT_EQ(MovedBar(risen, 0.0F, nan).height, 0.5F);
}

TEST(SpectrumMotion, TellsWhetherThereIsAnythingNewToBeSeen)
{
    SpectrumMotion motion;
    motion.SetBarCount(2);
    EXPECT_FALSE(motion.Advance(std::vector<float>{0.0F, 0.0F}, kFrame));
    EXPECT_TRUE(motion.Advance(std::vector<float>{0.0F, 0.5F}, kFrame));
    EXPECT_FALSE(motion.Advance(std::vector<float>{0.0F, 0.5F}, kFrame));
    EXPECT_TRUE(motion.Advance(std::vector<float>{0.0F, 0.4F}, kFrame));
}

TEST(SpectrumMotion, OtherBarsStartFromNothing)
{
    SpectrumMotion motion;
    motion.SetBarCount(2);
    motion.Advance(std::vector<float>{1.0F, 1.0F}, kFrame);
    motion.SetBarCount(2);
    EXPECT_FALSE(motion.IsAtRest());
    motion.SetBarCount(5);
    EXPECT_EQ(motion.Bars().size(), 5u);
    EXPECT_TRUE(motion.IsAtRest());
    motion.Advance(std::vector<float>{1.0F}, kFrame); // fewer strengths than bars
    motion.Clear();
    EXPECT_TRUE(motion.IsAtRest());
    motion.SetBarCount(-1);
    EXPECT_TRUE(motion.Bars().empty());
}

} // namespace
} // namespace lantern
