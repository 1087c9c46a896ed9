// SPDX-License-Identifier: GPL-3.0-or-later
#include "TruePeak.h"

#include "TestSounds.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <ebur128.h>
#include <numbers>
#include <random>

namespace lantern {
namespace {

float TruePeakOf(std::span<const float> stereo)
{
    TruePeak peak;
    peak.Add(stereo);
    return peak.Value();
}

double TruePeakByTheLibrary(std::span<const float> stereo)
{
    ebur128_state* state = ebur128_init(2, kRate, EBUR128_MODE_TRUE_PEAK);
    ebur128_add_frames_float(state, stereo.data(), stereo.size() / 2);
    double left = 0;
    double right = 0;
    ebur128_true_peak(state, 0, &left);
    ebur128_true_peak(state, 1, &right);
    ebur128_destroy(&state);
    return std::max(left, right);
}

// On the right side only.
std::vector<float> Tone(double cyclesPerFrame, double phase, std::size_t frames)
{
    std::vector<float> stereo(frames * 2);
    for (std::size_t i = 0; i < frames; ++i)
        stereo[2 * i + 1] = static_cast<float>(
            std::sin(2 * std::numbers::pi * (cyclesPerFrame * static_cast<double>(i)) + phase));
    return stereo;
}

TEST(TruePeak, WhatLiesBetweenTheSamplesIsFound)
{
    // Each sample of this tone is at 0.71 of its peak.
    const std::vector<float> tone = Tone(0.25, std::numbers::pi / 4, 2000);
    EXPECT_NEAR(TruePeakOf(tone), 1.0, 0.05);
    EXPECT_NEAR(TruePeakOf(Tone(0.01, 0, 2000)), 1.0, 0.01);
}

TEST(TruePeak, ItIsThatOfTheLibrary)
{
    std::mt19937 random(3);
    for (int i = 0; i < 20; ++i) {
        const std::vector<float> tone =
            Tone(0.02 * i + 0.003, std::uniform_real_distribution<>(0, 6)(random), 3000);
        EXPECT_NEAR(TruePeakOf(tone), TruePeakByTheLibrary(tone), 1e-4) << i;
    }
    const std::vector<float> noise = StereoNoise(50'000);
    EXPECT_NEAR(TruePeakOf(noise), TruePeakByTheLibrary(noise), 1e-4);
}

// Most blocks are not looked at, as they can't come near what has been found.
TEST(TruePeak, NoBlockIsLeftOutThatCounts)
{
    std::mt19937 random(5);
    for (int round = 0; round < 50; ++round) {
        std::vector<float> noise = StereoNoise(6000);
        for (std::size_t block = 0; block < 12; ++block) {
            const float level = std::uniform_real_distribution<float>(0, 1)(random);
            for (std::size_t i = 0; i < 1000; ++i)
                noise[block * 1000 + i] *= level;
        }
        EXPECT_NEAR(TruePeakOf(noise), TruePeakByTheLibrary(noise), 1e-4) << round;
    }
    // The highest place is between two blocks.
    std::vector<float> noise(4096, 0.0F);
    for (std::size_t i = 1022; i <= 1027; ++i)
        noise[i] = i < 1024 ? 0.9F : 0.2F;
    EXPECT_NEAR(TruePeakOf(noise), TruePeakByTheLibrary(noise), 1e-4);
}

TEST(TruePeak, PiecesOfAnySizeGiveTheSame)
{
    const std::vector<float> noise = StereoNoise(20'000);
    TruePeak peak;
    std::mt19937 random(7);
    for (std::size_t i = 0; i < noise.size();) {
        const std::size_t piece = std::min<std::size_t>(2 * (random() % 700), noise.size() - i);
        peak.Add(std::span(noise).subspan(i, piece));
        i += piece;
    }
    EXPECT_EQ(peak.Value(), TruePeakOf(noise));
    EXPECT_EQ(TruePeakOf({}), 0.0F);
}

} // namespace
} // namespace lantern
