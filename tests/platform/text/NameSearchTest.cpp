// SPDX-License-Identifier: GPL-3.0-or-later
#include "NameSearch.h"

#include "Process.h"

#include <array>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace lantern {
namespace {

constexpr std::array<QStringView, 3> kExtensions = {u"mp3", u"wav", u"ogg"};

class NameSearch : public ::testing::Test {
protected:
    QString In(const char* name) const
    {
        return TextFromNative((m_folder / name).native().c_str());
    }
    void Make(const char* name) const { test::WriteFile(m_folder / name, "x"); }
    void MakeFolder(const char* name) const { std::filesystem::create_directory(m_folder / name); }
    // The name of what is found, by its bytes.
    std::string Found(const char* stem) const
    {
        const std::filesystem::path path =
            NativeFromText(FindFile(In(stem), kExtensions)).toStdString();
        return path.filename();
    }

    const test::ScratchFolder m_folder;
};

TEST_F(NameSearch, AnythingButAFolderIsAFile)
{
    Make("file");
    MakeFolder("folder");
    std::filesystem::create_symlink("file", m_folder / "to file");
    std::filesystem::create_directory_symlink("folder", m_folder / "to folder");
    std::filesystem::create_symlink("nowhere", m_folder / "to nowhere");
    ASSERT_EQ(mkfifo((m_folder / "fifo").c_str(), 0600), 0);
    for (const char* name : {"file", "to file", "fifo"})
        EXPECT_TRUE(NamesFile(In(name))) << name;
    for (const char* name : {"folder", "to folder", "to nowhere", "File", "file/", "none", ""})
        EXPECT_FALSE(NamesFile(In(name))) << name;
    EXPECT_FALSE(NamesFile(QString()));
    EXPECT_FALSE(NamesFile(In("file") + QChar(u'\0') + u'x'));
}

TEST_F(NameSearch, TextThatNamesAFileIsItsPath)
{
    for (const char* name : {"plain", " blanks ", "\"quoted\"", "in\"side"}) {
        Make(name);
        EXPECT_EQ(PathInText(In(name)), In(name));
    }
}

TEST_F(NameSearch, OfOtherTextQuotesAndOuterBlanksAreNotOfThePath)
{
    Make("a b");
    MakeFolder("\"folder\"");
    EXPECT_EQ(PathInText(QStringLiteral("  \"") + In("a b") + QStringLiteral("\" ")), In("a b"));
    EXPECT_EQ(PathInText(In("\"folder\"")), In("folder"));
    EXPECT_EQ(PathInText(QStringLiteral("\t\" a\"b \" ")), QStringLiteral("\t ab"));
    EXPECT_EQ(PathInText(QStringLiteral(" \" \" ")), QString());
}

TEST_F(NameSearch, TheFirstOfTheExtensionsIsFound)
{
    EXPECT_EQ(Found("a"), "");
    Make("a.ogg");
    EXPECT_EQ(Found("a"), "a.ogg");
    Make("a.wav");
    EXPECT_EQ(Found("a"), "a.wav");
    Make("a.mp3");
    EXPECT_EQ(Found("a"), "a.mp3");
    EXPECT_EQ(FindFile(In("a"), {}), QString());
}

TEST_F(NameSearch, AnEarlierExtensionIsFoundInWhateverLetters)
{
    Make("Song.ogg");
    Make("sonG.Wav");
    EXPECT_EQ(Found("Song"), "sonG.Wav");
    Make("SONG.wav");
    EXPECT_EQ(Found("Song"), "SONG.wav") << "the first in byte order";
    Make("song.WAV");
    EXPECT_EQ(Found("Song"), "SONG.wav");
    Make("Song.wav");
    EXPECT_EQ(Found("Song"), "Song.wav") << "the name as it is";
    Make("song.MP3");
    EXPECT_EQ(Found("Song"), "song.MP3");
}

TEST_F(NameSearch, NoFolderAndNoOtherNameIsFound)
{
    MakeFolder("a.mp3");
    MakeFolder("A.WAV");
    for (const char* name : {"a", "mp3", ".MP3", "amp3", "a.mp", "a.mp33", "a.b.mp3", "b.a.mp3"})
        Make(name);
    EXPECT_EQ(Found("a"), "");
    EXPECT_EQ(Found("a.b"), "a.b.mp3");
    EXPECT_EQ(Found(""), ".MP3");
    EXPECT_EQ(FindFile(In("a.b") + QChar(u'\0'), kExtensions), QString());
    EXPECT_EQ(Found("none/a"), "");
}

TEST_F(NameSearch, ANameWithoutAFolderLiesInTheCurrentOne)
{
    Make("Song.Mp3");
    Make("exact.wav");
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(m_folder.Path());
    EXPECT_EQ(ResolveName(QStringLiteral("song.mp3")), QStringLiteral("Song.Mp3"));
    EXPECT_EQ(FindFile(QStringLiteral("song"), kExtensions), QStringLiteral("Song.Mp3"));
    EXPECT_EQ(FindFile(QStringLiteral("exact"), kExtensions), QStringLiteral("exact.wav"));
    EXPECT_EQ(PathInText(QStringLiteral("\"Song.Mp3\"")), QStringLiteral("Song.Mp3"));
    std::filesystem::current_path(before);
}

} // namespace
} // namespace lantern
