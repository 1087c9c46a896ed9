// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "EvenLoudness.h"
#include "SongMemory.h"

#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace lantern {

class AudioControl;
class AudioEngine;
struct Track;

using MakeSongStore = std::function<std::unique_ptr<SongStore>()>;

// Gives each song its own key and speed, and keeps what the user changes of them; and makes all
// songs equally loud, for which it keeps what has been measured. Off, each of the two does nothing
// at all; with both off no file is touched.
class SongKeeper {
public:
    // All but the maker are borrowed and outlive the keeper.
    SongKeeper(const Track& track, AudioEngine& engine, AudioControl& audio, MakeSongStore make);

    // A song that is open as this is switched on gets what is remembered of it; if nothing is, it
    // keeps what it has, from now on as its own.
    void RememberTunes(bool on);
    void EvenOut(bool on); // the loudness

    // The track has been loaded and is about to play.
    void SongOpens();
    // The user has changed key or speed; or this keeper has.
    void TuneChanged();

    // Nothing is known of the song any more, and it goes back to its own key and speed; off, too,
    // but then it stays as it sounds.
    void ForgetSong();
    void ForgetAllSongs();

    // Both off, as at the start, once what has changed is kept.
    void End();

    // Called when the keeper, and no hand, has set key or speed.
    std::function<void()> TuneSet;
    // Called once, if songs can't be remembered, with why not.
    std::function<void(const QString& reason)> Trouble;

private:
    enum class Awaited { Nothing, Song, Switch };

    void UseMemory();
    void HaveMemory();
    void NameSong();
    void MemoryRead();
    bool HasSong() const;
    SongTune Tune() const;
    void SetTune(const SongTune& tune);
    void KeepTune();
    void TakeTune();
    void KeepLoudness(const KeptLoudness& loudness);

    const Track& m_track;
    AudioEngine& m_engine;
    AudioControl& m_audio;
    MakeSongStore m_makeStore;
    bool m_remembersTunes = false;
    bool m_evensOut = false;
    std::unique_ptr<SongMemory> m_memory; // none before it is needed
    SongId m_song;
    EvenLoudness m_even;
    std::optional<KeptLoudness> m_measuredEarly; // before the song's record could be read
    Awaited m_awaited = Awaited::Nothing;        // since when the memory is waited for
    bool m_isSetting = false;
};

} // namespace lantern
