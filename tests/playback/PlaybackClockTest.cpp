// SPDX-License-Identifier: GPL-3.0-or-later
#include "PlaybackFixture.h"

#include <gmock/gmock.h>

namespace lantern {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::Pair;

using PlaybackClockTest = PlaybackFixture;

TEST(PacketsFromMs, IsThreeHundredASecondCutOff)
{
    EXPECT_EQ(PacketsFromMs(0), 0);
    EXPECT_EQ(PacketsFromMs(3), 0);
    EXPECT_EQ(PacketsFromMs(4), 1);
    EXPECT_EQ(PacketsFromMs(10), 3);
    EXPECT_EQ(PacketsFromMs(999), 299);
    EXPECT_EQ(PacketsFromMs(1000), 300);
}

TEST(PacketsFromMs, DoesNotOverflow)
{
    EXPECT_EQ(PacketsFromMs(715'827'883), 214'748'364);
    EXPECT_EQ(PacketsFromMs(kLastMs), 644'245'094);
}

TEST(StateText, KnowsThreeStates)
{
    EXPECT_EQ(StateText(SoundStatus::Empty), QStringLiteral("STOPPED"));
    EXPECT_EQ(StateText(SoundStatus::Playing), QStringLiteral("PLAYING"));
    EXPECT_EQ(StateText(SoundStatus::Paused), QStringLiteral("PAUSED"));
    EXPECT_EQ(StateText(SoundStatus::Stopped), QStringLiteral("STOPPED"));
    EXPECT_EQ(StateText(SoundStatus{17}), QStringLiteral("STOPPED"));
    EXPECT_EQ(StateText(SoundStatus{-1}), QStringLiteral("STOPPED"));
}

TEST(ClipAt, IsTheLastThatHasBegun)
{
    OneBasedArray<AudioClip> clips;
    EXPECT_EQ(ClipAt(clips, 0), 0);
    for (const std::int32_t start : {100, 200, 200, 300}) {
        AudioClip clip;
        clip.StartMs = start;
        clips.Add(clip);
    }
    EXPECT_EQ(ClipAt(clips, -1), 0);
    EXPECT_EQ(ClipAt(clips, 99), 0);
    EXPECT_EQ(ClipAt(clips, 100), 1);
    EXPECT_EQ(ClipAt(clips, 199), 1);
    EXPECT_EQ(ClipAt(clips, 200), 3);
    EXPECT_EQ(ClipAt(clips, 299), 3);
    EXPECT_EQ(ClipAt(clips, 300), 4);
    EXPECT_EQ(ClipAt(clips, kLastMs), 4);
}

TEST_F(PlaybackClockTest, ThePositionIsZeroWithoutAClip)
{
    m_engine.PositionMs = 5000;
    EXPECT_EQ(m_clock.GetPlayerPos(), 0);
    EXPECT_THAT(m_engine.Log, IsEmpty());
}

TEST_F(PlaybackClockTest, ThePositionCountsFromTheFirstClip)
{
    AddClip(5000);
    m_track.CurrentClip = 2;
    m_engine.PositionMs = 1234;
    EXPECT_EQ(m_clock.GetPlayerPos(), 21'234);
    m_engine.PositionMs = -7;
    EXPECT_EQ(m_clock.GetPlayerPos(), 20'000);
}

TEST_F(PlaybackClockTest, ThePositionStopsAtTheLastMillisecondThereIs)
{
    AddClip(5000);
    m_track.CurrentClip = 2;
    m_engine.PositionMs = kLastMs;
    EXPECT_EQ(m_clock.GetPlayerPos(), kLastMs);
    m_clock.UpdatePlayer();
    EXPECT_EQ(Picture.PlayedPacket, 6000);
    EXPECT_THAT(m_host.Ticker, Pair(kLastMs / 1000, false));
}

TEST_F(PlaybackClockTest, TheStateIsTheEngines)
{
    EXPECT_EQ(m_clock.GetPlayerState(), QStringLiteral("STOPPED"));
    m_engine.Status = SoundStatus::Paused;
    EXPECT_EQ(m_clock.GetPlayerState(), QStringLiteral("PAUSED"));
}

TEST_F(PlaybackClockTest, ATickMovesSliderPictureAndTicker)
{
    m_clock.Play(0);
    m_engine.PositionMs = 12'345;
    m_clock.UpdatePlayer();
    EXPECT_EQ(m_host.Value, 12'345);
    EXPECT_EQ(Picture.PlayedPacket, 3703);
    EXPECT_TRUE(Shows(2));
    EXPECT_THAT(m_host.Ticker, Pair(12, true));
    EXPECT_THAT(m_host.Refreshed, Pair(12'345, true));
}

TEST_F(PlaybackClockTest, ATickAtTheSamePositionTouchesNothing)
{
    PlayAt(12'345);
    m_host.SliderWrites = 0;
    m_clock.UpdatePlayer();
    EXPECT_EQ(m_host.SliderWrites, 0);
    EXPECT_EQ(Painter.Paints, 0);
    EXPECT_THAT(m_engine.Actions(), IsEmpty());
    EXPECT_EQ(m_host.Refreshes, 1);
}

TEST_F(PlaybackClockTest, ATickDuringALoadOnlyBlanksTheTickerAndRefreshes)
{
    m_clock.Play(0);
    m_engine.PositionMs = 5000;
    m_track.MediaLoading = true;
    m_clock.UpdatePlayer();
    EXPECT_THAT(m_host.Ticker, Pair(-1, false));
    EXPECT_EQ(m_host.SliderWrites, 0);
    EXPECT_EQ(Picture.PlayedPacket, 0);
    EXPECT_EQ(m_host.Refreshes, 1);
    EXPECT_THAT(m_host.Refreshed, Pair(5000, true));
}

TEST_F(PlaybackClockTest, PlayOpsToTheSamePacketMakesNoEngineCall)
{
    PlayAt(1000);
    m_clock.PlayOps(300);
    EXPECT_THAT(m_engine.Log, IsEmpty());
    EXPECT_EQ(Painter.Paints, 0);
}

TEST_F(PlaybackClockTest, PlayOpsPaintsAtItsEndUnlessTheSoundPlays)
{
    m_clock.PlayOps(5000);
    EXPECT_EQ(Painter.Paints, 1);
    m_engine.Status = SoundStatus::Paused;
    m_clock.PlayOps(4000);
    EXPECT_EQ(Painter.Paints, 2);
    m_engine.Status = SoundStatus::Playing;
    m_clock.PlayOps(5000);
    EXPECT_EQ(Painter.Paints, 2);
}

TEST_F(PlaybackClockTest, PlayOpsWithoutPacketsIsHarmless)
{
    m_track.PacketStore.Erase();
    m_clock.PlayOps(0);
    m_clock.PlayOps(300);
    EXPECT_EQ(Picture.PlayedPacket, 0);
}

TEST_F(PlaybackClockTest, AStepBackByOnePacketWhilePlayingGivesTheSamePicture)
{
    PlayAt(10'010);
    EXPECT_EQ(Picture.PlayedPacket, 3003);
    m_engine.PositionMs = 10'007;
    m_clock.UpdatePlayer();
    EXPECT_EQ(Picture.PlayedPacket, 3002);
    EXPECT_TRUE(Shows(2));
    m_engine.PositionMs = 9999;
    m_clock.UpdatePlayer();
    EXPECT_EQ(Picture.PlayedPacket, 2999);
    EXPECT_TRUE(Shows(1));
}

TEST_F(PlaybackClockTest, PlayLoadsSeeksAndStartsAtTheNeutralTempo)
{
    m_engine.Tempo = 25;
    m_clock.Play(1500);
    EXPECT_THAT(m_engine.Log, ElementsAre("GetSoundStatus", "GetEngineTempo", "SetEngineTempo 0",
                                          "LoadFile clip1", "SeekSound 1500", "StartSound",
                                          "GetSoundStatus", "SetEngineTempo 25"));
    EXPECT_EQ(m_track.CurrentClip, 1);
    EXPECT_FALSE(m_track.TempoHeld);
    EXPECT_EQ(Picture.PlayedPacket, 0);
}

TEST_F(PlaybackClockTest, ASoundInMemoryIsLoadedFromThere)
{
    m_track.ClipList[1].Kind = ClipKind::Data;
    m_track.ClipList[1].Data = SoundImage({1, 2, 3});
    m_clock.Play(0);
    EXPECT_THAT(m_engine.Log, Contains("LoadMemory 3"));
    EXPECT_THAT(m_engine.LoadedImage, ElementsAre(1, 2, 3));
}

TEST_F(PlaybackClockTest, AJumpWithinTheClipLoadsNothing)
{
    PlayAt(0);
    m_clock.Jump(7000, false);
    EXPECT_THAT(m_engine.Actions(), ElementsAre("SetEngineTempo 0", "SeekSound 7000", "StartSound",
                                                "SetEngineTempo 0"));
}

TEST_F(PlaybackClockTest, AJumpLeavesAPausedOrStoppedSoundAsItIs)
{
    PlayAt(0);
    m_engine.Status = SoundStatus::Paused;
    m_clock.Jump(7000, false);
    EXPECT_EQ(m_engine.Status, SoundStatus::Paused);
    m_engine.Status = SoundStatus::Stopped;
    m_clock.Jump(8000, false);
    EXPECT_EQ(m_engine.Status, SoundStatus::Stopped);
    EXPECT_EQ(m_engine.PositionMs, 8000);
    EXPECT_THAT(m_engine.Log, Not(Contains("StartSound")));
    m_clock.Jump(9000, true);
    EXPECT_EQ(m_engine.Status, SoundStatus::Playing);
}

TEST_F(PlaybackClockTest, AJumpToAnotherClipLoadsItAndSeeksWithinIt)
{
    AddClip(5000);
    PlayAt(0);
    m_clock.Jump(21'500, false);
    EXPECT_EQ(m_track.CurrentClip, 2);
    EXPECT_THAT(m_engine.Actions(),
                ElementsAre("SetEngineTempo 0", "LoadFile clip2", "SeekSound 1500", "StartSound",
                            "SetEngineTempo 0"));
    EXPECT_EQ(m_clock.GetPlayerPos(), 21'500);
}

TEST_F(PlaybackClockTest, APausedSoundStaysSilentInAnotherClipToo)
{
    AddClip(5000);
    PlayAt(0);
    m_clock.PlayPause();
    Forget();
    m_clock.Jump(21'500, false);
    EXPECT_THAT(m_engine.Actions(), ElementsAre("SetEngineTempo 0", "LoadFile clip2",
                                                "SeekSound 1500", "SetEngineTempo 0"));
    EXPECT_EQ(m_clock.GetPlayerPos(), 21'500);
    m_clock.PlayPause();
    EXPECT_EQ(m_engine.Status, SoundStatus::Playing);
    EXPECT_EQ(m_clock.GetPlayerPos(), 21'500);
}

TEST_F(PlaybackClockTest, AJumpBeforeTheFirstClipChangesNothing)
{
    m_track.ClipList[1].StartMs = 100;
    m_clock.Jump(99, true);
    EXPECT_EQ(m_track.CurrentClip, 0);
    EXPECT_THAT(m_engine.Actions(), IsEmpty());
    m_clock.Jump(-1, true);
    EXPECT_THAT(m_engine.Actions(), IsEmpty());
}

TEST_F(PlaybackClockTest, TheTempoIsHeldWhileTheSoundMoves)
{
    // Stopping a sound that is gone refreshes the controls in the middle of the move.
    bool held = false;
    m_host.OnRefresh = [&] { held = m_track.TempoHeld; };
    m_engine.Tempo = 10;
    m_track.CurrentClip = 1;
    m_clock.Jump(0, false);
    EXPECT_EQ(m_host.Refreshes, 1);
    EXPECT_TRUE(held);
    EXPECT_FALSE(m_track.TempoHeld);
    EXPECT_EQ(m_engine.Tempo, 10);
}

TEST_F(PlaybackClockTest, AFailedLoadStaysOnTheNewClipAndRestoresTheTempo)
{
    AddClip(5000);
    PlayAt(0);
    m_engine.Tempo = 10;
    m_engine.LoadResults = {5};
    m_clock.Jump(20'000, true);
    EXPECT_EQ(m_track.CurrentClip, 2);
    EXPECT_THAT(m_engine.Actions(),
                ElementsAre("SetEngineTempo 0", "LoadFile clip2", "SetEngineTempo 10"));
    EXPECT_FALSE(m_track.TempoHeld);
    m_clock.UpdatePlayer();
    EXPECT_EQ(m_clock.GetPlayerPos(), 20'000);
}

TEST_F(PlaybackClockTest, AMoveThatFindsNoSoundStopsOnce)
{
    m_engine.LoadResults = {5};
    m_clock.Play(0);
    ASSERT_EQ(m_engine.Status, SoundStatus::Empty);
    Forget();
    m_clock.Jump(5000, true);
    EXPECT_EQ(std::ranges::count(m_engine.Log, "StopSound"), 1);
    EXPECT_EQ(m_engine.Status, SoundStatus::Empty);
    EXPECT_TRUE(Shows(0));
    m_clock.StopPlaying();
    m_clock.PlayPause();
    EXPECT_EQ(m_engine.Status, SoundStatus::Empty);
}

} // namespace
} // namespace lantern
