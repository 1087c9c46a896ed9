// SPDX-License-Identifier: GPL-3.0-or-later
#include "WheelControl.h"

#include "FakeAudioEngine.h"
#include "RecordingAudioHost.h"
#include "Track.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>

namespace lantern {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class WheelControlTest : public ::testing::Test {
protected:
    void Turn(WheelMode mode, std::int32_t delta)
    {
        m_audio.WheelType = mode;
        m_wheel.MouseWheel(0, delta, 0, 0);
    }

    FakeAudioEngine m_engine;
    RecordingAudioHost m_host;
    Track m_track;
    AudioControl m_audio{m_engine, m_host};
    std::vector<std::int32_t> m_skips;
    WheelControl m_wheel{m_audio, m_track,
                         [this](std::int32_t deltaMs) { m_skips.push_back(deltaMs); }};
};

TEST_F(WheelControlTest, ANotchMovesTheKeyByOneAndTheOthersByTwo)
{
    m_engine.Volume = 50;
    Turn(WheelMode::Balance, 120);
    Turn(WheelMode::KeyPitch, 120);
    Turn(WheelMode::Volume, 120);
    Turn(WheelMode::Speed, 120);
    EXPECT_EQ(m_engine.Balance, 2);
    EXPECT_EQ(m_engine.Pitch, 1);
    EXPECT_EQ(m_engine.Volume, 52);
    EXPECT_EQ(m_engine.Tempo, 2);
    EXPECT_THAT(m_host.Statuses,
                ElementsAre("Balance: +2", "Key / Pitch: +1", "Volume: 52%", "Speed: +2%"));
}

TEST_F(WheelControlTest, OnlyTheSignOfTheTurnCounts)
{
    m_engine.Volume = 50;
    for (const std::int32_t delta : {-1, -120, -1200, std::numeric_limits<std::int32_t>::min()})
        Turn(WheelMode::Volume, delta);
    EXPECT_EQ(m_engine.Volume, 42);
    Turn(WheelMode::Volume, std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(m_engine.Volume, 44);
    Turn(WheelMode::Volume, 0);
    EXPECT_EQ(m_engine.Volume, 44);
}

TEST_F(WheelControlTest, TheValuesStopAtTheirLimits)
{
    for (int turn = 0; turn < 200; ++turn) {
        for (const WheelMode mode :
             {WheelMode::Balance, WheelMode::KeyPitch, WheelMode::Volume, WheelMode::Speed})
            Turn(mode, -120);
    }
    EXPECT_EQ(m_engine.Balance, -50);
    EXPECT_EQ(m_engine.Pitch, -10);
    EXPECT_EQ(m_engine.Volume, 0);
    EXPECT_EQ(m_engine.Tempo, -90);
}

TEST_F(WheelControlTest, TheTrackModeSkipsByASecond)
{
    m_track.ClipList.Add({});
    Turn(WheelMode::TrackPosition, 120);
    Turn(WheelMode::TrackPosition, -120);
    EXPECT_THAT(m_skips, ElementsAre(1000, -1000));
}

TEST_F(WheelControlTest, TheTrackModeDoesNothingWithoutATrack)
{
    Turn(WheelMode::TrackPosition, 120);
    EXPECT_THAT(m_skips, IsEmpty());
}

TEST_F(WheelControlTest, NothingMovesWhileATrackIsBeingOpened)
{
    m_track.ClipList.Add({});
    m_track.MediaLoading = true;
    for (const WheelMode mode : {WheelMode::Balance, WheelMode::KeyPitch, WheelMode::TrackPosition,
                                 WheelMode::Volume, WheelMode::Speed})
        Turn(mode, -120);
    EXPECT_THAT(m_engine.Log, IsEmpty());
    EXPECT_THAT(m_skips, IsEmpty());
}

TEST_F(WheelControlTest, AnUnknownModeDoesNothing)
{
    m_track.ClipList.Add({});
    Turn(WheelMode{0}, 120);
    Turn(WheelMode{6}, 120);
    EXPECT_THAT(m_engine.Log, IsEmpty());
    EXPECT_THAT(m_skips, IsEmpty());
}

} // namespace
} // namespace lantern
