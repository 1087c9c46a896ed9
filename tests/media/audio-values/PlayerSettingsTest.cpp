// SPDX-License-Identifier: GPL-3.0-or-later
#include "PlayerSettings.h"
#include "AudioControl.h"
#include "FakeAudioEngine.h"
#include "PathText.h"
#include "RecordingAudioHost.h"
#include "Track.h"
#include "clsINI.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace lantern {
namespace {

class NoMessages : public FileErrorHost {
public:
    void ShowFileError(const QString&, const QString&, const QString&) override { FAIL(); }
};

class PlayerSettingsTest : public ::testing::Test {
protected:
    PlayerSettingsTest() { m_store.LoadSettings(kPlayerSection.toString()); }

    PlayerSettings ReadWith(const char16_t* key, const char16_t* value)
    {
        m_store.SetSetting(QString::fromUtf16(key), QString::fromUtf16(value));
        return ReadPlayerSettings(m_store);
    }
    QString Stored(const char16_t* key) const
    {
        return m_store.GetSetting(QString::fromUtf16(key), QStringLiteral("-"));
    }

    QTemporaryDir m_folder;
    NoMessages m_messages;
    clsINI m_store{m_folder.path() + u'/', m_messages};
};

TEST_F(PlayerSettingsTest, AFirstStartHasItsDefaults)
{
    const PlayerSettings expected = {.LastPlayed = {},
                                     .Zoom = 2,
                                     .Balance = 0,
                                     .KeyPitch = 0,
                                     .Speed = 0,
                                     .Volume = 100,
                                     .CustomBalance = -50,
                                     .CustomKeyPitch = -2,
                                     .CustomSpeed = 20,
                                     .CustomVolume = 100,
                                     .AudioSave = false,
                                     .AudioDevice = {}};
    EXPECT_EQ(ReadPlayerSettings(m_store), expected);
}

TEST_F(PlayerSettingsTest, TheLastTracksNameSurvivesWhateverItsBytes)
{
    for (const QByteArray name :
         {"/m/My Song.cdg", "/m/Caf\xE9.cdg", "/m/a\tb.cdg", "/m/a\r\nzoom\t5.cdg",
          "/m/\t\r\n\xFF \xC3\xA9.cdg", "/m/a\rb\nc.cdg"}) {
        RememberLastPlayed(m_store, TextFromNative(name));
        m_store.SaveSettings();
        clsINI next(m_folder.path() + u'/', m_messages);
        next.LoadSettings(kPlayerSection.toString());
        EXPECT_EQ(NativeFromText(ReadPlayerSettings(next).LastPlayed), name);
        EXPECT_EQ(ReadPlayerSettings(next).Zoom, 2);
    }
}

TEST_F(PlayerSettingsTest, AnOrdinaryNameIsTheSettingAsItIs)
{
    RememberLastPlayed(m_store, TextFromNative("/m/Caf\xE9 \xC3\xA9 \" 100%.cdg"));
    EXPECT_EQ(Stored(u"LastPlayed"), TextFromNative("/m/Caf\xE9 \xC3\xA9 \" 100%.cdg"));
    RememberLastPlayed(m_store, QString());
    EXPECT_EQ(Stored(u"LastPlayed"), QString());
}

// As earlier versions wrote it, and later ones have to read it.
TEST_F(PlayerSettingsTest, WhatEndsAValueIsStoredAsACharacterThatNoNameHolds)
{
    RememberLastPlayed(m_store, QStringLiteral("/m/a\tb\r\n.cdg"));
    const char16_t stored[] = {0xDC09, u'b', 0xDC0D, 0xDC0A, 0};
    EXPECT_EQ(Stored(u"LastPlayed"),
              QStringLiteral("/m/a") + QString::fromUtf16(stored) + QStringLiteral(".cdg"));
}

TEST_F(PlayerSettingsTest, AZoomOutOfRangeBecomesTwo)
{
    EXPECT_EQ(ReadWith(u"Zoom", u"6").Zoom, 2);
    EXPECT_EQ(ReadWith(u"Zoom", u"-1").Zoom, 2);
    EXPECT_EQ(ReadWith(u"Zoom", u"0").Zoom, 0);
    EXPECT_EQ(ReadWith(u"Zoom", u"5").Zoom, 5);
}

TEST_F(PlayerSettingsTest, WhatIsNoNumberBecomesTheDefault)
{
    for (const auto* text : {u"", u"x", u"3x", u"nan", u"inf", u"-inf", u"1e999", u"0x3", u"1,5",
                             u"3\n4", u"99999999999"})
        EXPECT_EQ(ReadWith(u"Zoom", text).Zoom, 2) << QString::fromUtf16(text).toStdString();
    for (const auto* text : {u"", u"x", u"nan", u"inf", u"1e39"})
        EXPECT_EQ(ReadWith(u"Custom_Speed", text).CustomSpeed, 20.0F);
    EXPECT_EQ(ReadWith(u"Volume", u"loud").Volume, 100.0F);
}

TEST_F(PlayerSettingsTest, NumbersAreReadAsNumbers)
{
    EXPECT_EQ(ReadWith(u"Zoom", u" 3 ").Zoom, 3);
    EXPECT_EQ(ReadWith(u"Zoom", u"2.5").Zoom, 2) << "ties to the even neighbour";
    EXPECT_EQ(ReadWith(u"Zoom", u"3.5").Zoom, 4);
    EXPECT_EQ(ReadWith(u"KeyPitch", u"-7").KeyPitch, -7);
    EXPECT_EQ(ReadWith(u"Custom_KeyPitch", u"2147483647").CustomKeyPitch, 2147483647);
    EXPECT_EQ(ReadWith(u"Speed", u"12.5").Speed, 12.5F);
    EXPECT_EQ(ReadWith(u"Custom_Volume", u"1e3").CustomVolume, 1000.0F) << "unchecked";
}

TEST_F(PlayerSettingsTest, TheDeviceCountsOnlyWhereItIsKept)
{
    m_store.SetSetting(QStringLiteral("AudioDevice"), QStringLiteral("Headset"));
    EXPECT_EQ(ReadPlayerSettings(m_store).AudioDevice, QString());
    const PlayerSettings kept = ReadWith(u"AudioSave", u"anything");
    EXPECT_TRUE(kept.AudioSave);
    EXPECT_EQ(kept.AudioDevice, QStringLiteral("Headset"));
}

class LoadedPlayerTest : public PlayerSettingsTest {
protected:
    void Load() { LoadPlayerSettings(m_store, m_track, m_zoomStep, m_audio); }
    void Save() { SaveSettingsToStore(m_store, 4, m_engine, m_audio); }

