// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AudioEngine.h"
#include "PacketInterpreter.h"
#include "Painter.h"
#include "PictureMemory.h"
#include "PlaybackHost.h"
#include "Track.h"

#include <QString>

#include <cstdint>

namespace lantern {

// The packet that belongs to a position. The product doesn't fit in 32 bits, the result does.
constexpr PacketIndex PacketsFromMs(std::int32_t positionMs)
{
    return static_cast<PacketIndex>(std::int64_t{positionMs} * kPacketsPerSecond / 1000);
}

// "PLAYING", "PAUSED" or "STOPPED".
QString StateText(SoundStatus status);

// The last clip that doesn't begin after the position; 0 for none.
std::int32_t ClipAt(const OneBasedArray<AudioClip>& clips, std::int32_t positionMs);

// Keeps the picture at the position of the sound, and moves both. The sound is the only clock.
//
// Life cycle: construct when all it works on exists; its owner calls UpdatePlayer every 10 ms and
// HandleSoundDone from the engine's SoundDone. Everything runs on the user-interface thread.
// Positions are milliseconds from the start of the track's first clip.
class PlaybackClock {
public:
    PlaybackClock(AudioEngine& engine, Track& track, PictureMemory& picture,
                  PacketInterpreter& interpreter, Painter& painter, PlaybackHost& host);

    std::int32_t GetPlayerPos();
    QString GetPlayerState();

    // The tick: slider, picture and ticker take the sound's position, then the host refreshes the
    // rest. While a track is being opened there is no position: the ticker is blank.
    void UpdatePlayer();
    // Brings the picture to a packet.
    void PlayOps(PacketIndex target);

    // Moves the sound; the picture follows at the next tick. A sound that plays goes on playing,
    // another one starts only if asked to.
    void Jump(std::int32_t positionMs, bool start);
    void Play(std::int32_t positionMs);
    void PlayPause();
    // Moves the position and the picture; off either end of the track they return to its start,
    // stopped if the end was run over. The difference of two positions needs a bit more than one.
    void SkipBy(std::int64_t deltaMs);
    void StopPlaying();

    // For each position that the user drags the slider to.
    void HandleSliderScroll();
    // When the sound of a clip has ended: goes on to the next clip, or stops.
    void HandleSoundDone();

private:
    bool IsPlaying();
    std::int32_t LoadClip(std::int32_t index);
    void MoveSound(std::int32_t offsetMs, bool start);
    void BlankPicture();

    AudioEngine& m_engine;
    Track& m_track;
    PictureMemory& m_picture;
    PacketInterpreter& m_interpreter;
    Painter& m_painter;
    PlaybackHost& m_host;
    bool m_stoppingLostSound = false;
};

} // namespace lantern
