// SPDX-License-Identifier: GPL-3.0-or-later
#include "PlaybackFixture.h"

#include <gmock/gmock.h>

#include <limits>

namespace lantern {
namespace {

using namespace packets;
using testing::Contains;
using testing::IsEmpty;
using testing::Not;
using testing::Pair;

using TransportTest = PlaybackFixture;

TEST_F(TransportTest, PlayPauseWithoutATrackOpensTheLastOne)
{
    m_track.ClipList.Erase();
    m_clock.PlayPause();
    EXPECT_EQ(m_host.Reopenings, 1);
    EXPECT_THAT(m_engine.Log, IsEmpty());
}

TEST_F(TransportTest, PlayPauseOnAReadyTrackPlaysFromTheStart)
{
    m_clock.PlayPause();
    EXPECT_EQ(m_host.Reopenings, 0);
    EXPECT_EQ(m_engine.Status, SoundStatus::Playing);
    EXPECT_EQ(m_track.CurrentClip, 1);
}

TEST_F(TransportTest, PlayPausePausesWithAPaintAndResumesWithout)
{
    PlayAt(1000);
    m_clock.PlayPause();
    EXPECT_EQ(m_engine.Status, SoundStatus::Paused);
    EXPECT_EQ(Painter.Paints, 1);
    m_clock.PlayPause();
    EXPECT_EQ(m_engine.Status, SoundStatus::Playing);
    EXPECT_EQ(m_engine.PositionMs, 1000);
    EXPECT_EQ(Painter.Paints, 1);
    m_engine.Status = SoundStatus::Stopped;
    m_clock.PlayPause();
    EXPECT_EQ(m_engine.Status, SoundStatus::Playing);
}

TEST_F(TransportTest, SkippingMovesSoundSliderAndPicture)
{
    PlayAt(5000);
    m_clock.SkipBy(7000);
    EXPECT_EQ(m_engine.PositionMs, 12'000);
    EXPECT_EQ(m_engine.Status, SoundStatus::Playing);
    EXPECT_EQ(m_host.Value, 12'000);
    EXPECT_EQ(Picture.PlayedPacket, 3600);
    EXPECT_TRUE(Shows(2));
    EXPECT_EQ(Painter.Paints, 1);
    EXPECT_EQ(m_host.Refreshes, 1);
    m_clock.SkipBy(-4000);
    EXPECT_EQ(m_engine.PositionMs, 8000);
    EXPECT_TRUE(Shows(1));
}

TEST_F(TransportTest, SkippingWhilePausedStaysPausedAndShowsThePlace)
{
    PlayAt(5000);
    m_engine.Status = SoundStatus::Paused;
    m_clock.SkipBy(7000);
    EXPECT_EQ(m_engine.Status, SoundStatus::Paused);
    EXPECT_TRUE(Shows(2));
    EXPECT_GE(Painter.Paints, 1);
    EXPECT_FALSE(Picture.PictureDirty);
}

TEST_F(TransportTest, SkippingOffTheStartGoesOnPlayingFromIt)
{
    PlayAt(2000);
    m_clock.SkipBy(-5000);
    EXPECT_EQ(m_engine.PositionMs, 0);
    EXPECT_EQ(m_engine.Status, SoundStatus::Playing);
    EXPECT_THAT(m_engine.Log, Not(Contains("StopSound")));
    EXPECT_TRUE(Shows(0));
    m_engine.PositionMs = 10;
    m_clock.UpdatePlayer();
    EXPECT_TRUE(Shows(1));
}

TEST_F(TransportTest, ThePictureFillsUpFromPacketOneHoweverSoonTheSoundGoesOn)
{
    // The sound has been heard on for some packets when the skip asks for its position.
    class EagerEngine : public FakeAudioEngine {
    public:
        void SeekSound(std::int32_t positionMs) override
        {
            FakeAudioEngine::SeekSound(positionMs + 20);
        }
    } engine;
    PlaybackClock clock(engine, m_track, Picture, Interpreter, Painter, m_host);
    clock.Play(2000);
    clock.UpdatePlayer();
    clock.SkipBy(-5000);
    EXPECT_TRUE(Shows(0));
    clock.UpdatePlayer();
    EXPECT_TRUE(Shows(1));
}

TEST_F(TransportTest, SkippingOffTheEndStopsAtTheStart)
{
    PlayAt(16'000);
    m_clock.SkipBy(5000);
    EXPECT_EQ(m_engine.Status, SoundStatus::Stopped);
    EXPECT_EQ(m_engine.PositionMs, 0);
    EXPECT_EQ(m_host.Value, 0);
    EXPECT_TRUE(Shows(0));
    EXPECT_EQ(Picture.PlayedPacket, 0);
}

TEST_F(TransportTest, SkippingToTheVeryEndIsStillWithin)
{
    PlayAt(16'000);
    m_clock.SkipBy(4000);
    EXPECT_EQ(m_engine.PositionMs, 20'000);
    EXPECT_EQ(m_engine.Status, SoundStatus::Playing);
    EXPECT_EQ(Picture.PlayedPacket, 6000);
}

TEST_F(TransportTest, SkippingBackFromBeyondTheEndReturnsToTheStartWithoutStopping)
{
    PlayAt(0);
    m_engine.PositionMs = 25'000;
    m_clock.SkipBy(-1000);
    EXPECT_EQ(m_engine.PositionMs, 0);
    EXPECT_EQ(m_engine.Status, SoundStatus::Playing);
}

TEST_F(TransportTest, NoSkipIsTooLong)
{
    PlayAt(5000);
    m_clock.SkipBy(std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(m_engine.Status, SoundStatus::Stopped);
    PlayAt(5000);
    m_clock.SkipBy(std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(m_engine.PositionMs, 0);
    EXPECT_EQ(m_engine.Status, SoundStatus::Playing);
}

TEST_F(TransportTest, StoppingReturnsToTheStartAndBlanks)
{
    PlayAt(12'000);
    m_clock.StopPlaying();
    EXPECT_EQ(m_engine.Status, SoundStatus::Stopped);
    EXPECT_EQ(m_engine.PositionMs, 0);
    EXPECT_TRUE(Shows(0));
    EXPECT_THAT(m_host.Ticker, Pair(0, false));
    m_clock.UpdatePlayer();
    EXPECT_TRUE(Shows(0));
}

TEST_F(TransportTest, StoppingAtTheStartStillStopsAndBlanks)
{
    PlayAt(0);
    Picture.CurrentPacket = MemoryPreset(9);
    Interpreter.ShowCode(1);
    m_clock.StopPlaying();
    EXPECT_EQ(m_engine.Status, SoundStatus::Stopped);
    EXPECT_TRUE(Shows(0));
}

TEST_F(TransportTest, StoppingALongestTrackDoesNotOverflow)
{
    PlayAt(5000);
    m_track.TotalLengthMs = kLastMs;
    m_clock.StopPlaying();
    EXPECT_EQ(m_engine.Status, SoundStatus::Stopped);
    EXPECT_EQ(m_engine.PositionMs, 0);
}

TEST_F(TransportTest, StoppingWithoutATrackBlanks)
{
    m_track = Track();
    m_clock.StopPlaying();
    EXPECT_TRUE(Shows(0));
    EXPECT_THAT(m_host.Ticker, Pair(0, false));
}

TEST_F(TransportTest, PlayingAgainAfterAStopStartsOver)
{
    PlayAt(12'000);
    m_clock.StopPlaying();
    m_clock.PlayPause();
    EXPECT_EQ(m_engine.Status, SoundStatus::Playing);
    m_engine.PositionMs = 500;
    m_clock.UpdatePlayer();
    EXPECT_TRUE(Shows(1));
}

TEST_F(TransportTest, TheEndOfAClipGoesOnWithTheNext)
{
    AddClip(5000);
    m_engine.SoundDone = [this] { m_clock.HandleSoundDone(); };
    PlayAt(0);
    m_engine.DurationMs = kLengthMs;
    m_engine.PlayToEnd();
    EXPECT_EQ(m_track.CurrentClip, 2);
    EXPECT_EQ(m_engine.Status, SoundStatus::Playing);
    EXPECT_EQ(m_clock.GetPlayerPos(), 20'000);
    m_engine.PositionMs = 100;
    EXPECT_EQ(m_clock.GetPlayerPos(), 20'100);
}

TEST_F(TransportTest, TheEndOfTheLastClipStops)
{
    AddClip(5000);
    m_engine.SoundDone = [this] { m_clock.HandleSoundDone(); };
    PlayAt(21'000);
    m_engine.PlayToEnd();
    EXPECT_EQ(m_engine.Status, SoundStatus::Stopped);
    EXPECT_EQ(m_track.CurrentClip, 1);
    EXPECT_EQ(m_clock.GetPlayerPos(), 0);
    EXPECT_TRUE(Shows(0));
}

TEST_F(TransportTest, ASoundThatIsDoneButNotStoppedIsIgnored)
{
    AddClip(5000);
    PlayAt(0);
    for (const SoundStatus status :
         {SoundStatus::Empty, SoundStatus::Playing, SoundStatus::Paused, SoundStatus{4}}) {
        m_engine.Status = status;
        m_clock.HandleSoundDone();
    }
    EXPECT_THAT(m_engine.Actions(), IsEmpty());
    EXPECT_EQ(m_track.CurrentClip, 1);
}

TEST_F(TransportTest, ASoundDoneWithoutAClipStops)
{
    m_engine.Status = SoundStatus::Stopped;
    m_clock.HandleSoundDone();
    EXPECT_THAT(m_engine.Log, Contains("StopSound"));
}

TEST_F(TransportTest, ADraggedSliderMovesSoundAndPicture)
{
    PlayAt(1000);
    m_host.Value = 15'000;
    m_clock.HandleSliderScroll();
    EXPECT_EQ(m_engine.PositionMs, 15'000);
    EXPECT_EQ(m_engine.Status, SoundStatus::Playing);
    EXPECT_TRUE(Shows(2));
    EXPECT_EQ(Painter.Paints, 1);
    EXPECT_EQ(m_host.CancelledScrolls, 0);
    EXPECT_EQ(m_host.WheelChanges, 1);
    EXPECT_EQ(m_host.Refreshes, 1);
}

TEST_F(TransportTest, ASliderDraggedToTheStartBlanks)
{
    PlayAt(1000);
    m_host.Value = 0;
    m_clock.HandleSliderScroll();
    EXPECT_EQ(m_engine.PositionMs, 0);
    EXPECT_TRUE(Shows(0));
    EXPECT_EQ(m_host.WheelChanges, 1);
    EXPECT_EQ(m_host.CancelledScrolls, 0);
}

TEST_F(TransportTest, ASliderDraggedToTheEndLetsGoWhilePlaying)
{
    PlayAt(1000);
    m_host.Value = m_host.Max;
    m_clock.HandleSliderScroll();
    EXPECT_EQ(m_host.CancelledScrolls, 1);
    EXPECT_EQ(m_host.WheelChanges, 1);
    m_engine.Status = SoundStatus::Paused;
    m_host.Value = m_host.Max;
    m_clock.HandleSliderScroll();
    EXPECT_EQ(m_host.CancelledScrolls, 1);
}

TEST_F(TransportTest, TheSliderDoesNothingDuringALoad)
{
    m_track.MediaLoading = true;
    m_host.Value = 5000;
    m_clock.HandleSliderScroll();
    EXPECT_THAT(m_engine.Log, IsEmpty());
    EXPECT_EQ(m_host.WheelChanges, 0);
    EXPECT_EQ(m_host.Refreshes, 0);
}

TEST_F(TransportTest, PositionsBeyondThePacketsKeepTheLastPicture)
{
    m_track.PacketStore.Resize(4000);
    PlayAt(19'000);
    EXPECT_EQ(Picture.PlayedPacket, 4000);
    EXPECT_TRUE(Shows(2));
    m_engine.PositionMs = 19'500;
    m_clock.UpdatePlayer();
    EXPECT_EQ(Picture.PlayedPacket, 4000);
}

} // namespace
} // namespace lantern
