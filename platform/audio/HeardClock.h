// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <chrono>
#include <cstddef>

namespace lantern {

// How many frames have been heard: between the samples that the sound server gives now and then,
// the count goes on by the clock.
//
// A server may count in steps: PipeWire takes some milliseconds of sound at a time, and tells
// them all as heard while they are being played. Of the last samples the one that was ahead
// least is the one that came last in its step; it is believed.
class HeardClock {
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    // Nothing heard, and nothing sounds.
    void Restart(int sampleRate);
    // So many frames, negative before the first is heard, had been heard at that time.
    void Sample(double frames, TimePoint at, bool sounding);
    // What was sampled so far tells nothing of what comes: the sound goes elsewhere now.
    void ForgetSamples() { m_sampleCount = 0; }
    // Stays at what is heard now.
    void Freeze(TimePoint now, double writtenFrames);

    double At(TimePoint now, double writtenFrames) const;

private:
    struct Heard {
        double frames = 0.0;
        TimePoint at;
    };
    // At another time, by the clock.
    double FramesAt(const Heard& sample, TimePoint time) const;

    // Enough to meet a step at its end, few enough that one told too low is forgotten soon.
    static constexpr std::size_t kSamples = 12;

    double m_sampleRate = 44100.0;
    Heard m_heard;
    bool m_sounding = false;
    std::array<Heard, kSamples> m_samples; // the last ones, in a ring
    std::size_t m_sampleCount = 0;
};

} // namespace lantern
