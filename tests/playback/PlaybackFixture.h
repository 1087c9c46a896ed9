// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "FakeAudioEngine.h"
#include "Packets.h"
#include "PictureFixture.h"
#include "PlaybackClock.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <limits>
#include <utility>

namespace lantern {

inline constexpr std::int32_t kLastMs = std::numeric_limits<std::int32_t>::max();

class RecordingHost : public PlaybackHost {
public:
    std::int32_t SliderValue() override { return Value; }
    std::int32_t SliderMax() override { return Max; }
    void SetSliderValue(std::int32_t positionMs) override
    {
        ++SliderWrites;
        Value = positionMs;
    }
    void CancelScroll() override { ++CancelledScrolls; }
    void SetTicker(std::int32_t seconds, bool isPlaying) override { Ticker = {seconds, isPlaying}; }
    void RefreshControls(std::int32_t positionMs, bool isPlaying) override
    {
        ++Refreshes;
        Refreshed = {positionMs, isPlaying};
        if (OnRefresh)
            OnRefresh();
    }
    void ReopenLastTrack() override { ++Reopenings; }
    void WheelMovesPosition() override { ++WheelChanges; }

    std::int32_t Value = 0;
    std::int32_t Max = 0;
    int SliderWrites = 0;
    int CancelledScrolls = 0;
    std::pair<std::int32_t, bool> Ticker = {-99, false};
    int Refreshes = 0;
    std::pair<std::int32_t, bool> Refreshed = {-99, false};
    std::function<void()> OnRefresh;
    int Reopenings = 0;
    int WheelChanges = 0;
};

// A track whose picture is filled with colour 1 by its first packet and with colour 2 by the one
// at ten seconds, and whose sound is one clip or two.
class PlaybackFixture : public testing::Test, public PictureSet {
protected:
    static constexpr std::int32_t kLengthMs = 20'000;

    PlaybackFixture()
    {
        m_track.PacketStore.Resize(PacketsFromMs(kLengthMs));
        m_track.PacketStore[1] = packets::MemoryPreset(1);
        m_track.PacketStore[3000] = packets::MemoryPreset(2);
        AddClip(kLengthMs);
        m_host.Max = kLengthMs - 1;
        Interpreter.ClearPicture();
        Forget();
    }

    void AddClip(std::int32_t lengthMs)
    {
        AudioClip clip;
        clip.Path = QStringLiteral("clip%1").arg(m_track.ClipCount() + 1);
        clip.LengthMs = lengthMs;
        clip.StartMs = m_track.TotalLengthMs;
        m_track.ClipList.Add(std::move(clip));
        m_track.TotalLengthMs += lengthMs;
    }

    void PlayAt(std::int32_t positionMs)
    {
        m_clock.Play(positionMs);
        m_clock.UpdatePlayer();
        Forget();
    }

    void Forget()
    {
        m_engine.Log.clear();
        Painter.Paints = 0;
        m_host.Refreshes = 0;
    }

    bool Shows(int colour) const
    {
        return std::ranges::all_of(Pixels(), [colour](int pixel) { return pixel == colour; });
    }

    FakeAudioEngine m_engine;
    Track m_track;
    RecordingHost m_host;
    PlaybackClock m_clock{m_engine, m_track, Picture, Interpreter, Painter, m_host};
};

} // namespace lantern
