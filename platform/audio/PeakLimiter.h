// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace lantern {

// Keeps loud sound within full scale: a few milliseconds before a peak it turns both sides down, in
// a ramp, and afterwards lets them rise slowly. What is not too loud passes bit for bit.
class PeakLimiter {
public:
    explicit PeakLimiter(int sampleRate);

    // By so many frames what comes out is behind what goes in.
    int DelayFrames() const { return static_cast<int>(m_window) - 1; }
    // Of full scale: the highest peak from the next frame on.
    void SetLoudest(float peak);
    void Reset(); // silence has gone in so far
    void Apply(std::span<float> left, std::span<float> right);

private:
    // What has to come down to which gain.
    struct Need {
        std::size_t frame = 0;
        float gain = 1.0F;
    };
    float LeastGain(float gain);
    float RampedGain(float gain);

    float m_loudest;
    std::size_t m_window; // the frames that are looked at: a delayed one and those that follow it
    double m_rise;        // towards 1, in each frame
    std::size_t m_frame = 0;
    // Rings, in which frame n lies at n modulo the window:
    std::vector<float> m_left;
    std::vector<float> m_right;
    std::vector<double> m_gains;
    double m_gainSum = 0.0;
    // Of the window, those that no later one undercuts: ever higher gains, from m_firstNeed on.
    std::vector<Need> m_needs;
    std::size_t m_firstNeed = 0;
    std::size_t m_needCount = 0;
    double m_gain = 1.0;
};

} // namespace lantern
