// SPDX-License-Identifier: GPL-3.0-or-later
#include "AudioControl.h"

#include "FakeAudioEngine.h"
#include "RecordingAudioHost.h"

#include <array>
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>

namespace lantern {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class AudioControlTest : public ::testing::Test {
protected:
    FakeAudioEngine m_engine;
    RecordingAudioHost m_host;
    AudioControl m_audio{m_engine, m_host};
};

TEST_F(AudioControlTest, TheEngineStarts)
{
    EXPECT_EQ(m_audio.StartEngine(), QString());
    EXPECT_THAT(m_engine.Log, ElementsAre("GetDeviceCount", "EngineInit"));
}

TEST_F(AudioControlTest, WithoutADeviceTheEngineIsNotStarted)
{
    m_engine.Devices.clear();
    EXPECT_EQ(m_audio.StartEngine(),
              QStringLiteral("No audio device/speakers detected/connected."));
    EXPECT_THAT(m_engine.Actions(), IsEmpty());
}

TEST_F(AudioControlTest, AFailedStartIsTold)
{
    m_engine.InitSucceeds = false;
    EXPECT_EQ(m_audio.StartEngine(),
              QStringLiteral("One of the audio devices may be locked by another application."));
}

TEST_F(AudioControlTest, SetVolumeClampsAndShows)
{
    m_audio.SetVolume(150, true);
    EXPECT_EQ(m_engine.Volume, 100);
    EXPECT_EQ(m_host.ValueTexts[AudioValue::Volume], "100%");
    m_audio.SetVolume(-1, true);
    EXPECT_EQ(m_engine.Volume, 0);
    EXPECT_EQ(m_host.ValueTexts[AudioValue::Volume], "MUTE");
    EXPECT_THAT(m_host.Statuses, ElementsAre("Volume: 100%", "Volume: MUTE"));
}

TEST_F(AudioControlTest, SetBalanceClampsAndShows)
{
    m_audio.SetBalance(51, true);
    EXPECT_EQ(m_engine.Balance, 50);
    m_audio.SetBalance(-0.5F, true);
    EXPECT_EQ(m_engine.Balance, -0.5F);
    EXPECT_EQ(m_host.ValueTexts[AudioValue::Balance], "-0.5");
    EXPECT_THAT(m_host.Statuses, ElementsAre("Balance: +50", "Balance: -0.5"));
}

TEST_F(AudioControlTest, SetPitchClampsAndShows)
{
    m_audio.SetPitch(11, true);
    EXPECT_EQ(m_engine.Pitch, 10);
    m_audio.SetPitch(0, true);
    m_audio.SetPitch(-3, true);
    EXPECT_EQ(m_engine.Pitch, -3);
    EXPECT_EQ(m_host.ValueTexts[AudioValue::KeyPitch], "-3");
    m_audio.SetPitch(std::numeric_limits<std::int32_t>::min(), true);
    EXPECT_EQ(m_engine.Pitch, -10);
    m_audio.SetPitch(std::numeric_limits<std::int32_t>::max(), true);
    EXPECT_EQ(m_engine.Pitch, 10);
    EXPECT_THAT(m_host.Statuses,
                ElementsAre("Key / Pitch: +10", "Key / Pitch: DEFAULT", "Key / Pitch: -3",
                            "Key / Pitch: -10", "Key / Pitch: +10"));
}

TEST_F(AudioControlTest, SetSpeedClampsAndShows)
{
    m_audio.SetSpeed(12.5F, true);
    EXPECT_EQ(m_engine.Tempo, 12.5F);
    EXPECT_EQ(m_host.ValueTexts[AudioValue::Speed], "+12.5%");
    m_audio.SetSpeed(-20, true);
    m_audio.SetSpeed(-1000, true);
    EXPECT_EQ(m_engine.Tempo, -90);
    EXPECT_THAT(m_host.Statuses, ElementsAre("Speed: +12.5%", "Speed: -20%", "Speed: -90%"));
}

TEST_F(AudioControlTest, WithoutStatusOnlyTheLabelIsWritten)
{
    m_audio.SetVolume(50, false);
    m_audio.SetBalance(0, false);
    m_audio.SetPitch(0, false);
    m_audio.SetSpeed(0, false);
    EXPECT_THAT(m_host.Statuses, IsEmpty());
    EXPECT_EQ(m_host.ValueTexts.size(), 4U);
}

TEST_F(AudioControlTest, ANumberThatIsNoneReachesTheEngineAsNeutral)
{
    m_audio.SetVolume(std::nanf(""), false);
    m_audio.SetSpeed(std::nanf(""), false);
    EXPECT_EQ(m_engine.Volume, 100);
    EXPECT_EQ(m_engine.Tempo, 0);
}

TEST_F(AudioControlTest, ToggleVolumeMutesAndRestores)
{
    m_engine.Volume = 80;
    m_audio.ToggleVolume(false);
    EXPECT_EQ(m_engine.Volume, 0);
    EXPECT_EQ(m_audio.CustomVolume, 80);
    m_audio.ToggleVolume(false);
    EXPECT_EQ(m_engine.Volume, 80);
    EXPECT_EQ(m_audio.WheelType, WheelMode::Volume);
}

TEST_F(AudioControlTest, ToggleVolumeWithoutACustomValueGoesToFull)
{
    m_engine.Volume = 0;
    m_audio.CustomVolume = 0;
    m_audio.ToggleVolume(false);
    EXPECT_EQ(m_engine.Volume, 100);
}

TEST_F(AudioControlTest, ToggleVolumeToDefaultForgetsTheCustomValue)
{
    m_engine.Volume = 30;
    m_audio.CustomVolume = 60;
    m_audio.ToggleVolume(true);
    EXPECT_EQ(m_engine.Volume, 100);
    EXPECT_EQ(m_audio.CustomVolume, 100);
}

TEST_F(AudioControlTest, ToggleBalanceKeepsTheRoundedValue)
{
    m_engine.Balance = 30;
    m_audio.ToggleBalance(true);
    EXPECT_EQ(m_engine.Balance, 0);
    EXPECT_EQ(m_audio.CustomBalance, 30);
    m_audio.ToggleBalance(false);
    EXPECT_EQ(m_engine.Balance, 30);
    m_engine.Balance = 2.5F;
    m_audio.ToggleBalance(false);
    EXPECT_EQ(m_audio.CustomBalance, 2);
    EXPECT_EQ(m_audio.WheelType, WheelMode::Balance);
}

TEST_F(AudioControlTest, ToggleBalanceHasTwoDefaults)
{
    m_audio.ToggleBalance(false);
    EXPECT_EQ(m_engine.Balance, -50);
    m_engine.Balance = 0;
    m_audio.CustomBalance = 0;
    m_audio.ToggleBalance(false);
    EXPECT_EQ(m_engine.Balance, 50);
}

TEST_F(AudioControlTest, TogglePitchGoesDownByTwoAtFirst)
{
    m_audio.TogglePitch(false);
    EXPECT_EQ(m_engine.Pitch, -2);
    m_engine.Pitch = 5;
    m_audio.TogglePitch(false);
    EXPECT_EQ(m_engine.Pitch, 0);
    EXPECT_EQ(m_audio.CustomKeyPitch, 5);
    m_audio.CustomKeyPitch = 0;
    m_audio.TogglePitch(false);
    EXPECT_EQ(m_engine.Pitch, -2);
    EXPECT_EQ(m_audio.WheelType, WheelMode::KeyPitch);
}

TEST_F(AudioControlTest, ACustomKeyOutOfRangeIsKeptAndSetWithinIt)
{
    m_audio.CustomKeyPitch = std::numeric_limits<std::int32_t>::max();
    m_audio.TogglePitch(false);
    EXPECT_EQ(m_engine.Pitch, 10);
    EXPECT_EQ(m_audio.CustomKeyPitch, std::numeric_limits<std::int32_t>::max());
}

TEST_F(AudioControlTest, ToggleSpeedGoesUpByTwentyAtFirst)
{
    m_audio.CustomSpeed = 0;
    m_audio.ToggleSpeed(false);
    EXPECT_EQ(m_engine.Tempo, 20);
    m_engine.Tempo = 12.5F;
    m_audio.ToggleSpeed(true);
    EXPECT_EQ(m_engine.Tempo, 0);
    EXPECT_EQ(m_audio.CustomSpeed, 12);
    m_audio.ToggleSpeed(true);
    EXPECT_EQ(m_audio.CustomSpeed, 12);
    EXPECT_EQ(m_audio.WheelType, WheelMode::Speed);
}

TEST_F(AudioControlTest, AToggleShowsItsValueAndTheWheelShowsItAgain)
{
    m_audio.ToggleSpeed(false);
    EXPECT_THAT(m_host.Statuses, ElementsAre("Speed: +20%", "Speed: +20%"));
}

TEST_F(AudioControlTest, SetAudioDeviceTakesTheDeviceOfThatName)
{
    m_engine.Devices = {QStringLiteral("Default"), QStringLiteral("HDMI")};
    m_audio.SetAudioDevice(QStringLiteral("hdmi"));
    EXPECT_EQ(m_engine.SelectedDevice, 1);
    EXPECT_EQ(m_audio.AudioDevice, QStringLiteral("HDMI"));
    EXPECT_EQ(m_host.DeviceText, "HDMI");
}

TEST_F(AudioControlTest, SetAudioDeviceFallsBackOnTheFirst)
{
    m_engine.Devices = {QStringLiteral("Default"), QStringLiteral("HDMI")};
    for (const char* name : {"Default", "gone", ""}) {
        m_engine.SelectedDevice = 1;
        m_audio.SetAudioDevice(QString::fromUtf8(name));
        EXPECT_EQ(m_engine.SelectedDevice, 0);
        EXPECT_EQ(m_audio.AudioDevice, QStringLiteral("Default"));
    }
}

TEST_F(AudioControlTest, TheDevicesAreNamedInTheOrderOfTheEngine)
{
    m_engine.Devices = {QStringLiteral("Default"), QStringLiteral("HDMI")};
    EXPECT_EQ(m_audio.DeviceNames(),
              (QStringList{QStringLiteral("Default"), QStringLiteral("HDMI")}));
    m_engine.Devices.clear();
    EXPECT_EQ(m_audio.DeviceNames(), QStringList());
}

TEST_F(AudioControlTest, ToggleDeviceSaveTakesTheButtonsState)
{
    m_audio.ToggleDeviceSave(true);
    EXPECT_TRUE(m_audio.AudioSave);
    m_audio.ToggleDeviceSave(false);
    EXPECT_FALSE(m_audio.AudioSave);
}

TEST_F(AudioControlTest, TheWheelStartsOnTheVolume)
{
    EXPECT_EQ(m_audio.WheelType, WheelMode::Volume);
}

TEST_F(AudioControlTest, SetWheelTypeSendsTheCurrentValueThroughItsSetter)
{
    m_engine.Balance = 2.5F;
    m_engine.Pitch = 3;
    m_engine.Volume = 79.9F;
    m_engine.Tempo = 12.5F;
    for (std::int16_t number = 1; number <= 5; ++number) {
        m_audio.SetWheelType(WheelMode{number});
        EXPECT_EQ(m_audio.WheelType, WheelMode{number});
    }
    EXPECT_THAT(m_host.Statuses, ElementsAre("Balance: +2", "Key / Pitch: +3", "Track Position",
                                             "Volume: 79%", "Speed: +12.5%"));
    EXPECT_EQ(m_engine.Balance, 2);
    EXPECT_EQ(m_engine.Volume, 79);
    EXPECT_EQ(m_engine.Tempo, 12.5F);
}

TEST_F(AudioControlTest, OtherWheelTypesAreStoredAndDoNothing)
{
    for (const std::int16_t number : std::to_array<std::int16_t>({0, 6, -1, 32767})) {
        m_audio.SetWheelType(WheelMode{number});
        EXPECT_EQ(m_audio.WheelType, WheelMode{number});
    }
    EXPECT_THAT(m_host.Statuses, IsEmpty());
    EXPECT_THAT(m_engine.Log, IsEmpty());
}

} // namespace
} // namespace lantern
