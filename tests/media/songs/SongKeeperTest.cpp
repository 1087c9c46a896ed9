// SPDX-License-Identifier: GPL-3.0-or-later
#include "SongKeeper.h"

#include "FakeAudioEngine.h"
#include "HandStore.h"
#include "Moment.h"
#include "Packets.h"
#include "RecordingAudioHost.h"
#include "Track.h"

#include <QCoreApplication>

#include <gtest/gtest.h>
#include <optional>

namespace lantern {
namespace {

class SongKeeperCase : public ::testing::Test {
protected:
    // A window that tells the keeper of each change, as the main window does.
    class Host : public RecordingAudioHost {
    public:
        void SetValueText(AudioValue value, const QString& text) override
        {
            RecordingAudioHost::SetValueText(value, text);
            if (keeper && (value == AudioValue::KeyPitch || value == AudioValue::Speed))
                keeper->TuneChanged();
        }
        SongKeeper* keeper = nullptr;
    };

    SongKeeperCase()
    {
        if (!QCoreApplication::instance())
            m_application.emplace(m_argc, &m_argv);
        m_host.keeper = &m_keeper;
        m_keeper.Trouble = [this](const QString& reason) {
            m_troubles.push_back(reason.toStdString());
        };
    }

    void Open(std::uint8_t song)
    {
        Clear();
        m_track.PacketStore.Add(packets::Tile({.colour1 = 1, .row = song, .rows = {1}}));
        m_track.ClipList.Add(AudioClip{});
        m_keeper.SongOpens();
    }
    void Clear()
    {
        m_track.PacketStore.Erase();
        m_track.ClipList.Erase();
    }
    SongTune Tune() { return {m_engine.Pitch, m_engine.Tempo}; }
    // The tune that will come of what goes on in the background.
    SongTune TuneSoon(const SongTune& expected)
    {
        const auto end = test::Clock::now() + std::chrono::seconds(10);
        while (Tune() != expected && test::Clock::now() < end)
            QCoreApplication::processEvents();
        return Tune();
    }
    void Settle()
    {
        const auto end = test::Clock::now() + std::chrono::milliseconds(150);
        while (test::Clock::now() < end)
            QCoreApplication::processEvents();
    }
    void SwitchOn()
    {
        const int tries = m_file->Tries();
        m_keeper.RememberTunes(true);
        EXPECT_TRUE(test::Eventually([&] { return m_file->Tries() > tries; }));
        Settle();
    }

