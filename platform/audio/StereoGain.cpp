// SPDX-License-Identifier: GPL-3.0-or-later
#include "StereoGain.h"

#include <algorithm>

namespace lantern {

namespace {

constexpr float kFullVolume = 100.0F;
constexpr float kFullBalance = 50.0F;

// Written so that what is no number ends at 0.
float Fraction(float value)
{
    return value > 0.0F ? std::min(value, 1.0F) : 0.0F;
}

} // namespace

StereoLevel LevelFor(float volumePercent, float balance)
{
    const float volume = Fraction(volumePercent / kFullVolume);
    const float towardsRight = Fraction(balance / kFullBalance);
    const float towardsLeft = Fraction(-balance / kFullBalance);
    return {volume * (1.0F - towardsRight), volume * (1.0F - towardsLeft)};
}

void StereoGain::Apply(std::span<float> stereo)
{
    m_ramp.LookForTarget();
    for (std::size_t i = 0; i + 1 < stereo.size(); i += 2) {
        if (!m_ramp.IsOnTheWay() && m_ramp.Now() == StereoLevel{})
            return;
        m_ramp.Step();
        stereo[i] *= m_ramp.Now().left;
        stereo[i + 1] *= m_ramp.Now().right;
    }
}

} // namespace lantern
