// SPDX-License-Identifier: GPL-3.0-or-later
#include "SoundGain.h"

#include "TestSounds.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace lantern {
namespace {

std::vector<float> Passed(SoundGain& gain, std::vector<float> stereo)
{
    gain.Apply(stereo);
    return stereo;
}

std::vector<float> Scaled(std::vector<float> stereo, float factor)
{
    std::ranges::transform(stereo, stereo.begin(), [=](float sample) { return sample * factor; });
    return stereo;
}

TEST(SoundGain, WithoutAGainEverySamplePassesBitForBit)
{
    SoundGain gain;
    gain.Restart(kRate);
    const std::vector<float> noise = StereoNoise(1000);
    EXPECT_EQ(Passed(gain, noise), noise);
}

TEST(SoundGain, ASoundHasItsGainFromTheFirstFrame)
{
    SoundGain gain;
    gain.SetTarget(0.25F);
    gain.Restart(kRate);
    const std::vector<float> noise = StereoNoise(1000);
    EXPECT_EQ(Passed(gain, noise), Scaled(noise, 0.25F));
}

TEST(SoundGain, AChangeIsAFadeOfHalfASecondAndBackAtOneTheSoundPassesAsItIs)
{
    SoundGain gain;
    gain.Restart(kRate);
    const std::vector<float> ones(std::size_t{kRate}, 1.0F); // half a second
    for (const float target : {0.5F, 3.0F, 1.0F}) {
        gain.SetTarget(target);
        const std::vector<float> fade = Passed(gain, ones);
        for (std::size_t i = 2; i < fade.size(); i += 2) {
            ASSERT_NEAR(fade[i] / fade[i - 2], 1, 2e-4) << i;
            ASSERT_EQ(fade[i], fade[i + 1]);
        }
        EXPECT_EQ(fade.back(), target);
        EXPECT_EQ(Passed(gain, {0.1F, 0.2F}), Scaled({0.1F, 0.2F}, target));
    }
    const std::vector<float> noise = StereoNoise(1000);
    EXPECT_EQ(Passed(gain, noise), noise);
}

TEST(SoundGain, AChangeOnTheWayGoesOnFromThere)
{
    SoundGain gain;
    gain.Restart(kRate);
    gain.SetTarget(0.25F);
    const float half = Passed(gain, std::vector<float>(std::size_t{kRate} / 2, 1.0F)).back();
    EXPECT_NEAR(half, 0.5, 0.01); // even in decibels
    gain.SetTarget(1.0F);
    const std::vector<float> back = Passed(gain, std::vector<float>(std::size_t{kRate}, 1.0F));
    EXPECT_NEAR(back.front(), half, 1e-3);
    EXPECT_EQ(back.back(), 1.0F);
}

} // namespace
} // namespace lantern
