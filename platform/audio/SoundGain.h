// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <span>

namespace lantern {

// One factor for a whole sound, by which it is as loud as others. A change while it plays is a fade
// of half a second, even in decibels. At 1 the samples pass bit for bit.
class SoundGain {
public:
    void SetTarget(float factor) { m_target = factor; } // above 0; any thread

    // At the target from the next frame on. Not while Apply may run.
    void Restart(int sampleRate);
    void Apply(std::span<float> stereo); // neither waits nor allocates

private:
    std::atomic<float> m_target = 1.0F;
    float m_from = 1.0F;
    float m_to = 1.0F;
    float m_now = 1.0F;
    int m_fadeFrames = 1;
    int m_fadeDone = 1;
};

} // namespace lantern
