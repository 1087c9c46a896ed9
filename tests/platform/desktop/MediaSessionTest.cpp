// SPDX-License-Identifier: GPL-3.0-or-later
#include "MediaSession.h"
#include "FakeMediaPlayer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#ifdef __SANITIZE_THREAD__
// Qt's thread of the bus hands over what it made under locks that cannot be seen: Qt and the bus's
// library are not built so. What they themselves read and write is left out.
extern "C" const char* __tsan_default_options()
{
    return "ignore_noninstrumented_modules=1";
}
#endif

namespace lantern {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Log = std::vector<std::string>;

constexpr std::int64_t kSecondUs = 1'000'000;
constexpr std::int64_t kFarthest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t kNearest = std::numeric_limits<std::int64_t>::min();

class MediaSessions : public ::testing::Test {
protected:
    MediaSessions()
    {
        session.Changed = [this] { ++changes; };
        session.Seeked = [this](std::int64_t positionMs) { seeks.push_back(positionMs); };
        Look();
        changes = 0;
    }

    void Look(std::chrono::milliseconds later = 0ms)
    {
        now += later;
        session.Follow(now);
    }
    // Plays for that long, at its rate, and looks as often as a window does.
    void PlayOn(std::chrono::milliseconds time)
    {
        for (auto passed = 0ms; passed < time; passed += 10ms) {
            player.At += std::llround(10 * player.Now.rate);
            Look(10ms);
        }
    }
    // Each wish comes with a look before and after it.
    template <typename Wish>
    Log Wished(Wish&& wish)
    {
        Look();
        wish();
        Look();
        return player.TakeLog();
    }

