// SPDX-License-Identifier: GPL-3.0-or-later
// The position where a sound reaches the ear later or earlier than the system says.
#include "EngineByHand.h"

#include <gmock/gmock.h>

#include <random>

namespace lantern::test {
namespace {

// 8 frames are a millisecond.
class EngineDelay : public EngineByHand {
protected:
    // The sound from that frame on, out of silence.
    void ExpectNext(std::size_t frame)
    {
        constexpr std::size_t kFaded = 40;
        const std::vector<float> heard = m_output.Take(500);
        ASSERT_EQ(heard.size(), 1000U);
        for (std::size_t i = kFaded; i < 500; ++i)
            ASSERT_EQ(heard[2 * i], static_cast<float>(m_sound.samples[2 * (frame + i)]) / 32768.0F)
                << i;
    }
    void ExpectNothingLostAtAnInterruption()
    {
        m_engine.StartSound();
        Play(4000);
        m_output.Interrupt();
        ExpectNext(4000);
    }
};

TEST_F(EngineDelay, ThePositionWaitsForASoundThatIsLate)
{
    Load();
    m_engine.SetSoundDelay(200);
    m_engine.StartSound();
    EXPECT_EQ(m_engine.GetSoundPosition(), 0);
    Play(1600);
    EXPECT_EQ(m_engine.GetSoundPosition(), 0) << "nothing has reached the ear";
    Play(8);
    EXPECT_EQ(m_engine.GetSoundPosition(), 1);
    Play(4000 - 1608);
    EXPECT_EQ(m_engine.GetSoundPosition(), 300);
}

TEST_F(EngineDelay, ThePositionIsAheadOfASoundThatIsEarly)
{
    Load();
    m_engine.SetSoundDelay(-150);
    EXPECT_EQ(m_engine.GetSoundPosition(), 0);
    m_engine.StartSound();
    Play(4000);
    EXPECT_EQ(m_engine.GetSoundPosition(), 650);
}

TEST_F(EngineDelay, WhatIsStillSilentIsNotHeardEarly)
{
    m_output.SetHasDevice(false);
    Load();
    m_engine.SetSoundDelay(-500);
    m_engine.StartSound();
    std::this_thread::sleep_for(300ms);
    EXPECT_EQ(m_engine.GetSoundPosition(), 0);
}

TEST_F(EngineDelay, AChangeIsLiveAndNeverSetsThePositionBack)
{
    Load();
    m_engine.StartSound();
    Play(4000);
    EXPECT_EQ(m_engine.GetSoundPosition(), 500);
    m_engine.SetSoundDelay(100);
    EXPECT_EQ(m_engine.GetSoundPosition(), 500) << "the picture waits";
    Play(400);
    EXPECT_EQ(m_engine.GetSoundPosition(), 500);
    Play(800);
    EXPECT_EQ(m_engine.GetSoundPosition(), 550);
    m_engine.SetSoundDelay(0);
    EXPECT_EQ(m_engine.GetSoundPosition(), 650);
    m_engine.SetSoundDelay(-100);
    EXPECT_EQ(m_engine.GetSoundPosition(), 750);
}

TEST_F(EngineDelay, ADelayBeyondTheLongestCountsAsTheLongest)
{
    Load();
    m_engine.SetSoundDelay(std::numeric_limits<std::int32_t>::max());
    m_engine.StartSound();
    Play(4800);
    EXPECT_EQ(m_engine.GetSoundPosition(), 100);
    m_engine.SetSoundDelay(std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(m_engine.GetSoundPosition(), 1100);
}

// A delay is real time: at twice the speed, twice as much of the sound.
TEST_F(EngineDelay, ItIsScaledByTheTempo)
{
    Load();
    m_engine.SetEngineTempo(50);
    m_engine.StartSound();
    Play(4000);
    EXPECT_EQ(m_engine.GetSoundPosition(), 750);
    m_engine.SetSoundDelay(-200);
    EXPECT_EQ(m_engine.GetSoundPosition(), 1050);
    m_engine.SetSoundDelay(200);
    Play(3200);
    EXPECT_EQ(m_engine.GetSoundPosition(), 1050) << "4000 + 3200 - 1600 frames, at one and a half";
    Play(80);
    EXPECT_EQ(m_engine.GetSoundPosition(), 1065);
}

TEST_F(EngineDelay, TheToldPositionIsThePlaceSoughtAtOnce)
{
    Load();
    for (const int delay : {200, 0, -150}) {
        m_engine.SetSoundDelay(delay);
        m_engine.SeekSound(700);
        EXPECT_EQ(m_engine.GetSoundPosition(), 700) << delay;
    }
    m_engine.StartSound();
    for (const int delay : {200, 0, -150}) {
        m_engine.SetSoundDelay(delay);
        Play(1000);
        m_engine.SeekSound(300);
        EXPECT_EQ(m_engine.GetSoundPosition(), 300) << delay;
    }
}

TEST_F(EngineDelay, AfterASeekThePositionWaitsUntilTheEarIsThere)
{
    Load();
    m_engine.SetSoundDelay(200);
    m_engine.StartSound();
    Play(1000);
    m_engine.SeekSound(700);
    PlayOver();
    EXPECT_EQ(m_engine.GetSoundPosition(), 700);
    Play(1600);
    EXPECT_GT(m_engine.GetSoundPosition(), 700);
    EXPECT_LE(m_engine.GetSoundPosition(), 710);
}

TEST_F(EngineDelay, ASoundThatIsLateEndsWhenItHasReachedTheEar)
{
    Load();
    m_engine.SetSoundDelay(200);
    m_engine.StartSound();
    Play(16'000 + 800);
    EXPECT_EQ(m_engine.GetSoundPosition(), 1900);
    std::this_thread::sleep_for(100ms);
    QCoreApplication::processEvents();
    EXPECT_EQ(m_engine.GetSoundStatus(), SoundStatus::Playing);
    Play(799);
    EXPECT_EQ(m_engine.GetSoundPosition(), 2000);
    Play(1);
    EXPECT_TRUE(Becomes(SoundStatus::Stopped)) << "it does not hang either";
    EXPECT_EQ(m_engine.GetSoundPosition(), 2000);
}

TEST_F(EngineDelay, ASoundThatIsEarlyIsPlayedToItsEndAndThePositionGoesNoFurther)
{
    Load();
    m_engine.SetSoundDelay(-150);
    m_engine.StartSound();
    Play(15'000);
    EXPECT_EQ(m_engine.GetSoundPosition(), 2000);
    std::this_thread::sleep_for(100ms);
    QCoreApplication::processEvents();
    EXPECT_EQ(m_engine.GetSoundStatus(), SoundStatus::Playing);
    EXPECT_EQ(m_engine.GetSoundPosition(), 2000);
    Play(1000);
    EXPECT_TRUE(Becomes(SoundStatus::Stopped));
}

// Each pause would else take a piece out of the song, or tell a position that jumps.
TEST_F(EngineDelay, APauseLeavesNothingOutOfASoundThatIsEarly)
{
    Load();
    m_engine.SetSoundDelay(-150);
    m_engine.StartSound();
    Play(4000);
    m_engine.PauseSound();
    EXPECT_EQ(m_engine.GetSoundPosition(), 650);
    ASSERT_TRUE(m_output.TakeUntilPaused());
    EXPECT_EQ(m_engine.GetSoundPosition(), 650);
    m_engine.StartSound();
    ExpectNext(4000);
    EXPECT_EQ(m_engine.GetSoundPosition(), 500 + 150 + 63) << "500 frames on";
}

TEST_F(EngineDelay, APauseOfASoundThatIsLateGoesOnWhereTheEarWas)
{
    Load();
    m_engine.SetSoundDelay(200);
    m_engine.StartSound();
    Play(4000);
    m_engine.PauseSound();
    EXPECT_EQ(m_engine.GetSoundPosition(), 300);
    ASSERT_TRUE(m_output.TakeUntilPaused());
    m_engine.StartSound();
    Play(1600);
    EXPECT_EQ(m_engine.GetSoundPosition(), 300);
    Play(800);
    EXPECT_EQ(m_engine.GetSoundPosition(), 400);
}

TEST_F(EngineDelay, AnInterruptionLeavesNothingOutOfASoundThatIsEarly)
{
    Load();
    m_engine.SetSoundDelay(-150);
    ExpectNothingLostAtAnInterruption();
}

TEST_F(EngineDelay, AnInterruptionRepeatsNothingOfASoundThatIsLate)
{
    Load();
    m_engine.SetSoundDelay(200);
    ExpectNothingLostAtAnInterruption();
}

TEST_F(EngineDelay, QuickChangesNeverSetThePositionBackNorBeyondTheEnd)
{
    Load();
    m_engine.StartSound();
    std::mt19937 chance(3);
    std::int32_t last = 0;
    for (int i = 0; i < 300; ++i) {
        m_engine.SetSoundDelay(static_cast<std::int32_t>(chance() % 1001) - 500);
        Play(50);
        const std::int32_t now = m_engine.GetSoundPosition();
        EXPECT_GE(now, last);
        EXPECT_LE(now, 2000);
        last = now;
    }
    m_engine.SetSoundDelay(0);
    m_output.TakeWhatIsThere(1000);
    EXPECT_TRUE(Becomes(SoundStatus::Stopped));
}

TEST_F(EngineDelay, TheDeviceInUseIsTold)
{
    EXPECT_EQ(m_engine.DeviceInUse(),
              (SoundDevice{QStringLiteral("studio"), QStringLiteral("Studio Speakers")}));
    m_output.SetDevices({});
    EXPECT_EQ(m_engine.DeviceInUse(), SoundDevice());
}

} // namespace
} // namespace lantern::test
