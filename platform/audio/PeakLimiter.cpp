// SPDX-License-Identifier: GPL-3.0-or-later
#include "PeakLimiter.h"

#include <algorithm>
#include <cmath>

namespace lantern {

namespace {

constexpr int kLookAheadMs = 5;
constexpr double kRiseSeconds = 0.1;
constexpr float kRoom = 0.999F; // a little room for what is rounded
constexpr double kAsGoodAsOne = 0.9999;

} // namespace

PeakLimiter::PeakLimiter(int sampleRate)
    : m_loudest(kRoom), m_window(static_cast<std::size_t>(sampleRate) * kLookAheadMs / 1000 + 1),
      m_rise(1.0 / (kRiseSeconds * sampleRate)), m_needs(m_window)
{
    Reset();
}

void PeakLimiter::SetLoudest(float peak)
{
    m_loudest = peak * kRoom;
}

void PeakLimiter::Reset()
{
    m_left.assign(m_window, 0.0F);
    m_right.assign(m_window, 0.0F);
    m_gains.assign(m_window, 1.0);
    m_gainSum = static_cast<double>(m_window);
    m_needCount = 0;
    m_gain = 1.0;
}

void PeakLimiter::Apply(std::span<float> left, std::span<float> right)
{
    for (std::size_t i = 0; i < left.size(); ++i) {
        const float peak = std::max(std::abs(left[i]), std::abs(right[i]));
        const float gain = RampedGain(LeastGain(peak > m_loudest ? m_loudest / peak : 1.0F));
        m_left[m_frame % m_window] = left[i];
        m_right[m_frame % m_window] = right[i];
        ++m_frame; // and the oldest lies where the next one will
        left[i] = m_left[m_frame % m_window] * gain;
        right[i] = m_right[m_frame % m_window] * gain;
    }
}

// Of the frames in the window.
float PeakLimiter::LeastGain(float gain)
{
    const auto need = [this](std::size_t number) -> Need& {
        return m_needs[(m_firstNeed + number) % m_window];
    };
    if (m_needCount > 0 && need(0).frame + m_window <= m_frame) {
        m_firstNeed = (m_firstNeed + 1) % m_window;
        --m_needCount;
    }
    while (m_needCount > 0 && need(m_needCount - 1).gain >= gain)
        --m_needCount;
    need(m_needCount++) = {m_frame, gain};
    return need(0).gain;
}

// The mean of a window. When a frame comes out, all of it has looked at the frame.
float PeakLimiter::RampedGain(float gain)
{
    const double risen = m_gain + (1.0 - m_gain) * m_rise;
    m_gain = std::min<double>(gain, risen > kAsGoodAsOne ? 1.0 : risen);
    double& oldest = m_gains[m_frame % m_window];
    m_gainSum += m_gain - oldest;
    oldest = m_gain;
    return static_cast<float>(m_gainSum / static_cast<double>(m_window));
}

} // namespace lantern
