// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "StereoRamp.h"

#include <span>

namespace lantern {

// Volume is linear in amplitude: 50 percent is half the amplitude. Balance takes from the far side
// only: at -50 the right channel is silent and the left at its full level, in between linear.
// Values out of range count as the nearest in range, and what is no number as silence. The result
// is the factor of each channel's amplitude.
StereoLevel LevelFor(float volumePercent, float balance);

// Brings a stream of sound to a level that may change at any moment: each change is a ramp of 10
// milliseconds without a corner. At level 1 the samples pass bit for bit.
class StereoGain {
public:
    void SetTarget(StereoLevel target) { m_ramp.SetTarget(target); } // any thread

    // The level is at its target from the next frame on. Not while Apply may run.
    void Restart(int sampleRate) { m_ramp.Restart(sampleRate); }
    void Apply(std::span<float> stereo); // neither waits nor allocates

private:
    StereoRamp m_ramp;
};

} // namespace lantern
