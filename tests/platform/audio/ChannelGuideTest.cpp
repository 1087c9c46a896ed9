// SPDX-License-Identifier: GPL-3.0-or-later
#include "ChannelGuide.h"

#include "TestSounds.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <random>
#include <vector>

namespace lantern {
namespace {

// A tone on the left and another on the right.
std::vector<float> TwoTones(std::size_t frames)
{
    std::vector<float> stereo(frames * 2);
    for (std::size_t i = 0; i < frames; ++i) {
        const double turn = 2.0 * std::numbers::pi * static_cast<double>(i) / kRate;
        stereo[2 * i] = static_cast<float>(0.8 * std::sin(440.0 * turn));
        stereo[2 * i + 1] = static_cast<float>(0.5 * std::sin(660.0 * turn + 1.0));
    }
    return stereo;
}

std::vector<float> Guided(VoiceGuide guide, std::vector<float> stereo)
{
    ChannelGuide channels;
    channels.SetTarget(guide);
    channels.Restart(kRate);
    channels.Apply(stereo);
    return stereo;
}

// The longest step between two frames that follow each other, in either ear.
float LongestStep(const std::vector<float>& stereo)
{
    float longest = 0.0F;
    for (std::size_t i = 2; i < stereo.size(); ++i)
        longest = std::max(longest, std::abs(stereo[i] - stereo[i - 2]));
    return longest;
}

TEST(ChannelGuide, BothChannelsAsTheyAreArePassedBitForBit)
{
    std::vector<float> tones = TwoTones(1000);
    tones[7] = -0.0F;
    tones[8] = std::numeric_limits<float>::denorm_min();
    const std::vector<float> heard = Guided(VoiceGuide::Both, tones);
    for (std::size_t i = 0; i < tones.size(); ++i) {
        EXPECT_EQ(heard[i], tones[i]) << i;
        EXPECT_EQ(std::signbit(heard[i]), std::signbit(tones[i])) << i;
    }
}

TEST(ChannelGuide, OneChannelIsInBothEarsBitForBit)
{
    std::vector<float> tones = TwoTones(1000);
    const std::vector<float> left = Guided(VoiceGuide::Left, tones);
    const std::vector<float> right = Guided(VoiceGuide::Right, tones);
    for (std::size_t i = 0; i < tones.size(); i += 2) {
        EXPECT_EQ(left[i], tones[i]);
        EXPECT_EQ(left[i + 1], tones[i]);
        EXPECT_EQ(right[i], tones[i + 1]);
        EXPECT_EQ(right[i + 1], tones[i + 1]);
    }
}

// What the other channel holds, be it no number, is not heard.
TEST(ChannelGuide, TheChannelThatIsLeftOutLeavesNothing)
{
    std::vector<float> tones = TwoTones(10);
    for (std::size_t i = 1; i < tones.size(); i += 2)
        tones[i] = std::numeric_limits<float>::quiet_NaN();
    for (const float sample : Guided(VoiceGuide::Left, tones))
        EXPECT_FALSE(std::isnan(sample));
}

TEST(ChannelGuide, AChangeFadesOverWithinTenMilliseconds)
{
    ChannelGuide channels;
    channels.Restart(kRate);
    const std::vector<float> tones = TwoTones(2000);
    std::vector<float> heard = tones;
    channels.SetTarget(VoiceGuide::Right);
    channels.Apply(heard);
    constexpr std::size_t kRamp = kRate / 100;
    EXPECT_NE(heard[0], tones[1]) << "not at once";
    EXPECT_NE(heard[2 * (kRamp / 2)], tones[2 * (kRamp / 2) + 1]);
    for (std::size_t i = kRamp; i < 2000; ++i)
        ASSERT_EQ(heard[2 * i], tones[2 * i + 1]) << i;
    for (std::size_t i = 1; i < heard.size(); i += 2)
        EXPECT_FLOAT_EQ(heard[i], tones[i]) << "the ear that keeps its channel hears no fade";
}

TEST(ChannelGuide, ChangesInAnyOrderAtAnyMomentNeverStep)
{
    const float smooth = LongestStep(TwoTones(2000));
    std::mt19937 chance(11);
    for (int round = 0; round < 20; ++round) {
        ChannelGuide channels;
        channels.Restart(kRate);
        std::vector<float> heard = TwoTones(kRate);
        std::size_t at = 0;
        while (at < heard.size()) {
            channels.SetTarget(static_cast<VoiceGuide>(chance() % 3));
            const std::size_t frames = 1 + chance() % 900;
            const std::size_t end = std::min(at + 2 * frames, heard.size());
            channels.Apply(std::span(heard).subspan(at, end - at));
            at = end;
        }
        // The steepest moment of a fade over 441 frames between voices that are 1.3 apart.
        EXPECT_LT(LongestStep(heard), smooth + 1.5F * 1.3F / 441.0F + 1e-4F);
    }
}

} // namespace
} // namespace lantern
