// SPDX-License-Identifier: GPL-3.0-or-later
#include "HeardClock.h"

#include <algorithm>
#include <span>

namespace lantern {

void HeardClock::Restart(int sampleRate)
{
    m_sampleRate = sampleRate;
    m_heard.frames = 0.0;
    m_sounding = false;
    ForgetSamples();
}

void HeardClock::Sample(double frames, TimePoint at, bool sounding)
{
    m_heard = {frames, at};
    m_sounding = sounding;
    if (!sounding) {
        ForgetSamples();
        return;
    }
    m_samples[m_sampleCount++ % kSamples] = m_heard;
    const auto known = std::span(m_samples).first(std::min(m_sampleCount, kSamples));
    m_heard = *std::ranges::min_element(known, {},
                                        [&](const Heard& sample) { return FramesAt(sample, at); });
}

void HeardClock::Freeze(TimePoint now, double writtenFrames)
{
    m_heard.frames = At(now, writtenFrames);
    m_sounding = false;
    ForgetSamples();
}

double HeardClock::At(TimePoint now, double writtenFrames) const
{
    return std::clamp(m_sounding ? FramesAt(m_heard, now) : m_heard.frames, 0.0, writtenFrames);
}

double HeardClock::FramesAt(const Heard& sample, TimePoint time) const
{
    return sample.frames + std::chrono::duration<double>(time - sample.at).count() * m_sampleRate;
}

} // namespace lantern
