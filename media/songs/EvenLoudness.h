// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "LoudnessMeter.h"
#include "SongRecord.h"

#include <QTimer>

#include <functional>
#include <optional>

namespace lantern {

class AudioEngine;
struct Track;

// The factor by which a sound gets as loud as all others, -16 LUFS, as far as its peaks stay below
// -1 dB. Of an estimate the peaks are taken to reach full scale. 1 for silence and for what is no
// number; within a range in any case, so that hiss is not made to roar.
float EvenGainFor(const SoundLoudness& loudness);

// Gives each song one gain from its start to its end. It is known from the song's record, or a
// moment after the start, when the sound has been measured. What is known by then holds, if only
// by an estimate; what is found out later is for the next time.
class EvenLoudness {
public:
    // Both are borrowed and outlive it.
    EvenLoudness(const Track& track, AudioEngine& engine);
    ~EvenLoudness();
    EvenLoudness(const EvenLoudness&) = delete;
    EvenLoudness& operator=(const EvenLoudness&) = delete;

    bool IsOn() const { return m_isOn; }
    // Off, sound passes as it is. A song that is open is evened, or no longer, by a fade.
    void SwitchOff();
    // The song that is open, or is about to play, with what its record holds.
    void TakeSong(const std::optional<KeptLoudness>& known);
    // The record, once it is read; what holds already stays.
    void TakeRecord(const std::optional<KeptLoudness>& known);

    // Called when a sound has been measured as a whole: for its song's record.
    std::function<void(const KeptLoudness&)> Measured;

private:
    void Measure();
    void StopMeasuring();
    void TakeMeasured(const SoundLoudness& loudness);
    void Fix(const SoundLoudness& loudness);

    const Track& m_track;
    AudioEngine& m_engine;
    bool m_isOn = false;
    bool m_isFixed = false;
    QByteArray m_sound; // the fingerprint of what is measured
    std::optional<SoundLoudness> m_estimate;
    QTimer m_deadline;
};

} // namespace lantern
