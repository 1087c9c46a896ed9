// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AudioEngine.h"
#include "Track.h"

#include <cstdint>
#include <functional>
#include <optional>

namespace lantern {

class MediaHost;
class PlaybackClock;

// Clicks with flashes of the picture in the place of the track, by which a person sets the delay of
// the sound: they go the way of any track, and so show what any track would show. Afterwards the
// track is as it was.
//
// Life cycle: construct, then any call in any order; Stop before anything else is done to the
// track, and Follow at each tick. Everything runs on the user-interface thread.
class DelayTest {
public:
    // All are borrowed and outlive the test.
    DelayTest(Track& track, AudioEngine& engine, PlaybackClock& clock, MediaHost& host);

    std::function<void()> Ended; // however it came

    bool IsRunning() const { return m_kept.has_value(); }
    void Start(); // nothing while a track is being opened
    void Stop();
    // Somebody may have paused or stopped the sound: that is meant for the track.
    void Follow();
    // The clicks have come to their end, and begin again.
    void GoOn();

private:
    struct Kept {
        Track track;
        SoundStatus status;
        std::int32_t positionMs;
    };
    void PutBack(bool mayPlay);
    void ShowTrack();

    Track& m_track;
    AudioEngine& m_engine;
    PlaybackClock& m_clock;
    MediaHost& m_host;
    std::optional<Kept> m_kept; // while it runs
};

} // namespace lantern
