// SPDX-License-Identifier: GPL-3.0-or-later
#include "FlashComparison.h"

#include "FlashTrack.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

namespace lantern::test {
namespace {

constexpr double kSeconds = 30.0;
constexpr double kToneSeconds = 0.06;

// A play-through that never took place: the tones where they belong, and the flashes wherever a
// test puts them. What the comparison says of it is known.
class FlashComparison : public ::testing::Test {
protected:
    FlashComparison()
    {
        heard.stereo.resize(2 * static_cast<std::size_t>(kSeconds * Recording::kRate), 0.0F);
        for (int second = 0; second < static_cast<int>(kSeconds); ++second)
            heard.marks.emplace_back(At(second), second * Recording::kRate);
        AddChange(PictureWatched, FlashTrack::FirstPictureColour(), 0.0);
        AddChange(BorderWatched, FlashTrack::FirstBorderColour(), 0.0);
        for (std::size_t i = 0; i < track.Times().size(); ++i)
            AddTone(track.Times()[i], FlashTrack::ToneOfFlash(static_cast<int>(i) + 1));
    }

    Moment At(double seconds) const { return start + FromSeconds(seconds); }

    void AddTone(double seconds, double frequency)
    {
        const auto first = static_cast<std::size_t>(seconds * Recording::kRate);
        for (std::size_t i = 0; i < static_cast<std::size_t>(kToneSeconds * Recording::kRate);
             ++i) {
            const double phase = 2.0 * std::numbers::pi * frequency * static_cast<double>(i);
            const auto value = static_cast<float>(0.5 * std::sin(phase / Recording::kRate));
            heard.stereo[2 * (first + i)] = value;
            heard.stereo[2 * (first + i) + 1] = value;
        }
    }

    void AddChange(WatchedPoint point, QRgb colour, double seconds)
    {
        seen.push_back({point, colour, At(seconds - 0.001), At(seconds)});
    }

    // The flash of a number, late by so much.
    void AddFlash(int flash, double lateMs, int shownAs = 0)
    {
        const int shown = shownAs == 0 ? flash : shownAs;
        AddChange(shown % 2 == 0 ? PictureWatched : BorderWatched, FlashTrack::ColourOfFlash(shown),
                  track.Times()[static_cast<std::size_t>(flash) - 1] + lateMs / 1e3);
    }
    int FlashCount() const { return static_cast<int>(track.Times().size()); }

    Comparison Result() const { return Compare(heard, seen, {{At(0.5), At(29.5)}}, stalls); }

    const FlashTrack track{kSeconds};
    const Moment start = Clock::now() - 60s; // the stall watch knows nothing of then
    const StallWatch stalls;
    Recording heard;
    std::vector<Eyes::Change> seen;
};

TEST_F(FlashComparison, ASteadyLatenessIsMeasuredAsItIs)
{
    for (int flash = 1; flash <= FlashCount(); ++flash)
        AddFlash(flash, 12.0);
    const Comparison result = Result();
    EXPECT_TRUE(result.contradictions.empty());
    EXPECT_EQ(result.errors.size(), track.Times().size());
    EXPECT_NEAR(result.Median(), 12.0, 1.0);
    EXPECT_NEAR(result.Drift(), 0.0, 1.0);
    EXPECT_EQ(result.DoubtfulCount(), 0U);
}

TEST_F(FlashComparison, ADriftIsSeen)
{
    for (int flash = 1; flash <= FlashCount(); ++flash)
        AddFlash(flash, -10.0 + 30.0 * flash / FlashCount());
    EXPECT_NEAR(Result().Drift(), 22.0, 3.0);
}

TEST_F(FlashComparison, OneLateFlashStandsOut)
{
    for (int flash = 1; flash <= FlashCount(); ++flash)
        AddFlash(flash, flash == 7 ? 65.0 : 5.0);
    EXPECT_NEAR(Result().Sorted().back(), 65.0, 1.0);
    EXPECT_NEAR(Result().Median(), 5.0, 1.0);
}

TEST_F(FlashComparison, AMissingFlashIsAContradiction)
{
    for (int flash = 1; flash <= FlashCount(); ++flash) {
        if (flash != 7)
            AddFlash(flash, 5.0);
    }
    EXPECT_EQ(Result().contradictions.size(), 1U);
}

TEST_F(FlashComparison, AFlashTooManyIsAContradiction)
{
    for (int flash = 1; flash <= FlashCount(); ++flash)
        AddFlash(flash, 5.0);
    AddFlash(7, 350.0, 8);
    EXPECT_EQ(Result().contradictions.size(), 1U);
}

TEST_F(FlashComparison, TheFlashOfANeighbourIsAContradiction)
{
    // The picture is a whole flash ahead, right in time: only the kinds can tell.
    for (int flash = 1; flash < FlashCount(); ++flash)
        AddFlash(flash, 5.0, flash + 1);
    EXPECT_GE(Result().contradictions.size(), track.Times().size() - 2);
}

TEST_F(FlashComparison, WhatTheEyesSawLateIsDoubtful)
{
    for (int flash = 1; flash <= FlashCount(); ++flash)
        AddFlash(flash, 5.0);
    seen.back().lastSeenBefore -= 50ms;
    EXPECT_EQ(Result().DoubtfulCount(), 1U);
}

} // namespace
} // namespace lantern::test
