// SPDX-License-Identifier: GPL-3.0-or-later
#include "EvenLoudness.h"

#include "FakeAudioEngine.h"
#include "Moment.h"
#include "Track.h"

#include <QCoreApplication>

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace lantern {
namespace {

constexpr double kNone = -std::numeric_limits<double>::infinity();

double DbOf(float factor)
{
    return 20 * std::log10(static_cast<double>(factor));
}

SoundLoudness Whole(double lufs, double peakDb)
{
    return {.lufs = lufs, .truePeak = std::pow(10, peakDb / 20), .isWhole = true};
}

TEST(EvenGain, LoudSoundsAreTurnedDownAndQuietOnesUp)
{
    EXPECT_NEAR(DbOf(EvenGainFor(Whole(-9, 0.5))), -7, 1e-4);
    EXPECT_NEAR(DbOf(EvenGainFor(Whole(-16, -3))), 0, 1e-4);
    EXPECT_NEAR(DbOf(EvenGainFor(Whole(-22, -10))), 6, 1e-4);
}

TEST(EvenGain, PeaksStayBelowMinusOneDecibel)
{
    EXPECT_NEAR(DbOf(EvenGainFor(Whole(-22, -4))), 3, 1e-4);
    EXPECT_NEAR(DbOf(EvenGainFor(Whole(-22, 0))), -1, 1e-4);
    EXPECT_NEAR(DbOf(EvenGainFor(Whole(-16, 1.5))), -2.5, 1e-4);
}

TEST(EvenGain, OfAnEstimateThePeaksMayBeAnywhere)
{
    SoundLoudness estimate = Whole(-24, -12);
    estimate.isWhole = false;
    EXPECT_NEAR(DbOf(EvenGainFor(estimate)), -1, 1e-4);
    estimate = Whole(-9, 2);
    estimate.isWhole = false;
    EXPECT_NEAR(DbOf(EvenGainFor(estimate)), -7, 1e-4);
    estimate = Whole(-17, 2);
    estimate.isWhole = false;
    EXPECT_NEAR(DbOf(EvenGainFor(estimate)), -3, 1e-4);
}

TEST(EvenGain, SilenceAndWhatIsNoNumberStayAsTheyAre)
{
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(EvenGainFor(SoundLoudness()), 1.0F);
    EXPECT_EQ(EvenGainFor({.lufs = kNone, .truePeak = 0, .isWhole = true}), 1.0F);
    EXPECT_EQ(EvenGainFor({.lufs = kNaN, .truePeak = 1, .isWhole = true}), 1.0F);
    EXPECT_EQ(EvenGainFor({.lufs = -20, .truePeak = kNaN, .isWhole = true}), 1.0F);
    EXPECT_EQ(EvenGainFor({.lufs = -20, .truePeak = kNaN, .isWhole = false}), 1.0F);
    EXPECT_EQ(EvenGainFor({.lufs = -20, .truePeak = 0, .isWhole = true}), 1.0F);
}

TEST(EvenGain, ItIsBounded)
{
    EXPECT_NEAR(DbOf(EvenGainFor(Whole(-65, -50))), 12, 1e-4);
    EXPECT_NEAR(DbOf(EvenGainFor(Whole(30, 40))), -30, 1e-4);
}

class EvenLoudnessCase : public ::testing::Test {
protected:
    EvenLoudnessCase()
    {
        if (!QCoreApplication::instance())
            m_application.emplace(m_argc, &m_argv);
        m_even.Measured = [this](const KeptLoudness& loudness) { m_kept.push_back(loudness); };
        AudioClip clip;
        clip.Kind = ClipKind::Data;
        clip.Data = SoundImage(std::vector<std::uint8_t>(100, 5));
        m_track.ClipList.Add(clip);
        AudioClip filler = clip;
        filler.IsFiller = true;
        m_track.ClipList.Add(filler);
        m_print = FingerprintOf(clip);
    }
    void Wait(std::chrono::milliseconds time)
    {
        const auto end = test::Clock::now() + time;
        while (test::Clock::now() < end)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    double GainDb() const { return DbOf(m_engine.SoundGain); }

    int m_argc = 1;
    char* m_argv = const_cast<char*>("test");
    std::optional<QCoreApplication> m_application;
    Track m_track;
    FakeAudioEngine m_engine;
    EvenLoudness m_even{m_track, m_engine};
    std::vector<KeptLoudness> m_kept;
    QByteArray m_print;
};

TEST_F(EvenLoudnessCase, ASongWithARecordHasItsGainAtOnceAndIsNotMeasured)
{
    m_even.TakeSong(KeptLoudness{m_print, -10, 1});
    EXPECT_NEAR(GainDb(), -6, 1e-4);
    EXPECT_EQ(m_engine.Meter.Measurements, 0);
    Wait(std::chrono::milliseconds(1000));
    EXPECT_NEAR(GainDb(), -6, 1e-4);
    EXPECT_TRUE(m_kept.empty());
}

TEST_F(EvenLoudnessCase, TheRecordOfAnotherSoundDoesNotHold)
{
    m_engine.SoundGain = 0.5F; // of the song before
    m_even.TakeSong(KeptLoudness{QByteArray(kSongIdSize, 'x'), -10, 1});
    EXPECT_EQ(m_engine.SoundGain, 1.0F);
    ASSERT_TRUE(m_engine.Meter.IsMeasuring());
    ASSERT_EQ(m_engine.Meter.Sounds.size(), 1U); // the silence that fills up is none
    EXPECT_TRUE(
        std::ranges::equal(m_engine.Meter.Sounds[0].image, std::vector<std::uint8_t>(100, 5)));
}

TEST_F(EvenLoudnessCase, WhatIsMeasuredInTimeHoldsAndIsKept)
{
    m_even.TakeSong({});
    m_engine.Meter.Tell({.lufs = -8, .truePeak = 1, .isWhole = false});
    EXPECT_EQ(m_engine.SoundGain, 1.0F); // the whole may still come in time
    m_engine.Meter.Tell(Whole(-11, 0));
    EXPECT_NEAR(GainDb(), -5, 1e-4);
    EXPECT_EQ(m_kept, (std::vector{KeptLoudness{m_print, -11, 1}}));
}

TEST_F(EvenLoudnessCase, AfterASecondTheEstimateHoldsForTheWholeSong)
{
    m_even.TakeSong({});
    m_engine.Meter.Tell({.lufs = -8, .truePeak = 1, .isWhole = false});
    Wait(std::chrono::milliseconds(700));
    EXPECT_EQ(m_engine.SoundGain, 1.0F);
    Wait(std::chrono::milliseconds(300));
    EXPECT_NEAR(GainDb(), -8, 1e-4);
    m_engine.Meter.Tell(Whole(-11, 0));
    EXPECT_NEAR(GainDb(), -8, 1e-4);
    EXPECT_EQ(m_kept, (std::vector{KeptLoudness{m_print, -11, 1}})); // for the next time
}

TEST_F(EvenLoudnessCase, WithoutAnEstimateTheSongStaysAsItIs)
{
    m_even.TakeSong({});
    Wait(std::chrono::milliseconds(1000));
    m_engine.Meter.Tell(Whole(-11, 0));
    EXPECT_EQ(m_engine.SoundGain, 1.0F);
    EXPECT_EQ(m_kept.size(), 1U);
}

TEST_F(EvenLoudnessCase, ARecordThatIsReadALittleLaterHolds)
{
    m_even.TakeSong({});
    m_even.TakeRecord(KeptLoudness{m_print, -10, 1});
    EXPECT_NEAR(GainDb(), -6, 1e-4);
    EXPECT_FALSE(m_engine.Meter.IsMeasuring());
    m_even.TakeRecord(KeptLoudness{m_print, -20, 0.01});
    EXPECT_NEAR(GainDb(), -6, 1e-4);
}

TEST_F(EvenLoudnessCase, SwitchedOffTheSoundPassesAsItIs)
{
    m_even.TakeSong({});
    m_engine.Meter.Tell({.lufs = -8, .truePeak = 1, .isWhole = false});
    m_even.SwitchOff();
    EXPECT_EQ(m_engine.SoundGain, 1.0F);
    EXPECT_FALSE(m_engine.Meter.IsMeasuring());
    Wait(std::chrono::milliseconds(1000));
    EXPECT_EQ(m_engine.SoundGain, 1.0F);
}

TEST_F(EvenLoudnessCase, SilenceIsNotKept)
{
    m_even.TakeSong({});
    m_engine.Meter.Tell({.isWhole = true});
    EXPECT_EQ(m_engine.SoundGain, 1.0F);
    EXPECT_TRUE(m_kept.empty());
}

TEST_F(EvenLoudnessCase, ATrackWithoutASoundIsNotMeasured)
{
    m_track.ClipList.Erase();
    AudioClip filler;
    filler.IsFiller = true;
    m_track.ClipList.Add(filler);
    m_engine.SoundGain = 0.5F;
    m_even.TakeSong({});
    EXPECT_EQ(m_engine.SoundGain, 1.0F);
    EXPECT_EQ(m_engine.Meter.Measurements, 0);
}

TEST_F(EvenLoudnessCase, WhatIsMeasuredOfTheSongBeforeIsNotTakenForOneWithoutASound)
{
    m_even.TakeSong({});
    m_track.ClipList.Erase();
    m_even.TakeSong({});
    m_engine.Meter.Tell(Whole(-11, 0));
    EXPECT_EQ(m_engine.SoundGain, 1.0F);
    EXPECT_TRUE(m_kept.empty());
}

} // namespace
} // namespace lantern
