// SPDX-License-Identifier: GPL-3.0-or-later
#include "WheelControl.h"

#include "AudioControl.h"
#include "Track.h"

#include <utility>

namespace lantern {
namespace {

constexpr std::int32_t kTurnMs = 1000;

int SignOf(std::int32_t number)
{
    return (number > 0 ? 1 : 0) - (number < 0 ? 1 : 0);
}

} // namespace

WheelControl::WheelControl(AudioControl& audio, const Track& track,
                           std::function<void(std::int32_t)> skipBy)
    : m_audio(audio), m_track(track), m_skipBy(std::move(skipBy))
{
}

void WheelControl::MouseWheel(std::int32_t, std::int32_t Delta, std::int32_t, std::int32_t)
{
    if (m_track.MediaLoading)
        return;
    const int direction = SignOf(Delta);
    if (const std::optional<AudioValue> value = WheelValue(m_audio.WheelType)) {
        m_audio.TurnWheel(*value, direction);
    } else if (m_audio.WheelType == WheelMode::TrackPosition) {
        if (m_track.ClipCount() > 0)
            m_skipBy(kTurnMs * direction);
    }
}

} // namespace lantern
