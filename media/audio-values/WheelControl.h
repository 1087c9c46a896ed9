// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>

namespace lantern {

class AudioControl;
struct Track;

// The mouse wheel, and the keys that stand for it: a turn changes what AudioControl::WheelType
// says.
class WheelControl {
public:
    // The references are borrowed and outlive the control. skipBy moves the position by a number
    // of milliseconds.
    WheelControl(AudioControl& audio, const Track& track, std::function<void(std::int32_t)> skipBy);

    // Only the sign of Delta counts. Nothing happens while a track is being opened.
    void MouseWheel(std::int32_t Keys, std::int32_t Delta, std::int32_t X, std::int32_t Y);

private:
    AudioControl& m_audio;
    const Track& m_track;
    std::function<void(std::int32_t)> m_skipBy;
};

} // namespace lantern
