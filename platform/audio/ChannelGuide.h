// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AudioEngine.h"
#include "StereoRamp.h"

#include <span>

namespace lantern {

// Gives both ears what they are to hear of a stream's two channels. A change fades over within 10
// milliseconds. Both channels as they are pass bit for bit, and one that both ears hear is in each
// of them bit for bit.
class ChannelGuide {
public:
    void SetTarget(VoiceGuide guide); // any thread

    // At the target from the next frame on. Not while Apply may run.
    void Restart(int sampleRate) { m_leftShare.Restart(sampleRate); }
    void Apply(std::span<float> stereo); // neither waits nor allocates

private:
    // How much of the left channel each ear hears; the rest is of the right one.
    StereoRamp m_leftShare{{1.0F, 0.0F}};
};

} // namespace lantern