    FakeMediaPlayer player;
    MediaSession session{player, {0.1, 1.9}};
    MediaSession::Moment now{1h};
    int changes = 0;
    std::vector<std::int64_t> seeks;
};

TEST_F(MediaSessions, PlayPauseAndStopActOnlyWhereTheyMakeADifference)
{
    EXPECT_THAT(Wished([&] { session.Pause(); }), IsEmpty());
    EXPECT_THAT(Wished([&] { session.Stop(); }), IsEmpty());
    EXPECT_THAT(Wished([&] { session.Play(); }), ElementsAre("Play"));
    EXPECT_THAT(Wished([&] { session.Play(); }), IsEmpty());
    EXPECT_THAT(Wished([&] { session.PlayPause(); }), ElementsAre("Pause"));
    EXPECT_THAT(Wished([&] { session.Pause(); }), IsEmpty());
    EXPECT_THAT(Wished([&] { session.PlayPause(); }), ElementsAre("Play"));
    EXPECT_THAT(Wished([&] { session.Stop(); }), ElementsAre("Stop"));
    EXPECT_THAT(Wished([&] { session.PlayPause(); }), ElementsAre("Play"));
}

TEST_F(MediaSessions, WithoutATrackThereIsNothingToPlay)
{
    player.Now = {};
    EXPECT_THAT(Wished([&] {
                    session.Play();
                    session.Pause();
                    session.Stop();
                    session.Next();
                    session.Previous();
                    session.Seek(kSecondUs);
                    session.SetPosition(session.TrackNumber(), kSecondUs);
                    EXPECT_EQ(session.PlayPause(), MediaAnswer::NotSupported);
                }),
                IsEmpty());
}

TEST_F(MediaSessions, SeekGoesFromWhereItIsAndNotBeforeTheStart)
{
    player.At = 30'000;
    EXPECT_THAT(Wished([&] { session.Seek(5 * kSecondUs); }), ElementsAre("SetPosition 35000"));
    EXPECT_THAT(Wished([&] { session.Seek(-10 * kSecondUs); }), ElementsAre("SetPosition 25000"));
    EXPECT_THAT(Wished([&] { session.Seek(-26 * kSecondUs); }), ElementsAre("SetPosition 0"));
    player.At = 30'000;
    EXPECT_THAT(Wished([&] { session.Seek(kNearest); }), ElementsAre("SetPosition 0"));
    EXPECT_THAT(Wished([&] { session.Seek(100 * kSecondUs); }), ElementsAre("SetPosition 100000"));
    player.Now.canSeek = false;
    EXPECT_THAT(Wished([&] { session.Seek(kSecondUs); }), IsEmpty());
}

TEST_F(MediaSessions, SeekPastTheEndIsTheWishForTheNextTrack)
{
    player.At = 99'000;
    EXPECT_THAT(Wished([&] { session.Seek(2 * kSecondUs); }), IsEmpty()) << "there is none";
    EXPECT_EQ(player.At, 99'000);
    player.Now.canGoNext = true;
    EXPECT_THAT(Wished([&] { session.Seek(2 * kSecondUs); }), ElementsAre("Next"));
    EXPECT_THAT(Wished([&] { session.Seek(kFarthest); }), ElementsAre("Next"));
}

TEST_F(MediaSessions, APositionIsTakenOnlyForTheTrackThatItWasMeantForAndWithinIt)
{
    const auto set = [&](int track, std::int64_t positionUs) {
        return Wished([&] { session.SetPosition(track, positionUs); });
    };
    const int track = session.TrackNumber();
    EXPECT_THAT(set(track, 50 * kSecondUs), ElementsAre("SetPosition 50000"));
    EXPECT_THAT(set(track, 0), ElementsAre("SetPosition 0"));
    EXPECT_THAT(set(track, 100 * kSecondUs), ElementsAre("SetPosition 100000"));
    EXPECT_THAT(set(track, 100 * kSecondUs + 1), IsEmpty());
    EXPECT_THAT(set(track, -1), IsEmpty());
    EXPECT_THAT(set(track, kFarthest), IsEmpty());
    EXPECT_THAT(set(track, kNearest), IsEmpty());
    EXPECT_THAT(set(track + 1, kSecondUs), IsEmpty());
    player.Now.track = FakeMediaPlayer::Song("another");
    EXPECT_THAT(set(track, kSecondUs), IsEmpty()) << "it comes late";
    EXPECT_THAT(set(session.TrackNumber(), kSecondUs), ElementsAre("SetPosition 1000"));
}

TEST_F(MediaSessions, RateAndVolumeStayWithinTheirLimitsAndWhatIsNoNumberIsRefused)
{
    const double none = std::numeric_limits<double>::quiet_NaN();
    const double endless = std::numeric_limits<double>::infinity();
    const auto rate = [&](double value) { return Wished([&] { session.SetRate(value); }); };
    EXPECT_THAT(rate(1.2), ElementsAre("SetRate 1.2"));
    EXPECT_THAT(rate(5), ElementsAre("SetRate 1.9"));
    EXPECT_THAT(rate(0.01), ElementsAre("SetRate 0.1"));
    EXPECT_THAT(rate(-1), ElementsAre("SetRate 0.1"));
    const auto volume = [&](double value) { return Wished([&] { session.SetVolume(value); }); };
    EXPECT_THAT(volume(0.5), ElementsAre("SetVolume 0.5"));
    EXPECT_THAT(volume(-3), ElementsAre("SetVolume 0"));
    EXPECT_THAT(volume(1e300), ElementsAre("SetVolume 1"));
    for (const double value : {none, endless, -endless}) {
        EXPECT_EQ(session.SetRate(value), MediaAnswer::InvalidValue);
        EXPECT_EQ(session.SetVolume(value), MediaAnswer::InvalidValue);
    }
    EXPECT_THAT(player.TakeLog(), IsEmpty());
}

TEST_F(MediaSessions, ARateOfZeroIsAPause)
{
    EXPECT_THAT(Wished([&] { session.SetRate(0); }), IsEmpty()) << "it stands already";
    player.Now.status = MediaStatus::Playing;
    EXPECT_THAT(Wished([&] { session.SetRate(-0.0); }), ElementsAre("Pause"));
    EXPECT_EQ(player.Now.rate, 1);
}

TEST_F(MediaSessions, NextAndPreviousGoOnlyWhereThereIsOne)
{
    EXPECT_THAT(Wished([&] { session.Next(); }), IsEmpty());
    EXPECT_THAT(Wished([&] { session.Previous(); }), IsEmpty());
    player.Now.canGoNext = true;
    EXPECT_THAT(Wished([&] { session.Previous(); }), IsEmpty());
    EXPECT_THAT(Wished([&] { session.Next(); }), ElementsAre("Next"));
    player.Now.canGoNext = false;
    player.Now.canGoPrevious = true;
    EXPECT_THAT(Wished([&] { session.Next(); }), IsEmpty());
    EXPECT_THAT(Wished([&] { session.Previous(); }), ElementsAre("Previous"));
}

TEST_F(MediaSessions, OnlyAFileOfThisMachineIsOpened)
{
    const auto open = [&](const QString& uri) { return session.OpenUri(uri); };
    EXPECT_EQ(open(QStringLiteral("file:///songs/other.cdg")), MediaAnswer::Done);
    EXPECT_EQ(open(QStringLiteral("file:///songs/oth%65r.cdg")), MediaAnswer::Done);
    EXPECT_THAT(player.TakeLog(),
                ElementsAre("OpenFile /songs/other.cdg", "OpenFile /songs/other.cdg"));
    for (const char* uri :
         {"http://example.org/song.cdg", "/songs/other.cdg", "", "file:", "file://",
          "file://elsewhere/songs/other.cdg", "file:///songs/a%00b.cdg"})
        EXPECT_EQ(open(QString::fromLatin1(uri)), MediaAnswer::NotSupported) << uri;
    EXPECT_EQ(open(QStringLiteral("file:///") + QString(50'000'000, u'a')),
              MediaAnswer::NotSupported);
    EXPECT_THAT(player.TakeLog(), IsEmpty());
    EXPECT_EQ(open(QStringLiteral("file:///etc/passwd")), MediaAnswer::NotSupported);
    EXPECT_THAT(player.TakeLog(), ElementsAre("OpenFile /etc/passwd"));
}

TEST_F(MediaSessions, FullScreenIsSetOnlyIfItIsNotSo)
{
    EXPECT_THAT(Wished([&] { session.SetFullScreen(false); }), IsEmpty());
    EXPECT_THAT(Wished([&] { session.SetFullScreen(true); }), ElementsAre("FullScreen"));
    EXPECT_THAT(Wished([&] { session.SetFullScreen(true); }), IsEmpty());
    EXPECT_THAT(Wished([&] { session.SetFullScreen(false); }), ElementsAre("Window"));
}

TEST_F(MediaSessions, AChangeIsToldOnce)
{
    PlayOn(100ms);
    EXPECT_EQ(changes, 0);
    player.Now.volume = 0.5;
    PlayOn(100ms);
    EXPECT_EQ(changes, 1);
    player.Now.track = FakeMediaPlayer::Song("another");
    player.Now.rate = 1.5;
    PlayOn(100ms);
    EXPECT_EQ(changes, 2);
}

TEST_F(MediaSessions, EachTrackHasANumberOfItsOwn)
{
    const int first = session.TrackNumber();
    player.Now.status = MediaStatus::Playing;
    player.Now.track->lengthMs = 5;
    Look();
    EXPECT_EQ(session.TrackNumber(), first);
    player.Now.track = FakeMediaPlayer::Song("another");
    Look();
    const int second = session.TrackNumber();
    EXPECT_NE(second, first);
    player.Now.track.reset();
    Look();
    player.Now.track = FakeMediaPlayer::Song("another");
    Look();
    EXPECT_NE(session.TrackNumber(), second);
    EXPECT_NE(session.TrackNumber(), first);
}

TEST_F(MediaSessions, AJumpOfThePositionIsToldOnceAndPlayingOnIsNone)
{
    player.Now.status = MediaStatus::Playing;
    PlayOn(2s);
    player.Now.rate = 1.9;
    PlayOn(2s);
    player.Now.rate = 0.1;
    PlayOn(2s);
    EXPECT_THAT(seeks, IsEmpty());
    player.At = 50'000;
    Look();
    PlayOn(2s);
    EXPECT_THAT(seeks, ElementsAre(50'000));
    player.At -= 1000;
    Look(10ms);
    EXPECT_THAT(seeks, ElementsAre(50'000, player.At));
}

TEST_F(MediaSessions, WhileItPausesEveryJumpIsTold)
{
    player.Now.status = MediaStatus::Playing;
    PlayOn(5s);
    player.Now.status = MediaStatus::Paused;
    Look();
    Look(1h);
    EXPECT_THAT(seeks, IsEmpty());
    player.At = 1000;
    Look();
    EXPECT_THAT(seeks, ElementsAre(1000));
}

TEST_F(MediaSessions, WhatIsHeardAMomentLaterIsNoJump)
{
    player.Now.status = MediaStatus::Playing;
    for (int i = 0; i < 80; ++i)
        Look(10ms);
    PlayOn(2s);
    EXPECT_THAT(seeks, IsEmpty());
    player.At = 50'000;
    for (int i = 0; i < 80; ++i)
        Look(10ms);
    PlayOn(2s);
    EXPECT_THAT(seeks, ElementsAre(50'000));
}

TEST_F(MediaSessions, ASoundThatStandsStillIsToldAgain)
{
    player.Now.status = MediaStatus::Playing;
    PlayOn(2s);
    const std::int64_t at = player.At;
    Look(400ms);
    EXPECT_THAT(seeks, ElementsAre(at));
}

TEST_F(MediaSessions, AStopAndANewTrackTellThePositionByThemselves)
{
    player.Now.status = MediaStatus::Playing;
    PlayOn(10s);
    player.Now.track = FakeMediaPlayer::Song("another");
    player.At = 0;
    PlayOn(10s);
    player.Stop();
    PlayOn(0s);
    Look(5s);
    EXPECT_THAT(seeks, IsEmpty());
}

} // namespace
} // namespace lantern
