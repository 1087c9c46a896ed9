// SPDX-License-Identifier: GPL-3.0-or-later
#include "Listening.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

namespace lantern::test {
namespace {

constexpr int kRate = 44100;

void AddTone(std::vector<float>& stereo, int from, int count, double frequency, double left,
             double right)
{
    for (int i = 0; i < count; ++i) {
        const double value = std::sin(2.0 * std::numbers::pi * frequency * i / kRate);
        const auto frame = static_cast<std::size_t>(from + i);
        stereo[2 * frame] = static_cast<float>(left * value);
        stereo[2 * frame + 1] = static_cast<float>(right * value);
    }
}

TEST(Listening, BurstsAreFoundWhereTheyStartWithTheirFrequencies)
{
    std::vector<float> stereo(2 * 2 * kRate, 0.0F);
    AddTone(stereo, 10'000, 2205, 600.0, 0.5, 0.5);
    AddTone(stereo, 50'000, 2205, 1300.0, 0.25, 0.25);
    const std::vector<Burst> bursts = FindBursts(stereo, kRate);
    ASSERT_EQ(bursts.size(), 2U);
    EXPECT_NEAR(bursts[0].startFrame, 10'000.0, 20.0);
    EXPECT_NEAR(bursts[0].lengthFrames, 2205.0, 40.0);
    EXPECT_NEAR(bursts[0].frequency, 600.0, 6.0);
    EXPECT_NEAR(bursts[1].startFrame, 50'000.0, 20.0);
    EXPECT_NEAR(bursts[1].frequency, 1300.0, 13.0);
    EXPECT_NEAR(bursts[1].level, 0.25, 0.01);
}

TEST(Listening, EachSideHasItsLevel)
{
    std::vector<float> stereo(2 * kRate, 0.0F);
    AddTone(stereo, 0, kRate, 441.0, 0.8, 0.2);
    EXPECT_NEAR(Level(stereo, Side::Left), 0.8 / std::numbers::sqrt2, 0.001);
    EXPECT_NEAR(Level(stereo, Side::Right), 0.2 / std::numbers::sqrt2, 0.001);
}

TEST(Listening, SilenceHasNeitherLevelNorFrequencyNorBursts)
{
    const std::vector<float> stereo(2 * kRate, 0.0F);
    EXPECT_EQ(Level(stereo), 0.0);
    EXPECT_EQ(Frequency(stereo, kRate), 0.0);
    EXPECT_TRUE(FindBursts(stereo, kRate).empty());
}

} // namespace
} // namespace lantern::test
