// SPDX-License-Identifier: GPL-3.0-or-later
#include "SoundGain.h"

#include <algorithm>
#include <cmath>

namespace lantern {

void SoundGain::Restart(int sampleRate)
{
    m_fadeFrames = std::max(sampleRate / 2, 1);
    m_fadeDone = m_fadeFrames;
    m_now = m_from = m_to = m_target;
}

void SoundGain::Apply(std::span<float> stereo)
{
    if (const float target = m_target; target != m_to) {
        m_from = m_now;
        m_to = target;
        m_fadeDone = 0;
    }
    for (std::size_t i = 0; i + 1 < stereo.size(); i += 2) {
        if (m_fadeDone < m_fadeFrames) {
            const float t = static_cast<float>(++m_fadeDone) / static_cast<float>(m_fadeFrames);
            const float weight = t * t * (3.0F - 2.0F * t);
            m_now = m_fadeDone < m_fadeFrames ? m_from * std::pow(m_to / m_from, weight) : m_to;
        } else if (m_now == 1.0F) {
            return;
        }
        stereo[i] *= m_now;
        stereo[i + 1] *= m_now;
    }
}

} // namespace lantern