    FakeAudioEngine m_engine;
    RecordingAudioHost m_windows;
    AudioControl m_audio{m_engine, m_windows};
    Track m_track;
    std::int32_t m_zoomStep = -1;
};

TEST_F(LoadedPlayerTest, WhatWasStoredGoesToItsPlaces)
{
    const std::pair<const char16_t*, const char16_t*> stored[] = {
        {u"LastPlayed", u"/m/a.cdg"}, {u"Zoom", u"0"},
        {u"Balance", u"-20"},         {u"KeyPitch", u"3"},
        {u"Speed", u"12.5"},          {u"Volume", u"70"},
        {u"Custom_Balance", u"10.5"}, {u"Custom_KeyPitch", u"4"},
        {u"Custom_Speed", u"-5"},     {u"Custom_Volume", u"60"},
        {u"AudioSave", u"Y"},         {u"AudioDevice", u"Headset"}};
    for (const auto& [key, value] : stored)
        m_store.SetSetting(QString::fromUtf16(key), QString::fromUtf16(value));
    Load();
    EXPECT_EQ(m_track.CurrentMedia, QStringLiteral("/m/a.cdg"));
    EXPECT_EQ(m_zoomStep, 0);
    EXPECT_EQ(m_engine.Balance, -20.0F);
    EXPECT_EQ(m_engine.Pitch, 3);
    EXPECT_EQ(m_engine.Tempo, 12.5F);
    EXPECT_EQ(m_engine.Volume, 70.0F);
    EXPECT_EQ(m_audio.CustomBalance, 10.5F);
    EXPECT_EQ(m_audio.CustomKeyPitch, 4);
    EXPECT_EQ(m_audio.CustomSpeed, -5.0F);
    EXPECT_EQ(m_audio.CustomVolume, 60.0F);
    EXPECT_TRUE(m_audio.AudioSave);
    EXPECT_EQ(m_audio.AudioDevice, QStringLiteral("Headset"));
    EXPECT_EQ(m_windows.Statuses.size(), 4U) << "balance, key, speed and volume are shown";
    EXPECT_EQ(m_engine.SelectedDevice, 0) << "the device is chosen later";
}

TEST_F(LoadedPlayerTest, AVolumeBeyondTheRangeIsSetAndSavedAsTheLimit)
{
    m_store.SetSetting(QStringLiteral("Volume"), QStringLiteral("250"));
    Load();
    EXPECT_EQ(m_engine.Volume, 100.0F);
    Save();
    EXPECT_EQ(Stored(u"Volume"), QStringLiteral("100"));
}

TEST_F(LoadedPlayerTest, ABrokenSpeedIsRestoredAndSavedRoundedToEven)
{
    m_store.SetSetting(QStringLiteral("Speed"), QStringLiteral("12.5"));
    Load();
    EXPECT_EQ(m_engine.Tempo, 12.5F);
    Save();
    EXPECT_EQ(Stored(u"Speed"), QStringLiteral("12"));
}

TEST_F(LoadedPlayerTest, TheStoreTakesWhatThePlayerHasComeTo)
{
    Load();
    m_engine.Balance = -0.4F;
    m_engine.Pitch = -3;
    m_engine.Tempo = 13.5F;
    m_engine.Volume = 55.2F;
    m_audio.CustomBalance = 12.25F;
    m_audio.CustomKeyPitch = 5;
    m_audio.CustomSpeed = -90;
    m_audio.CustomVolume = 33;
    m_store.SetSetting(kLastPlayedKey.toString(), QStringLiteral("/m/b.cdg"));
    Save();

    clsINI again(m_folder.path() + u'/', m_messages);
    again.LoadSettings(kPlayerSection.toString());
    const auto loaded = [&](const char16_t* key) {
        return again.GetSetting(QString::fromUtf16(key), QStringLiteral("-"));
    };
    EXPECT_EQ(loaded(u"LastPlayed"), QStringLiteral("/m/b.cdg"));
    EXPECT_EQ(loaded(u"Zoom"), QStringLiteral("4"));
    EXPECT_EQ(loaded(u"Balance"), QStringLiteral("0"));
    EXPECT_EQ(loaded(u"KeyPitch"), QStringLiteral("-3"));
    EXPECT_EQ(loaded(u"Speed"), QStringLiteral("14"));
    EXPECT_EQ(loaded(u"Volume"), QStringLiteral("55"));
    EXPECT_EQ(loaded(u"Custom_Balance"), QStringLiteral("12.25"));
    EXPECT_EQ(loaded(u"Custom_KeyPitch"), QStringLiteral("5"));
    EXPECT_EQ(loaded(u"Custom_Speed"), QStringLiteral("-90"));
    EXPECT_EQ(loaded(u"Custom_Volume"), QStringLiteral("33"));
    EXPECT_EQ(loaded(u"AudioSave"), QStringLiteral("-"));
}

TEST_F(LoadedPlayerTest, ADeviceThatIsNotKeptLeavesTheFile)
{
    m_store.SetSetting(QStringLiteral("AudioDevice"), QStringLiteral("Headset"));
    Load();
    EXPECT_EQ(m_audio.AudioDevice, QString());
    m_audio.AudioDevice = QStringLiteral("Speakers");
    Save();
    EXPECT_EQ(Stored(u"AudioDevice"), QString());
    m_audio.AudioSave = true;
    Save();
    EXPECT_EQ(Stored(u"AudioDevice"), QStringLiteral("Speakers"));
    EXPECT_EQ(Stored(u"AudioSave"), QStringLiteral("Y"));
}

TEST_F(LoadedPlayerTest, LastPlayedIsNotTouchedAtExit)
{
    m_store.SetSetting(kLastPlayedKey.toString(), QStringLiteral("/m/a.cdg"));
    Load();
    m_track.CurrentMedia = QStringLiteral("/m/broken.cdg");
    Save();
    EXPECT_EQ(Stored(u"LastPlayed"), QStringLiteral("/m/a.cdg"));
}

} // namespace
} // namespace lantern