    int m_argc = 1;
    char* m_argv = const_cast<char*>("test");
    std::optional<QCoreApplication> m_application;
    std::shared_ptr<HandFile> m_file = std::make_shared<HandFile>();
    int m_stores = 0;
    std::vector<std::string> m_troubles;
    FakeAudioEngine m_engine;
    Host m_host;
    AudioControl m_audio{m_engine, m_host};
    Track m_track;
    SongKeeper m_keeper{m_track, m_engine, m_audio, [this] {
                            ++m_stores;
                            return std::make_unique<HandStore>(m_file);
                        }};
};

TEST_F(SongKeeperCase, OffKeyAndSpeedStayFromSongToSongAndNoFileIsTouched)
{
    Open(1);
    m_audio.SetPitch(-3, true);
    m_audio.SetSpeed(10, true);
    m_engine.Log.clear();
    Open(2);
    Settle();
    EXPECT_EQ(Tune(), (SongTune{-3, 10}));
    EXPECT_EQ(m_stores, 0);
    EXPECT_TRUE(m_engine.Log.empty());
}

TEST_F(SongKeeperCase, EachSongOpensWithItsOwnKeyAndSpeedOrNeutral)
{
    SwitchOn();
    Open(1);
    m_audio.SetPitch(-3, true);
    m_audio.SetSpeed(10, true);
    Open(2);
    EXPECT_EQ(Tune(), SongTune());
    EXPECT_EQ(m_host.ValueTexts[AudioValue::KeyPitch], "DEFAULT");
    m_audio.SetPitch(5, true);
    Open(1);
    EXPECT_EQ(Tune(), (SongTune{-3, 10}));
    EXPECT_EQ(m_host.ValueTexts[AudioValue::KeyPitch], "-3");
    Open(2);
    EXPECT_EQ(Tune(), (SongTune{5, 0}));
}

TEST_F(SongKeeperCase, WhatASongOpensWithIsNoChangeOfTheLastOne)
{
    SwitchOn();
    Open(1);
    m_audio.SetPitch(-3, true);
    Settle();
    const std::size_t writings = m_file->Writings();
    Open(2);
    Open(1);
    Open(2);
    m_keeper.RememberTunes(false);
    EXPECT_EQ(m_file->Writings(), writings);
    EXPECT_EQ(m_file->Records().size(), 1);
}

TEST_F(SongKeeperCase, BackToNeutralTheSongNeedsNoRecord)
{
    SwitchOn();
    Open(1);
    m_audio.SetPitch(-3, true);
    m_audio.SetPitch(0, true);
    m_keeper.RememberTunes(false);
    EXPECT_TRUE(m_file->Records().isEmpty());
}

TEST_F(SongKeeperCase, VolumeAndBalanceAreNoSongsOwn)
{
    SwitchOn();
    Open(1);
    m_audio.SetVolume(40, true);
    m_audio.SetBalance(10, true);
    Open(2);
    EXPECT_EQ(m_engine.Volume, 40);
    EXPECT_EQ(m_engine.Balance, 10);
}

TEST_F(SongKeeperCase, WithoutASongNothingIsKept)
{
    SwitchOn();
    m_audio.SetPitch(-3, true);
    Open(1);
    EXPECT_EQ(Tune(), SongTune());
    m_audio.SetPitch(2, true);
    Clear(); // a track that didn't open
    m_audio.SetPitch(9, true);
    m_keeper.ForgetSong();
    EXPECT_EQ(m_engine.Pitch, 9);
    Open(1);
    EXPECT_EQ(Tune(), (SongTune{2, 0}));
}

TEST_F(SongKeeperCase, ATrackOfNothingOpensNeutral)
{
    SwitchOn();
    Open(1);
    m_audio.SetPitch(-3, true);
    Clear();
    m_track.ClipList.Add(AudioClip{});
    m_keeper.SongOpens();
    EXPECT_EQ(Tune(), SongTune());
    m_audio.SetPitch(4, true); // nothing to keep it by
    Open(1);
    EXPECT_EQ(Tune(), (SongTune{-3, 0}));
    m_keeper.RememberTunes(false);
    EXPECT_EQ(m_file->Records().size(), 1);
}

TEST_F(SongKeeperCase, SwitchedOnTheOpenSongGetsWhatIsRememberedOfIt)
{
    SwitchOn();
    Open(1);
    m_audio.SetPitch(-3, true);
    m_keeper.RememberTunes(false);
    m_audio.SetPitch(7, true);
    EXPECT_EQ(m_engine.Pitch, 7);
    SwitchOn();
    EXPECT_EQ(Tune(), (SongTune{-3, 0}));
}

TEST_F(SongKeeperCase, SwitchedOnTheOpenSongKeepsWhatItHasIfNothingIsRemembered)
{
    Open(1);
    m_audio.SetPitch(-3, true);
    SwitchOn();
    EXPECT_EQ(Tune(), (SongTune{-3, 0}));
    Open(2);
    Open(1);
    EXPECT_EQ(Tune(), (SongTune{-3, 0}));
}

TEST_F(SongKeeperCase, ASongThatOpensBeforeTheFileIsReadGetsItsTuneThen)
{
    SwitchOn();
    Open(1);
    m_audio.SetPitch(-3, true);
    m_keeper.RememberTunes(false);

    m_audio.SetPitch(8, true);
    m_file->Hang(true);
    m_keeper.RememberTunes(true);
    Open(1);
    EXPECT_EQ(Tune(), SongTune());
    m_file->Hang(false);
    EXPECT_EQ(TuneSoon({-3, 0}), (SongTune{-3, 0}));
}

TEST_F(SongKeeperCase, WhatTheUserSetsBeforeTheFileIsReadHolds)
{
    SwitchOn();
    Open(1);
    m_audio.SetPitch(-3, true);
    m_keeper.RememberTunes(false);

    m_file->Hang(true);
    m_keeper.RememberTunes(true);
    Open(1);
    m_audio.SetPitch(4, true);
    m_file->Hang(false);
    Settle();
    EXPECT_EQ(Tune(), (SongTune{4, 0}));
    Open(2);
    Open(1);
    EXPECT_EQ(Tune(), (SongTune{4, 0}));
}

TEST_F(SongKeeperCase, WhatIsMeasuredBeforeTheFileIsReadLeavesTheTuneAndIsKeptThen)
{
    SwitchOn();
    Open(1);
    m_audio.SetPitch(-3, true);
    m_keeper.RememberTunes(false);

    m_file->Hang(true);
    m_keeper.RememberTunes(true);
    m_keeper.EvenOut(true);
    Clear();
    AudioClip clip;
    clip.Kind = ClipKind::Data;
    clip.Data = SoundImage(std::vector<std::uint8_t>(100, 5));
    m_track.PacketStore.Add(packets::Tile({.colour1 = 1, .row = 1, .rows = {1}}));
    m_track.ClipList.Add(clip);
    m_keeper.SongOpens();
    m_engine.Meter.Tell({.lufs = -11, .truePeak = 1, .isWhole = true});
    m_file->Hang(false);
    EXPECT_EQ(TuneSoon({-3, 0}), (SongTune{-3, 0}));
    m_keeper.End();
    const SongRecords kept = m_file->Records();
    ASSERT_EQ(kept.size(), 1);
    EXPECT_EQ(kept.begin()->tune, (SongTune{-3, 0}));
    ASSERT_TRUE(kept.begin()->loudness);
    EXPECT_EQ(kept.begin()->loudness->lufs, -11);
}

TEST_F(SongKeeperCase, AForgottenSongGoesBackToNeutralAndTheOthersStay)
{
    SwitchOn();
    Open(1);
    m_audio.SetPitch(-3, true);
    Open(2);
    m_audio.SetPitch(5, true);
    m_keeper.ForgetSong();
    EXPECT_EQ(Tune(), SongTune());
    Open(1);
    EXPECT_EQ(Tune(), (SongTune{-3, 0}));
    Open(2);
    EXPECT_EQ(Tune(), SongTune());
    m_keeper.RememberTunes(false);
    EXPECT_EQ(m_file->Records().size(), 1);
}

TEST_F(SongKeeperCase, AllSongsAreForgotten)
{
    SwitchOn();
    Open(1);
    m_audio.SetPitch(-3, true);
    Open(2);
    m_audio.SetPitch(5, true);
    m_keeper.ForgetAllSongs();
    EXPECT_EQ(Tune(), SongTune());
    Open(1);
    EXPECT_EQ(Tune(), SongTune());
    m_keeper.RememberTunes(false);
    EXPECT_TRUE(m_file->Records().isEmpty());
}

TEST_F(SongKeeperCase, OffSongsCanBeForgottenAndStayAsTheySound)
{
    SwitchOn();
    for (std::uint8_t song = 1; song <= 3; ++song) {
        Open(song);
        m_audio.SetPitch(song, true);
    }
    m_keeper.RememberTunes(false);
    m_keeper.ForgetSong();
    EXPECT_TRUE(test::Eventually([&] { return m_file->Records().size() == 2; }));
    Open(1);
    m_audio.SetPitch(7, true);
    EXPECT_EQ(m_engine.Pitch, 7);
    m_keeper.ForgetAllSongs();
    m_keeper.End();
    EXPECT_TRUE(m_file->Records().isEmpty());
    EXPECT_EQ(m_engine.Pitch, 7);
}

TEST_F(SongKeeperCase, AFileOfNoUseCostsTheMemoryAndIsToldOnce)
{
    m_file->Set(StoreOutcome::Unusable);
    SwitchOn();
    Open(1);
    m_audio.SetPitch(-3, true);
    Open(2);
    EXPECT_EQ(Tune(), SongTune());
    Open(1);
    EXPECT_EQ(Tune(), (SongTune{-3, 0})); // for the evening
    Settle();
    EXPECT_EQ(m_troubles, std::vector<std::string>{"Songs: the file can't be used"});
}

} // namespace
} // namespace lantern
