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

void StereoGain::Restart(int sampleRate)
{
    m_rampFrames = std::max(sampleRate / 100, 1);
    m_rampDone = m_rampFrames;
    m_now = m_from = m_to = m_target;
}

StereoLevel StereoGain::NextRampLevel()
{
    if (++m_rampDone >= m_rampFrames)
        return m_to;
    const float t = static_cast<float>(m_rampDone) / static_cast<float>(m_rampFrames);
    const float weight = t * t * (3.0F - 2.0F * t);
    return {m_from.left + (m_to.left - m_from.left) * weight,
            m_from.right + (m_to.right - m_from.right) * weight};
}

void StereoGain::Apply(std::span<float> stereo)
{
    if (const StereoLevel target = m_target; target != m_to) {
        m_from = m_now;
        m_to = target;
        m_rampDone = 0;
    }
    for (std::size_t i = 0; i + 1 < stereo.size(); i += 2) {
        if (m_rampDone < m_rampFrames)
            m_now = NextRampLevel();
        else if (m_now == StereoLevel{})
            return;
        stereo[i] *= m_now.left;
        stereo[i + 1] *= m_now.right;
    }
}

} // namespace lantern
