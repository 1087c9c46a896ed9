// SPDX-License-Identifier: GPL-3.0-or-later
#include "StageSettings.h"

#include "StageFolder.h"
#include "clsINI.h"

#include <gtest/gtest.h>

#include <random>

namespace lantern {
namespace {

class NoComplaint : public FileErrorHost {
public:
    void ShowFileError(const QString& detail, const QString&, const QString&) override
    {
        ADD_FAILURE() << detail.toStdString();
    }
};

class StageSettingsTest : public ::testing::Test {
protected:
    StageSettings Read(const std::string& file)
    {
        folder.Write(file);
        clsINI store(folder.Path(), host);
        store.LoadSettings(kStageSection.toString());
        return ReadStageSettings(store);
    }
    // What a file becomes by a change.
    std::string Rewritten(const std::string& file, const StageSettings& values)
    {
        folder.Write(file);
        clsINI store(folder.Path(), host);
        store.LoadSettings(kStageSection.toString());
        WriteStageSettings(store, values);
        store.SaveSettings();
        return folder.Written();
    }

    StageFolder folder;
    NoComplaint host;
};

TEST_F(StageSettingsTest, WithoutAFileNothingIsChanged)
{
    EXPECT_EQ(Read(""), StageSettings());
    EXPECT_EQ(StageSettings().voiceGuide, VoiceGuide::Both);
}

TEST_F(StageSettingsTest, EachVoiceGuideComesBack)
{
    for (const VoiceGuide guide : {VoiceGuide::Both, VoiceGuide::Left, VoiceGuide::Right}) {
        StageSettings values;
        values.voiceGuide = guide;
        EXPECT_EQ(Read(Rewritten("", values)), values);
    }
    StageSettings right;
    right.voiceGuide = VoiceGuide::Right;
    EXPECT_EQ(Rewritten("voiceguide\tleft\r\n", right), "voiceguide\tright\r\n");
    EXPECT_EQ(Rewritten("voiceguide\tleft\r\n", StageSettings()), "")
        << "what changes nothing leaves no key";
}

TEST_F(StageSettingsTest, EachSwitchComesBackByItself)
{
    StageSettings tunes;
    tunes.remembersTunes = true;
    EXPECT_EQ(Rewritten("", tunes), "remembertunes\tY\r\n");
    EXPECT_EQ(Read("remembertunes\tY\r\n"), tunes);
    StageSettings loudness;
    loudness.evensLoudness = true;
    EXPECT_EQ(Rewritten("remembertunes\tY\r\n", loudness), "evenloudness\tY\r\n");
    EXPECT_EQ(Read("evenloudness\ty\r\n"), loudness);
    EXPECT_EQ(Read("evenloudness\tYes\r\nremembertunes\t1\r\n"), StageSettings());
}

TEST_F(StageSettingsTest, AChannelThatIsNoneIsBoth)
{
    for (const char* text : {"middle", "1", "LEFT RIGHT", "\t", "", "left\xFF", "leftright"})
        EXPECT_EQ(Read(std::string("voiceguide\t") + text + "\r\n").voiceGuide, VoiceGuide::Both)
            << text;
    EXPECT_EQ(Read("VOICEGUIDE\tLeft\r\n").voiceGuide, VoiceGuide::Left) << "whatever the case";
}

TEST_F(StageSettingsTest, SmoothLettersComeBack)
{
    StageSettings smooth;
    smooth.smoothLetters = true;
    EXPECT_EQ(Read(Rewritten("", smooth)), smooth);
    EXPECT_EQ(Rewritten("smoothletters\tY\r\n", StageSettings()), "");
    EXPECT_FALSE(Read("smoothletters\tperhaps\r\n").smoothLetters);
}

TEST_F(StageSettingsTest, TheSingersScreenComesBackWhateverItIsCalled)
{
    StageSettings values;
    values.singerScreen = {QStringLiteral("HDMI-1"), QStringLiteral("Acme & Co., Ltd."),
                           QStringLiteral("TV|55% = \u6F22"), QStringLiteral("007")};
    EXPECT_EQ(Read(Rewritten("", values)), values);
    values.singerScreen = {QStringLiteral("second"), {}, {}, {}};
    EXPECT_EQ(Rewritten("", values), "singerscreen\tsecond|||\r\n");
    EXPECT_EQ(Read("singerscreen\tsecond|||\r\n"), values);
    EXPECT_EQ(Rewritten("singerscreen\tsecond|||\r\n", StageSettings()), "");
}

TEST_F(StageSettingsTest, AScreenThatIsNoneIsOff)
{
    for (const std::string& text :
         {std::string("second"), std::string("a|b|c"), std::string("a|b|c|d|e"), std::string("|||"),
          std::string("a%0Ab|||"), std::string("a%00|||"), std::string(300, 'x') + "|||",
          std::string(200'000, '|')})
        EXPECT_EQ(Read("singerscreen\t" + text + "\r\n"), StageSettings()) << text.substr(0, 40);
    EXPECT_EQ(Read("singerscreen\t%E9|||\r\n").singerScreen.name.size(), 1)
        << "bytes that are no text are a name like any other";
}

TEST_F(StageSettingsTest, EachDeviceHasADelayOfItsOwn)
{
    StageSettings values;
    SetDelay(values, QStringLiteral("alsa_output.hdmi"), 180);
    SetDelay(values, QStringLiteral("bluez_output.AC_80"), -35);
    SetDelay(values, QStringLiteral("named oddly\t=\r\n\u6F22"), 5);
    EXPECT_EQ(Read(Rewritten("", values)), values);
    EXPECT_EQ(DelayOf(values, QStringLiteral("alsa_output.hdmi")), 180);
    EXPECT_EQ(DelayOf(values, QStringLiteral("bluez_output.AC_80")), -35);
    EXPECT_EQ(DelayOf(values, QStringLiteral("named oddly\t=\r\n\u6F22")), 5);
    EXPECT_EQ(DelayOf(values, QStringLiteral("another")), 0);
    SetDelay(values, QStringLiteral("alsa_output.hdmi"), 0);
    EXPECT_EQ(values.delays.size(), 2U);
    EXPECT_EQ(Rewritten("delay.alsa_output.hdmi\t180\r\n", values).find("hdmi"), std::string::npos);
}

TEST_F(StageSettingsTest, ADelayThatIsNoneIsLeftOut)
{
    for (const char* text :
         {"501", "-501", "99999999999999999999", "12.5", "soon", "", "0x10", "nan"})
        EXPECT_TRUE(Read(std::string("delay.hdmi\t") + text + "\r\n").delays.empty()) << text;
    EXPECT_EQ(DelayOf(Read("delay.hdmi\t-500\r\n"), QStringLiteral("hdmi")), -500);
    StageSettings values;
    SetDelay(values, QStringLiteral("hdmi"), 7000);
    EXPECT_EQ(DelayOf(values, QStringLiteral("hdmi")), 500);
    SetDelay(values, QString(), 100);
    EXPECT_EQ(values.delays.size(), 1U) << "without a device there is nothing to remember it for";
}

TEST_F(StageSettingsTest, KeysThatNobodyKnowsStay)
{
    StageSettings left;
    left.voiceGuide = VoiceGuide::Left;
    EXPECT_EQ(Rewritten("curtain\tred\r\n", left), "curtain\tred\r\nvoiceguide\tleft\r\n");
}

TEST_F(StageSettingsTest, AnyBytesGiveSettingsThatComeBack)
{
    std::mt19937 chance(7);
    const std::string pieces[] = {
        "voiceguide",   "\t", "left",     "right",         "\r\n",
        "\n",           "\0", "\xFF\xFE", "delay.",        "-150",
        "999999999999", "Y",  " ",        "remembertunes", "smoothletters"};
    for (int round = 0; round < 300; ++round) {
        std::string file;
        for (int i = 0; i < 40; ++i)
            file += pieces[chance() % std::size(pieces)];
        const StageSettings values = Read(file);
        EXPECT_EQ(Read(Rewritten(file, values)), values) << file;
    }
}

} // namespace
} // namespace lantern
