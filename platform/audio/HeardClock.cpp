// SPDX-License-Identifier: GPL-3.0-or-later
#include "HeardClock.h"

#include <algorithm>

namespace lantern {

void HeardClock::Restart(int sampleRate)
{
    m_sampleRate = sampleRate;
    m_frames = 0.0;
    m_sounding = false;
}

void HeardClock::Sample(double frames, TimePoint at, bool sounding)
{
    m_frames = frames;
    m_at = at;
    m_sounding = sounding;
}

void HeardClock::Freeze(TimePoint now, double writtenFrames)
{
    m_frames = At(now, writtenFrames);
    m_sounding = false;
}

double HeardClock::At(TimePoint now, double writtenFrames) const
{
    double frames = m_frames;
    if (m_sounding) {
        frames += std::chrono::duration<double>(now - m_at).count() * m_sampleRate;
    }
    return std::clamp(frames, 0.0, writtenFrames);
}

} // namespace lantern
