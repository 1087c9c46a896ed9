// SPDX-License-Identifier: GPL-3.0-or-later
#include "PeakLimiter.h"

#include "TestSounds.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace lantern {
namespace {

struct Sides {
    std::vector<float> left;
    std::vector<float> right;
};

// In pieces of any size, and without the delay.
Sides Limited(Sides sound, int rate = kRate)
{
    PeakLimiter limiter(rate);
    const auto delay = static_cast<std::size_t>(limiter.DelayFrames());
    for (std::vector<float>* side : {&sound.left, &sound.right})
        side->resize(side->size() + delay);
    std::mt19937 random(3);
    for (std::size_t i = 0; i < sound.left.size();) {
        const std::size_t piece = std::min<std::size_t>(random() % 300, sound.left.size() - i);
        limiter.Apply(std::span(sound.left).subspan(i, piece),
                      std::span(sound.right).subspan(i, piece));
        i += piece;
    }
    for (std::vector<float>* side : {&sound.left, &sound.right})
        side->erase(side->begin(), side->begin() + static_cast<std::ptrdiff_t>(delay));
    return sound;
}

std::vector<float> Noise(std::size_t frames, float peak)
{
    std::mt19937 random(5);
    std::uniform_real_distribution<float> level(-peak, peak);
    std::vector<float> noise(frames);
    std::ranges::generate(noise, [&] { return level(random); });
    return noise;
}

float Peak(const std::vector<float>& side)
{
    float peak = 0.0F;
    for (const float sample : side)
        peak = std::max(peak, std::abs(sample));
    return peak;
}

TEST(PeakLimiter, ItIsBehindByFiveMilliseconds)
{
    EXPECT_EQ(PeakLimiter(44100).DelayFrames(), 220);
    EXPECT_EQ(PeakLimiter(192'000).DelayFrames(), 960);
    EXPECT_EQ(PeakLimiter(8000).DelayFrames(), 40);
}

TEST(PeakLimiter, WhatIsNotTooLoudPassesBitForBit)
{
    const Sides sound = {Noise(50'000, 0.999F), Noise(50'000, 0.5F)};
    const Sides heard = Limited(sound);
    EXPECT_TRUE(heard.left == sound.left);
    EXPECT_TRUE(heard.right == sound.right);
}

TEST(PeakLimiter, NothingLeavesFullScaleHoweverLoud)
{
    for (const float loudness : {1.05F, 1.6F, 8.0F, 1e6F}) {
        for (const int rate : {8000, 44100, 192'000}) {
            const Sides heard = Limited({Noise(60'000, loudness), Noise(60'000, 0.1F)}, rate);
            EXPECT_LE(Peak(heard.left), 1.0F) << loudness;
            EXPECT_GT(Peak(heard.left), 0.9F) << loudness;
        }
    }
}

TEST(PeakLimiter, APeakTurnsBothSidesDownInARampAndTheyRiseAgainToBitForBit)
{
    const Sides sound = {std::vector<float>(3 * kRate, 0.5F), std::vector<float>(3 * kRate, 0.25F)};
    Sides loud = sound;
    loud.left[20'000] = 2.0F;
    const Sides heard = Limited(loud);
    EXPECT_NEAR(heard.left[20'000], 1.0F, 0.002F);
    EXPECT_NEAR(heard.right[20'000], 0.125F, 0.001F);
    for (std::size_t i = 1; i < heard.right.size(); ++i)
        ASSERT_LT(std::abs(heard.right[i] - heard.right[i - 1]), 0.25F / 200) << i;
    EXPECT_EQ(heard.right[20'000 - 221], 0.25F);
    EXPECT_LT(heard.right[20'000 + 2000], 0.22F) << "slowly";
    EXPECT_EQ(heard.right.back(), 0.25F);
    EXPECT_EQ(heard.left.back(), 0.5F);
}

TEST(PeakLimiter, ItKeepsPeaksAsLowAsItIsTold)
{
    PeakLimiter limiter(kRate);
    limiter.SetLoudest(0.25F);
    std::vector<float> left = Noise(60'000, 0.9F);
    std::vector<float> right = left;
    limiter.Apply(left, right);
    EXPECT_LE(Peak(left), 0.25F);
    EXPECT_GT(Peak(left), 0.22F);
    limiter.SetLoudest(1.0F);
    left = right = Noise(60'000, 0.9F);
    limiter.Apply(left, right);
    EXPECT_GT(Peak(left), 0.8F);
}

TEST(PeakLimiter, AfterAResetNothingIsLeftOfWhatWentIn)
{
    PeakLimiter limiter(kRate);
    std::vector<float> left = Noise(1000, 9.0F);
    std::vector<float> right = left;
    limiter.Apply(left, right);
    limiter.Reset();
    std::vector<float> quiet(1000, 0.5F);
    right = quiet;
    limiter.Apply(quiet, right);
    EXPECT_EQ(quiet[219], 0.0F);
    EXPECT_EQ(std::count(quiet.begin() + 220, quiet.end(), 0.5F), 780);
}

} // namespace
} // namespace lantern
