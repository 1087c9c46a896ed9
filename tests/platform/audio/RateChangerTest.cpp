// SPDX-License-Identifier: GPL-3.0-or-later
#include "RateChanger.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>
#include <utility>

namespace lantern {
namespace {

// A tone of 1 kHz that has long begun.
std::vector<float> Tone(int rate, std::size_t frames, double level)
{
    std::vector<float> tone(frames);
    for (std::size_t i = 0; i < frames; ++i) {
        const double angle = 2.0 * std::numbers::pi * 1000.0 * static_cast<double>(i) / rate;
        tone[i] = static_cast<float>(level * std::cos(angle));
    }
    return tone;
}

std::pair<std::vector<float>, std::vector<float>> Converted(RateChanger& changer,
                                                            std::span<const float> left,
                                                            std::span<const float> right,
                                                            std::size_t mostAtOnce)
{
    std::mt19937 random(7);
    std::pair<std::vector<float>, std::vector<float>> out;
    for (std::size_t i = 0; i < left.size();) {
        const std::size_t piece = std::min(1 + random() % mostAtOnce, left.size() - i);
        const auto got = changer.Convert(left.subspan(i, piece), right.subspan(i, piece));
        EXPECT_EQ(got.left.size(), got.right.size());
        out.first.insert(out.first.end(), got.left.begin(), got.left.end());
        out.second.insert(out.second.end(), got.right.begin(), got.right.end());
        i += piece;
    }
    return out;
}

class RateChangerRates : public testing::TestWithParam<std::pair<int, int>> {};

TEST_P(RateChangerRates, EachFrameIsHeardWhenItWasAndEachSideStays)
{
    const auto [from, to] = GetParam();
    RateChanger changer(from, to);
    const auto frames = static_cast<std::size_t>(from);
    const std::vector<float> left = Tone(from, frames, 0.5);
    const std::vector<float> right = Tone(from, frames, -0.25);
    const auto [outLeft, outRight] = Converted(changer, left, right, 700);
    const std::vector<float> wantedLeft = Tone(to, outLeft.size(), 0.5);
    const std::vector<float> wantedRight = Tone(to, outLeft.size(), -0.25);
    // A hundredth of a second at most is still to come.
    ASSERT_GT(outLeft.size(), static_cast<std::size_t>(to) * 99 / 100);
    ASSERT_LE(outLeft.size(), static_cast<std::size_t>(to));
    // A tone that begins in the middle rings for a moment.
    for (std::size_t i = static_cast<std::size_t>(to) / 100; i < outLeft.size(); ++i) {
        ASSERT_NEAR(outLeft[i], wantedLeft[i], 0.001) << i;
        ASSERT_NEAR(outRight[i], wantedRight[i], 0.001) << i;
    }
}

TEST_P(RateChangerRates, PiecesOfAnySizeAreAsOneAndAResetForgets)
{
    const auto [from, to] = GetParam();
    std::mt19937 random(1);
    std::vector<float> noise(9000);
    for (float& sample : noise)
        sample = static_cast<float>(random() % 2000) / 1000.0F - 1.0F;
    RateChanger changer(from, to);
    const auto whole = Converted(changer, noise, noise, 1);
    for (const std::size_t mostAtOnce : {2U, 64U, 1024U, 9000U}) {
        changer.Convert(std::span(noise).first(777), std::span(noise).first(777));
        changer.Reset();
        EXPECT_TRUE(Converted(changer, noise, noise, mostAtOnce) == whole) << mostAtOnce;
        changer.Reset();
    }
}

INSTANTIATE_TEST_SUITE_P(Rates, RateChangerRates,
                         testing::Values(std::pair(192000, 48000), std::pair(48000, 192000),
                                         std::pair(176400, 44100), std::pair(44100, 176400),
                                         std::pair(88200, 44100), std::pair(96000, 48000),
                                         std::pair(64000, 48000), std::pair(48000, 64000)),
                         [](const auto& test) {
                             return std::to_string(test.param.first) + "To" +
                                    std::to_string(test.param.second);
                         });

} // namespace
} // namespace lantern
