// SPDX-License-Identifier: GPL-3.0-or-later
#include "SongKeeper.h"

#include "AudioControl.h"
#include "AudioEngine.h"
#include "Track.h"

#include <QScopedValueRollback>

#include <utility>

namespace lantern {
namespace {

QString ReasonFor(StoreOutcome outcome)
{
    switch (outcome) {
    case StoreOutcome::ReadOnly:
        return QStringLiteral("Songs: the file is read-only");
    case StoreOutcome::NewerVersion:
        return QStringLiteral("Songs: the file is of a newer version");
    default:
        return QStringLiteral("Songs: the file can't be used");
    }
}

} // namespace

SongKeeper::SongKeeper(const Track& track, AudioEngine& engine, AudioControl& audio,
                       MakeSongStore make)
    : m_track(track), m_engine(engine), m_audio(audio), m_makeStore(std::move(make)),
      m_even(track, engine)
{
    m_even.Measured = [this](const KeptLoudness& loudness) { KeepLoudness(loudness); };
}

void SongKeeper::RememberTunes(bool on)
{
    if (std::exchange(m_remembersTunes, on) == on)
        return;
    m_awaited = on && HasSong() ? Awaited::Switch : Awaited::Nothing;
    UseMemory();
    if (on && m_memory->IsRead())
        MemoryRead();
}

void SongKeeper::EvenOut(bool on)
{
    if (std::exchange(m_evensOut, on) == on)
        return;
    UseMemory();
    if (!on)
        m_even.SwitchOff();
    else if (HasSong())
        m_even.TakeSong(m_memory->Find(m_song).loudness);
}

void SongKeeper::UseMemory()
{
    const bool isUsed = m_remembersTunes || m_evensOut;
    if (isUsed)
        HaveMemory();
    else
        m_memory.reset();
}

void SongKeeper::HaveMemory()
{
    if (m_memory)
        return;
    NameSong();
    m_memory = std::make_unique<SongMemory>(m_makeStore());
    m_memory->Read = [this] { MemoryRead(); };
    m_memory->Trouble = [this](StoreOutcome outcome) {
        if (Trouble)
            Trouble(ReasonFor(outcome));
    };
}

void SongKeeper::NameSong()
{
    m_song = HasSong() ? IdentityOf(m_track) : SongId();
    m_measuredEarly.reset();
}

void SongKeeper::End()
{
    RememberTunes(false);
    EvenOut(false);
    m_memory.reset();
}

bool SongKeeper::HasSong() const
{
    return !m_track.ClipList.IsEmpty();
}

void SongKeeper::SongOpens()
{
    if (!m_memory || !HasSong())
        return;
    NameSong();
    if (m_remembersTunes) {
        m_awaited = m_memory->IsRead() ? Awaited::Nothing : Awaited::Song;
        TakeTune();
    }
    if (m_evensOut)
        m_even.TakeSong(m_memory->Find(m_song).loudness);
}

void SongKeeper::MemoryRead()
{
    const Awaited awaited = std::exchange(m_awaited, Awaited::Nothing);
    if (!HasSong())
        return;
    const SongRecord record = m_memory->Find(m_song);
    if (awaited == Awaited::Song || (awaited == Awaited::Switch && record.tune != SongTune()))
        TakeTune();
    else if (awaited == Awaited::Switch)
        KeepTune();
    if (const auto early = std::exchange(m_measuredEarly, std::nullopt))
        KeepLoudness(*early);
    if (m_evensOut)
        m_even.TakeRecord(record.loudness);
}

void SongKeeper::TuneChanged()
{
    if (!m_remembersTunes || !HasSong() || m_isSetting)
        return;
    m_awaited = Awaited::Nothing; // what the user sets holds
    KeepTune();
}

void SongKeeper::KeepTune()
{
    if (m_song.isEmpty())
        return;
    SongRecord record = m_memory->Find(m_song);
    record.tune = Tune();
    m_memory->Keep(m_song, record);
}

void SongKeeper::KeepLoudness(const KeptLoudness& loudness)
{
    if (!m_memory || m_song.isEmpty())
        return;
    if (!m_memory->IsRead()) { // or the record would go, and the song's key and speed with it
        m_measuredEarly = loudness;
        return;
    }
    SongRecord record = m_memory->Find(m_song);
    record.loudness = loudness;
    m_memory->Keep(m_song, record);
}

void SongKeeper::TakeTune()
{
    SetTune(m_memory->Find(m_song).tune);
}

SongTune SongKeeper::Tune() const
{
    return {m_engine.GetEnginePitch(), m_engine.GetEngineTempo()};
}

void SongKeeper::SetTune(const SongTune& tune)
{
    const QScopedValueRollback setting(m_isSetting, true);
    const SongTune now = Tune();
    if (now.keyPitch != tune.keyPitch)
        m_audio.SetPitch(tune.keyPitch, false);
    if (now.speed != tune.speed)
        m_audio.SetSpeed(tune.speed, false);
    if (now != tune && TuneSet)
        TuneSet();
}

void SongKeeper::ForgetSong()
{
    if (!HasSong())
        return;
    HaveMemory();
    m_awaited = Awaited::Nothing;
    m_memory->Keep(m_song, {});
    if (m_remembersTunes)
        SetTune({});
}

void SongKeeper::ForgetAllSongs()
{
    HaveMemory();
    m_awaited = Awaited::Nothing;
    m_memory->ForgetAll();
    if (m_remembersTunes && HasSong())
        SetTune({});
}

} // namespace lantern
