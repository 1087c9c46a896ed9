// SPDX-License-Identifier: GPL-3.0-or-later
#include "TruePeak.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace lantern {

TruePeak::TruePeak()
{
    // A windowed sinc, of which each phase takes every fourth value.
    constexpr double kLength = kPhases * kTaps;
    for (std::size_t phase = 1; phase < kPhases; ++phase) {
        double sum = 0;
        for (std::size_t tap = 0; tap < kTaps; ++tap) {
            const auto place = static_cast<double>(phase + tap * kPhases);
            const double x = (place - kLength / 2) * std::numbers::pi / kPhases;
            const double window = 0.5 * (1 - std::cos(2 * std::numbers::pi * place / kLength));
            const double value = std::sin(x) / x * window;
            m_filters[phase - 1][kTaps - 1 - tap] = static_cast<float>(value);
            sum += std::abs(value);
        }
        m_mostGain = std::max(m_mostGain, static_cast<float>(sum));
    }
}

void TruePeak::Add(std::span<const float> stereo)
{
    while (stereo.size() >= 2) {
        const std::size_t frames = std::min(stereo.size() / 2, kBlockFrames);
        AddBlock(stereo.first(frames * 2));
        stereo = stereo.subspan(frames * 2);
    }
}

void TruePeak::AddBlock(std::span<const float> stereo)
{
    const std::size_t frames = stereo.size() / 2;
    float peak = 0;
    for (std::size_t channel = 0; channel < 2; ++channel) {
        auto& samples = m_samples[channel];
        for (std::size_t i = 0; i < frames; ++i) {
            samples[kTaps - 1 + i] = stereo[2 * i + channel];
            peak = std::max(peak, std::abs(stereo[2 * i + channel]));
        }
    }
    m_peak = std::max(m_peak, peak);
    // Most blocks can't come near what has been found already.
    const float mostHere = std::max(peak, std::exchange(m_lastBlockPeak, peak)) * m_mostGain;
    for (std::size_t channel = 0; channel < 2; ++channel) {
        if (mostHere > m_peak)
            AddChannel(channel, frames);
        auto& samples = m_samples[channel];
        std::copy_n(samples.begin() + static_cast<std::ptrdiff_t>(frames), kTaps - 1,
                    samples.begin());
    }
}

// Written so that the compiler takes several samples at once.
void TruePeak::AddChannel(std::size_t channel, std::size_t frames)
{
    const float* const samples = m_samples[channel].data();
    float* const levels = m_levels.data();
    std::fill_n(levels, frames, 0.0F);
    for (const auto& filter : m_filters) {
        for (std::size_t i = 0; i < frames; ++i) {
            float value = 0;
            for (std::size_t tap = 0; tap < kTaps; ++tap)
                value += filter[tap] * samples[i + tap];
            const float level = std::abs(value);
            levels[i] = levels[i] < level ? level : levels[i];
        }
    }
    m_peak = std::max(m_peak, *std::max_element(levels, levels + frames));
}

} // namespace lantern
