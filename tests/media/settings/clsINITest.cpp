// SPDX-License-Identifier: GPL-3.0-or-later
#include "clsINI.h"
#include "PathText.h"

#include <QTemporaryDir>

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <random>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace lantern {
namespace {

const QString kPlayer = QStringLiteral("player");

class Messages : public FileErrorHost {
public:
    void ShowFileError(const QString& detail, const QString& head, const QString& title) override
    {
        ++count;
        lastDetail = detail;
        lastHead = head;
        lastTitle = title;
    }

    int count = 0;
    QString lastDetail, lastHead, lastTitle;
};

class clsINITest : public ::testing::Test {
protected:
    clsINITest() { m_settings.LoadSettings(kPlayer); }

    QString Folder() const { return m_folder.path() + u'/'; }
    QByteArray NativePath(const char* name) const { return Folder().toUtf8() + name; }
    void Make(const char* name, const std::string& bytes) const
    {
        std::ofstream(NativePath(name).constData(), std::ios::binary) << bytes;
    }
    std::string Written(const char* name = "data_player.ini") const
    {
        std::ifstream file(NativePath(name).constData(), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    // What a new start reads for the key; "-" stands for a missing one.
    QString Loaded(const char16_t* key)
    {
        clsINI settings(Folder(), m_messages);
        settings.LoadSettings(kPlayer);
        return settings.GetSetting(QString::fromUtf16(key), QStringLiteral("-"));
    }
    QString Get(const char16_t* key) const
    {
        return m_settings.GetSetting(QString::fromUtf16(key), QStringLiteral("-"));
    }
    void Set(const char16_t* key, const char16_t* value)
    {
        m_settings.SetSetting(QString::fromUtf16(key), QString::fromUtf16(value));
    }

    QTemporaryDir m_folder;
    Messages m_messages;
    clsINI m_settings{Folder(), m_messages};
};

TEST_F(clsINITest, AKeyCountsTrimmedAndInLowerCase)
{
    Set(u"Zoom", u"1");
    QString key = QStringLiteral(" ZOOM ");
    m_settings.SetSetting(key, QStringLiteral("2"));
    EXPECT_EQ(key, QStringLiteral("zoom"));
    EXPECT_EQ(Get(u"zOOm  "), QStringLiteral("2"));
    m_settings.SaveSettings();
    EXPECT_EQ(Written(), "zoom\t2\r\n");
}

TEST_F(clsINITest, LinesStandInTheOrderOfTheirKeys)
{
    Set(u"b", u"1");
    Set(u"c", u"2");
    Set(u"a", u"3");
    Set(u"é", u"4");
    Set(u"_", u"5");
    m_settings.SaveSettings();
    EXPECT_EQ(Written(), "_\t5\r\na\t3\r\nb\t1\r\nc\t2\r\n\xC3\xA9\t4\r\n");
}

TEST_F(clsINITest, AnEmptyValueIsGoneAfterASave)
{
    Set(u"a", u"");
    Set(u"b", u"x");
    EXPECT_EQ(Get(u"a"), QString());
    m_settings.SaveSettings();
    EXPECT_EQ(Loaded(u"a"), QStringLiteral("-"));
    EXPECT_EQ(Loaded(u"b"), QStringLiteral("x"));
}

TEST_F(clsINITest, AnEmptyKeyIsNotWritten)
{
    Set(u"  ", u"x");
    Set(u"a", u"y");
    m_settings.SaveSettings();
    EXPECT_EQ(Written(), "a\ty\r\n");
}

TEST_F(clsINITest, ATabCutsTheValueAtTheNextLoad)
{
    Set(u"a", u"x\ty");
    EXPECT_EQ(Get(u"a"), QStringLiteral("x\ty"));
    m_settings.SaveSettings();
    EXPECT_EQ(Loaded(u"a"), QStringLiteral("x"));
}

TEST_F(clsINITest, ALineEndInAValueMakesNoSettingOfItsOwn)
{
    Set(u"a", u"x\r\nzoom\t5");
    m_settings.SaveSettings();
    EXPECT_EQ(Written(), "a\tx\r\n");
}

TEST_F(clsINITest, ALineWithoutATabIsAnEmptyValue)
{
    Make("data_player.ini", "alone\r\nb\t1\t2\t3\r\n");
    EXPECT_EQ(Loaded(u"alone"), QString());
    EXPECT_EQ(Loaded(u"b"), QStringLiteral("1"));
    EXPECT_EQ(Loaded(u""), QString()) << "the empty last line enters an empty key";
}

TEST_F(clsINITest, AnyEncodingIsRead)
{
    Make("data_player.ini", std::string("\xFF\xFE"
                                        "a\0\t\0\xE9\0",
                                        8));
    EXPECT_EQ(Loaded(u"a"), QStringLiteral(u"é"));
    Make("data_player.ini", "a\t\xE9\r\n");
    EXPECT_EQ(Loaded(u"a"), QStringLiteral(u"é"));
    Make("data_player.ini", "\xEF\xBB\xBF"
                            "a\t\xC3\xA9\r\n");
    EXPECT_EQ(Loaded(u"a"), QStringLiteral(u"é"));
}

TEST_F(clsINITest, LoadingReplacesWhatWasThere)
{
    Set(u"a", u"1");
    Make("data_other.ini", "b\t2\r\n");
    m_settings.LoadSettings(QStringLiteral("other"));
    EXPECT_EQ(Get(u"a"), QStringLiteral("-"));
    EXPECT_EQ(Get(u"b"), QStringLiteral("2"));
    m_settings.SaveSettings();
    EXPECT_EQ(Written("data_other.ini"), "b\t2\r\n");
}

TEST_F(clsINITest, TheOlderFileIsImportedWithoutTheNewOne)
{
    Make("ll.ini", "[other]\r\na=1\r\n[PLAYER]\r\nb=2=3\r\nZoom=4\r\n[last]\r\nc=5");
    EXPECT_EQ(Loaded(u"a"), QStringLiteral("-"));
    EXPECT_EQ(Loaded(u"b"), QStringLiteral("2"));
    EXPECT_EQ(Loaded(u"zoom"), QStringLiteral("4"));
    EXPECT_EQ(Loaded(u"c"), QStringLiteral("-"));
}

TEST_F(clsINITest, TheOlderFileIsNotLookedAtBesideTheNewOne)
{
    Make("ll.ini", "[player]\r\na=1\r\n");
    Make("data_player.ini", "b\t2\r\n");
    EXPECT_EQ(Loaded(u"a"), QStringLiteral("-"));
    Make("data_player.ini", "");
    EXPECT_EQ(Loaded(u"a"), QStringLiteral("1")) << "an empty file is none";
    Make("data_player.ini", "\r\n");
    EXPECT_EQ(Loaded(u"a"), QStringLiteral("-")) << "an empty line is a setting";
}

TEST_F(clsINITest, ASectionIsNamedByItsWholeLine)
{
    Make("ll.ini", "a=0\r\n[player] \r\na=1\r\n[player]=x\r\nb=2\r\n[players]\r\nc=3\r\n");
    EXPECT_EQ(Loaded(u"a"), QStringLiteral("-"));
    EXPECT_EQ(Loaded(u"b"), QStringLiteral("2"));
    EXPECT_EQ(Loaded(u"c"), QStringLiteral("-"));
}

TEST_F(clsINITest, AFileOfNothingButAMarkCountsAsMissing)
{
    Make("data_player.ini", "\xEF\xBB\xBF");
    Make("ll.ini", "[player]\r\na=1\r\n");
    EXPECT_EQ(Loaded(u"a"), QStringLiteral("1"));
    Make("ll.ini", "\xEF\xBB\xBF");
    EXPECT_EQ(Loaded(u"a"), QStringLiteral("-"));
}

TEST_F(clsINITest, AnEndlessFileIsTakenUpToABound)
{
    std::string lines;
    for (std::size_t i = 0; i < clsINI::kMostSettings + 1000; ++i)
        lines += std::to_string(1000000 + i) + "\tx\r\n";
    Make("data_player.ini", lines);
    EXPECT_EQ(Loaded(u"1065535"), QStringLiteral("x"));
    EXPECT_EQ(Loaded(u"1065536"), QStringLiteral("-"));
}

TEST_F(clsINITest, ANameThatIsNoTextComesBackAsTheSameBytes)
{
    for (const QByteArray name :
         {"/m/Caf\xE9.cdg", "/m/\xFF\xFE\x80.zip", "/m/\xC3\xA9 \xC3.cdg", "\xED\xA0\x80"}) {
        m_settings.SetSetting(QStringLiteral("LastPlayed"), TextFromNative(name));
        m_settings.SetSetting(QStringLiteral("other"), QStringLiteral(u"é漢🎤"));
        m_settings.SaveSettings();
        EXPECT_EQ(NativeFromText(Loaded(u"LastPlayed")), name) << Written();
        EXPECT_EQ(Loaded(u"other"), QStringLiteral(u"é漢🎤")) << "the file is still UTF-8";
    }
}

TEST_F(clsINITest, EachTextOfSixteenBitUnitsComesBackAsItWas)
{
    std::mt19937 random(7);
    const std::u16string units = u"aE9D\u00E9\uFDD0\uFDD1\xD83C\xDFA4\xDCE9\xDC80\xFEFF\xFFFD ";
    for (int round = 0; round < 300; ++round) {
        QString text;
        for (std::size_t i = random() % 12 + 1; i > 0; --i)
            text += QChar(units[random() % units.size()]);
        m_settings.SetSetting(QStringLiteral("a"), text);
        m_settings.SaveSettings();
        ASSERT_EQ(Loaded(u"a"), text) << Written();
    }
}

// What is written for a unit that is no character: a mark that no text holds, and its digits.
TEST_F(clsINITest, OrdinaryTextIsWrittenAsItIs)
{
    m_settings.SetSetting(QStringLiteral("a"), QStringLiteral(u"100% é\\u00E9 %E9 🎤 \uFEFF"));
    m_settings.SetSetting(QStringLiteral("b"), TextFromNative("caf\xE9"));
    m_settings.SaveSettings();
    EXPECT_EQ(Written(), "a\t100% \xC3\xA9\\u00E9 %E9 \xF0\x9F\x8E\xA4 \xEF\xBB\xBF\r\n"
                         "b\tcaf\xEF\xB7\x90"
                         "DCE9\r\n");
}

TEST_F(clsINITest, AMarkWithoutItsDigitsIsACharacterLikeAnyOther)
{
    Make("data_player.ini", "a\tx\xEF\xB7\x90\r\nb\t\xEF\xB7\x90"
                            "DCE\r\nc\t\xEF\xB7\x90"
                            "DCEg!\r\n");
    EXPECT_EQ(Loaded(u"a"), QStringLiteral(u"x\uFDD0"));
    EXPECT_EQ(Loaded(u"b"), QStringLiteral(u"\uFDD0DCE"));
    EXPECT_EQ(Loaded(u"c"), QStringLiteral(u"\uFDD0DCEg!"));
}

TEST_F(clsINITest, PathsBelowTheFolderAreStoredRelative)
{
    m_settings.SetSettingRelative(QStringLiteral("below"), Folder() + QStringLiteral("sub/a.cdg"));
    m_settings.SetSettingRelative(QStringLiteral("away"), QStringLiteral("/music/a.cdg"));
    m_settings.SetSettingRelative(QStringLiteral("none"), QString());
    EXPECT_EQ(Get(u"below"), QStringLiteral("sub/a.cdg"));
    EXPECT_EQ(Get(u"away"), QStringLiteral("/music/a.cdg"));
    const auto relative = [&](const char16_t* key) {
        return m_settings.GetSettingRelative(QString::fromUtf16(key), QString());
    };
    EXPECT_EQ(relative(u"below"), Folder() + QStringLiteral("sub/a.cdg"));
    EXPECT_EQ(relative(u"away"), QStringLiteral("/music/a.cdg"));
    EXPECT_EQ(relative(u"none"), QString());
    EXPECT_EQ(relative(u"missing"), QString());
}

TEST_F(clsINITest, AFolderInPlaceOfTheFileIsToldAndTheProgramGoesOn)
{
    mkdir(NativePath("data_player.ini").constData(), 0700);
    EXPECT_EQ(Loaded(u"a"), QStringLiteral("-"));
    Set(u"a", u"1");
    m_settings.SaveSettings();
    EXPECT_EQ(m_messages.count, 1);
    EXPECT_EQ(m_messages.lastTitle, QStringLiteral("Cannot Write to Settings File"));
    EXPECT_EQ(m_messages.lastHead, Folder() + QStringLiteral("data_player.ini"));
    EXPECT_EQ(m_messages.lastDetail, QStringLiteral("Is a directory"));
    EXPECT_EQ(Get(u"a"), QStringLiteral("1"));
}

TEST_F(clsINITest, AFullDiskIsTold)
{
    ASSERT_EQ(symlink("/dev/full", NativePath("data_player.ini").constData()), 0);
    Set(u"a", u"1");
    m_settings.SaveSettings();
    EXPECT_EQ(m_messages.count, 1);
    EXPECT_EQ(m_messages.lastDetail, QStringLiteral("No space left on device"));
}

TEST_F(clsINITest, AMissingFolderIsTold)
{
    clsINI settings(Folder() + QStringLiteral("none/"), m_messages);
    settings.LoadSettings(kPlayer);
    settings.SetSetting(QStringLiteral("a"), QStringLiteral("1"));
    settings.SaveSettings();
    EXPECT_EQ(m_messages.count, 1);
}

TEST_F(clsINITest, WithNothingToWriteTheFileIsEmpty)
{
    Make("data_player.ini", "a\t1\r\n");
    m_settings.SaveSettings();
    EXPECT_EQ(Written(), "");
    EXPECT_EQ(m_messages.count, 0);
}

TEST_F(clsINITest, AFolderWhoseNameIsNoTextHoldsSettings)
{
    mkdir(NativePath("r\xE9").constData(), 0700);
    clsINI settings(Folder() + TextFromNative("r\xE9/"), m_messages);
    settings.LoadSettings(kPlayer);
    settings.SetSetting(QStringLiteral("a"), QStringLiteral("1"));
    settings.SaveSettings();
    EXPECT_EQ(Written("r\xE9/data_player.ini"), "a\t1\r\n");
    unlink(NativePath("r\xE9/data_player.ini").constData());
    rmdir(NativePath("r\xE9").constData());
}

TEST_F(clsINITest, SavingTwiceIsTheSameAsOnce)
{
    Set(u"a", u"1");
    m_settings.SaveSettings();
    m_settings.SaveSettings();
    EXPECT_EQ(Written(), "a\t1\r\n");
    EXPECT_EQ(m_messages.count, 0);
}

} // namespace
} // namespace lantern
