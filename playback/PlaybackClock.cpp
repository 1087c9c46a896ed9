// SPDX-License-Identifier: GPL-3.0-or-later
#include "PlaybackClock.h"

#include "RunToPacket.h"
#include "TempoHold.h"

#include <QScopedValueRollback>

#include <algorithm>
#include <limits>

namespace lantern {

namespace {

bool HasSound(SoundStatus status)
{
    return status == SoundStatus::Playing || status == SoundStatus::Paused ||
           status == SoundStatus::Stopped;
}

} // namespace

QString StateText(SoundStatus status)
{
    switch (status) {
    case SoundStatus::Playing:
        return QStringLiteral("PLAYING");
    case SoundStatus::Paused:
        return QStringLiteral("PAUSED");
    default:
        return QStringLiteral("STOPPED");
    }
}

std::int32_t ClipAt(const OneBasedArray<AudioClip>& clips, std::int32_t positionMs)
{
    std::int32_t index = clips.Count();
    while (index > 0 && clips[index].StartMs > positionMs)
        --index;
    return index;
}

PlaybackClock::PlaybackClock(AudioEngine& engine, Track& track, PictureMemory& picture,
                             PacketInterpreter& interpreter, Painter& painter, PlaybackHost& host)
    : m_engine(engine), m_track(track), m_picture(picture), m_interpreter(interpreter),
      m_painter(painter), m_host(host)
{
}

std::int32_t PlaybackClock::GetPlayerPos()
{
    if (m_track.CurrentClip < 1)
        return 0;
    const std::int64_t inClip = std::max(m_engine.GetSoundPosition(), 0);
    const std::int64_t position = inClip + m_track.ClipList[m_track.CurrentClip].StartMs;
    constexpr std::int64_t kLast = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(std::min(position, kLast));
}

QString PlaybackClock::GetPlayerState()
{
    return StateText(m_engine.GetSoundStatus());
}

bool PlaybackClock::IsPlaying()
{
    return m_engine.GetSoundStatus() == SoundStatus::Playing;
}

void PlaybackClock::UpdatePlayer()
{
    const std::int32_t positionMs = GetPlayerPos();
    const bool isPlaying = IsPlaying();
    if (m_track.MediaLoading) {
        m_host.SetTicker(-1, false);
    } else if (positionMs >= 0) {
        if (m_host.SliderValue() != positionMs)
            m_host.SetSliderValue(positionMs);
        PlayOps(PacketsFromMs(positionMs));
        m_host.SetTicker(positionMs / 1000, isPlaying);
    }
    m_host.RefreshControls(positionMs, isPlaying);
}

void PlaybackClock::PlayOps(PacketIndex target)
{
    const bool moved = RunToPacket(m_picture, m_interpreter, m_track.PacketStore, target);
    // While the sound plays, the interpreter's own pace shows the last packets soon enough.
    if (moved && !IsPlaying())
        m_painter.PaintDisplay();
}

void PlaybackClock::Jump(std::int32_t positionMs, bool start)
{
    const bool wasPlaying = IsPlaying();
    const std::int32_t clip = ClipAt(m_track.ClipList, positionMs);
    if (clip == 0)
        return;
    const TempoHold hold(m_engine, m_track.TempoHeld);
    if (clip == m_track.CurrentClip || LoadClip(clip) == 0)
        MoveSound(positionMs - m_track.ClipList[clip].StartMs, start || wasPlaying);
}

// The engine's code: 0 on success. After a failure the clip is the current one all the same, so
// that the next jump to it doesn't try again.
std::int32_t PlaybackClock::LoadClip(std::int32_t index)
{
    m_track.CurrentClip = index;
    const AudioClip& clip = m_track.ClipList[index];
    return clip.Kind == ClipKind::File ? m_engine.LoadFile(clip.Path)
                                       : m_engine.LoadMemory(clip.Data.Bytes());
}

void PlaybackClock::MoveSound(std::int32_t offsetMs, bool start)
{
    m_engine.SeekSound(offsetMs);
    if (start)
        m_engine.StartSound();
    if (HasSound(m_engine.GetSoundStatus()) || m_stoppingLostSound)
        return;
    // Stopping comes here again, by its own move to the start, and then finds no sound either.
    const QScopedValueRollback stopping(m_stoppingLostSound, true);
    StopPlaying();
}

void PlaybackClock::Play(std::int32_t positionMs)
{
    Jump(positionMs, true);
}

void PlaybackClock::PlayPause()
{
    if (m_track.ClipList.IsEmpty()) {
        m_host.ReopenLastTrack();
    } else if (m_track.CurrentClip == 0) {
        Play(0);
    } else if (IsPlaying()) {
        m_engine.PauseSound();
        m_painter.PaintDisplay();
    } else {
        m_engine.StartSound();
    }
}

void PlaybackClock::SkipBy(std::int64_t deltaMs)
{
    const std::int64_t positionMs = GetPlayerPos();
    std::int32_t targetMs = 0;
    if (deltaMs >= -positionMs && deltaMs <= m_track.TotalLengthMs - positionMs)
        targetMs = static_cast<std::int32_t>(positionMs + deltaMs);
    else if (deltaMs > 0)
        m_engine.StopSound();

    Jump(targetMs, false);
    UpdatePlayer();
    if (targetMs != 0)
        m_painter.PaintDisplay();
    else
        BlankPicture();
}

void PlaybackClock::StopPlaying()
{
    SkipBy(std::int64_t{m_track.TotalLengthMs} + 1);
}

// A sound that goes on playing may have passed a few packets since the jump: they are to come
// again, on the black picture.
void PlaybackClock::BlankPicture()
{
    m_interpreter.ClearPicture();
    m_picture.PlayedPacket = 0;
}

void PlaybackClock::HandleSliderScroll()
{
    if (m_track.MediaLoading)
        return;
    const std::int32_t valueMs = m_host.SliderValue();
    Jump(valueMs, false);
    UpdatePlayer();
    if (valueMs == 0) {
        BlankPicture();
    } else {
        m_painter.PaintDisplay();
        if (valueMs == m_host.SliderMax() && IsPlaying())
            m_host.CancelScroll();
    }
    m_host.WheelMovesPosition();
}

void PlaybackClock::HandleSoundDone()
{
    if (m_engine.GetSoundStatus() != SoundStatus::Stopped)
        return;
    if (m_track.CurrentClip >= 1 && m_track.CurrentClip < m_track.ClipCount())
        Play(m_track.ClipList[m_track.CurrentClip + 1].StartMs);
    else
        StopPlaying();
}

} // namespace lantern
