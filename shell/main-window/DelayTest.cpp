// SPDX-License-Identifier: GPL-3.0-or-later
#include "DelayTest.h"

#include "MediaLoader.h"
#include "PlaybackClock.h"
#include "Rounding.h"
#include "TickTrack.h"

#include <algorithm>
#include <utility>

namespace lantern {
namespace {

// A second apart, as it is heard at that speed.
int MsBetweenTicks(float speedPercent)
{
    return 10 * (100 + RoundToEven(static_cast<double>(speedPercent)));
}

} // namespace

DelayTest::DelayTest(Track& track, AudioEngine& engine, PlaybackClock& clock, MediaHost& host)
    : m_track(track), m_engine(engine), m_clock(clock), m_host(host)
{
}

void DelayTest::Start()
{
    if (IsRunning() || m_track.MediaLoading)
        return;
    const SoundStatus status = m_engine.GetSoundStatus();
    const std::int32_t positionMs = m_clock.GetPlayerPos();
    Track ticks = MakeTickTrack(MsBetweenTicks(m_engine.GetEngineTempo()));
    ticks.CurrentMedia = m_track.CurrentMedia;
    m_kept = Kept{std::exchange(m_track, std::move(ticks)), status, positionMs};
    ShowTrack();
    m_clock.Play(0);
}

void DelayTest::Stop()
{
    PutBack(true);
}

void DelayTest::Follow()
{
    if (IsRunning() && m_engine.GetSoundStatus() != SoundStatus::Playing)
        PutBack(false);
}

void DelayTest::GoOn()
{
    m_host.ForgetPicture();
    m_clock.Play(0);
}

void DelayTest::PutBack(bool mayPlay)
{
    if (!IsRunning())
        return;
    const SoundStatus status = m_kept->status;
    const std::int32_t positionMs = m_kept->positionMs;
    m_engine.CloseSound(); // before the clicks go, which it plays from memory
    m_track = std::move(m_kept->track);
    m_kept.reset();
    ShowTrack();
    if (std::exchange(m_track.CurrentClip, 0) != 0) {
        m_clock.Jump(positionMs, status == SoundStatus::Playing && mayPlay);
        const bool pauses =
            status == SoundStatus::Paused || (status == SoundStatus::Playing && !mayPlay);
        if (pauses) {
            m_engine.StartSound();
            m_engine.PauseSound();
        }
    }
    if (Ended)
        Ended();
}

void DelayTest::ShowTrack()
{
    m_host.ForgetPicture();
    m_host.SetSliderValues(0, std::max(m_track.TotalLengthMs - 1, 0), 0);
}

} // namespace lantern
