// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>

namespace lantern {

// How many frames have been heard: between the samples that the sound server gives now and then,
// the count goes on by the clock.
class HeardClock {
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    // Nothing heard, and nothing sounds.
    void Restart(int sampleRate);
    // So many frames, negative before the first is heard, had been heard at that time.
    void Sample(double frames, TimePoint at, bool sounding);
    // Stays at what is heard now.
    void Freeze(TimePoint now, double writtenFrames);

    double At(TimePoint now, double writtenFrames) const;

private:
    double m_sampleRate = 44100.0;
    double m_frames = 0.0;
    TimePoint m_at;
    bool m_sounding = false;
};

} // namespace lantern
