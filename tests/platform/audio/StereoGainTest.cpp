// SPDX-License-Identifier: GPL-3.0-or-later
#include "StereoGain.h"

#include "TestSounds.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <vector>

namespace lantern {
namespace {

std::vector<float> Sine(std::size_t frames)
{
    std::vector<float> stereo(frames * 2);
    for (std::size_t i = 0; i < frames; ++i) {
        const double angle = 2.0 * std::numbers::pi * 440.0 * static_cast<double>(i) / kRate;
        stereo[2 * i] = stereo[2 * i + 1] = static_cast<float>(std::sin(angle));
    }
    return stereo;
}

TEST(StereoGain, VolumeIsLinearAndBalanceTakesFromTheFarSide)
{
    EXPECT_EQ(LevelFor(100, 0), (StereoLevel{1, 1}));
    EXPECT_EQ(LevelFor(50, 0), (StereoLevel{0.5, 0.5}));
    EXPECT_EQ(LevelFor(0, 0), (StereoLevel{0, 0}));
    EXPECT_EQ(LevelFor(100, -50), (StereoLevel{1, 0}));
    EXPECT_EQ(LevelFor(100, 50), (StereoLevel{0, 1}));
    EXPECT_EQ(LevelFor(100, 25), (StereoLevel{0.5, 1}));
    EXPECT_EQ(LevelFor(50, -25), (StereoLevel{0.5, 0.25}));
}

TEST(StereoGain, ValuesOutOfRangeDoNotGetLoud)
{
    constexpr float kNone = std::numeric_limits<float>::quiet_NaN();
    constexpr float kEndless = std::numeric_limits<float>::infinity();
    EXPECT_EQ(LevelFor(150, 0), (StereoLevel{1, 1}));
    EXPECT_EQ(LevelFor(-1, 0), (StereoLevel{0, 0}));
    EXPECT_EQ(LevelFor(kNone, 0), (StereoLevel{0, 0}));
    EXPECT_EQ(LevelFor(kEndless, -kEndless), (StereoLevel{1, 0}));
    EXPECT_EQ(LevelFor(100, kNone), (StereoLevel{1, 1}));
}

TEST(StereoGain, AtFullLevelEverySamplePassesBitForBit)
{
    StereoGain gain;
    gain.Restart(kRate);
    const std::vector<float> sine = Sine(1000);
    std::vector<float> heard = sine;
    gain.Apply(heard);
    EXPECT_EQ(heard, sine);
}

TEST(StereoGain, AChangeIsARampOfTenMillisecondsWithoutACorner)
{
    StereoGain gain;
    gain.Restart(kRate);
    std::vector<float> constant(2 * 1000, 1.0F);
    gain.SetTarget({0.25F, 1.0F});
    gain.Apply(constant);
    EXPECT_GT(constant[2 * 430], 0.25F);
    EXPECT_EQ(constant[2 * 441], 0.25F);
    EXPECT_EQ(constant[2 * 441 + 1], 1.0F);
    for (std::size_t i = 2; i < 1000; ++i) {
        const float bend = constant[2 * i] - 2 * constant[2 * i - 2] + constant[2 * i - 4];
        EXPECT_LT(std::abs(bend), 5e-5F) << i;
    }
}

TEST(StereoGain, BothSidesChangeAlike)
{
    const auto heard = [](StereoLevel from, StereoLevel to) {
        StereoGain gain;
        gain.SetTarget(from);
        gain.Restart(kRate);
        gain.SetTarget(to);
        std::vector<float> constant(2 * 600, 1.0F);
        gain.Apply(constant);
        return constant;
    };
    const std::vector<float> sound = heard({0.75F, 0.125F}, {0.25F, 0.5F});
    std::vector<float> mirrored = heard({0.125F, 0.75F}, {0.5F, 0.25F});
    for (std::size_t i = 0; i < mirrored.size(); i += 2)
        std::swap(mirrored[i], mirrored[i + 1]);
    EXPECT_EQ(sound, mirrored);
}

TEST(StereoGain, AChangeDuringARampGoesOnFromTheLevelReached)
{
    StereoGain gain;
    gain.Restart(kRate);
    std::vector<float> constant(2 * 220, 1.0F);
    gain.SetTarget({0, 0});
    gain.Apply(constant);
    const float reached = constant[2 * 219];
    gain.SetTarget({1, 1});
    std::vector<float> rest(2 * 1000, 1.0F);
    gain.Apply(rest);
    EXPECT_NEAR(rest[0], reached, 0.005);
    EXPECT_EQ(rest[2 * 441], 1.0F);
    EXPECT_EQ(rest.back(), 1.0F);
}

TEST(StereoGain, ANewStreamStartsAtItsLevel)
{
    StereoGain gain;
    gain.SetTarget({0.5F, 0.0F});
    gain.Restart(kRate);
    std::vector<float> constant(2 * 10, 1.0F);
    gain.Apply(constant);
    EXPECT_EQ(constant[0], 0.5F);
    EXPECT_EQ(constant[1], 0.0F);
}

TEST(StereoGain, ANewStreamEndsTheRampOfTheFormerOne)
{
    StereoGain gain;
    gain.Restart(kRate);
    gain.SetTarget({0.5F, 0.25F});
    std::vector<float> former(2 * 100, 1.0F);
    gain.Apply(former);
    gain.Restart(8000);
    std::vector<float> constant(2 * 10, 1.0F);
    gain.Apply(constant);
    EXPECT_EQ(constant[0], 0.5F);
    EXPECT_EQ(constant[1], 0.25F);

    gain.SetTarget({1.0F, 1.0F});
    std::vector<float> ramp(2 * 100, 1.0F);
    gain.Apply(ramp);
    EXPECT_LT(ramp[2 * 78], 1.0F) << "ten milliseconds at the new rate";
    EXPECT_EQ(ramp[2 * 79], 1.0F);
}

} // namespace
} // namespace lantern
