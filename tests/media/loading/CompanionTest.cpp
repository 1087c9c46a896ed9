// SPDX-License-Identifier: GPL-3.0-or-later

// What is found beside a file, in folders that make it hard.
#include "FolderReads.h"
#include "MediaLoaderFixture.h"

#include <gmock/gmock.h>

namespace lantern {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class CompanionTest : public MediaLoaderFixture {
protected:
    void MakeFolder(const char* name) { std::filesystem::create_directory(m_folder / name); }
};

TEST_F(CompanionTest, TheFolderIsReadOnceForAllThatMayLieBesideAPacketFile)
{
    const QString path = MakePackets("a.cdg", 300);
    MakeAudio("A.MPC", 1000);
    const int before = test::FolderReads();
    m_loader.AddMedia(path);
    EXPECT_EQ(test::FolderReads() - before, 1);
    EXPECT_THAT(Asked(), ElementsAre("A.MPC"));
}

TEST_F(CompanionTest, TheFolderIsReadOnceWhereNothingLiesBesideAFile)
{
    for (const QString& path : {MakePackets("a.cdg", 300), MakeAudio("b.mp3", 1000)}) {
        m_loader.ClearMedia();
        const int before = test::FolderReads();
        m_loader.AddMedia(path);
        EXPECT_EQ(test::FolderReads() - before, 1);
    }
}

TEST_F(CompanionTest, TheFolderIsReadOnceForANameInOtherLetters)
{
    MakePackets("a.cdg", 300);
    MakeAudio("a.mp3", 1000);
    for (const char* path : {"A.cdg", "A.mp3", "B.cdg"}) {
        const int before = test::FolderReads();
        m_loader.AddMedia(In(path));
        EXPECT_EQ(test::FolderReads() - before, 1) << path;
    }
    EXPECT_THAT(Asked(), ElementsAre("a.mp3", "a.mp3"));
}

TEST_F(CompanionTest, TheFolderIsNotReadWhereTheFirstNameIsThere)
{
    MakeAudio("a.mp3", 1000);
    const QString path = MakePackets("a.cdg", 300);
    const int before = test::FolderReads();
    m_loader.AddMedia(path);
    m_loader.AddMedia(In("a.mp3"));
    EXPECT_EQ(test::FolderReads(), before);
}

TEST_F(CompanionTest, AFolderDoesNotHideAudioOfItsNameInOtherLetters)
{
    MakeFolder("a.mp3");
    MakeFolder("A.mp3");
    MakeAudio("a.MP3", 1000);
    MakeAudio("a.wav", 1000);
    m_loader.AddMedia(MakePackets("a.cdg", 300));
    EXPECT_THAT(Asked(), ElementsAre("a.MP3"));
}

TEST_F(CompanionTest, NamesOfNothingButAnExtensionBelongTogether)
{
    MakeAudio(".MP3", 1000);
    m_loader.AddMedia(MakePackets(".cdg", 300));
    EXPECT_THAT(Asked(), ElementsAre(".MP3"));
}

TEST_F(CompanionTest, AFolderDoesNotHideAudioOfALaterExtension)
{
    MakeFolder("a.mp3");
    MakeFolder("A.Wav");
    MakeAudio("A.Ogg", 1000);
    m_loader.AddMedia(MakePackets("a.cdg", 300));
    EXPECT_THAT(Asked(), ElementsAre("A.Ogg"));
}

TEST_F(CompanionTest, AFolderDoesNotHideThePacketsBesideAnAudioFile)
{
    MakeFolder("a.cdg");
    MakePackets("A.CDG", 300);
    m_loader.AddMedia(MakeAudio("a.mp3", 1000));
    EXPECT_EQ(m_track.PacketStore[300].PacketData[1], 300 >> 8);
}

TEST_F(CompanionTest, AnEarlierExtensionInOtherLettersComesBeforeALaterOne)
{
    MakeAudio("A.WAV", 1000);
    MakeAudio("a.ogg", 1000);
    m_loader.AddMedia(MakePackets("a.cdg", 300));
    EXPECT_THAT(Asked(), ElementsAre("A.WAV"));
}

TEST_F(CompanionTest, TheNameAsItIsComesBeforeOthersAndThenTheFirstInByteOrder)
{
    MakeAudio("S.mp3", 1000);
    MakeAudio("s.MP3", 1000);
    m_loader.AddMedia(MakePackets("s.cdg", 300));
    MakeAudio("s.mp3", 1000);
    m_loader.AddMedia(In("s.cdg"));
    EXPECT_THAT(Asked(), ElementsAre("S.mp3", "s.mp3"));
}

TEST_F(CompanionTest, NamesThatOnlyBeginOrEndAlikeAreOthers)
{
    for (const char* name : {"aa.mp3", "a.mp3.mp3", "a.mp", "amp3", "mp3", ".mp3", "a", "a..mp3",
                             "\xC3\xA1.mp3", "a\xCC\x81.mp3", "a.\xC3\xA1mp3", "a.mp3\xCC\x81",
                             "\xE9"
                             "a.mp3",
                             "a\xE9.mp3"})
        MakeAudio(name, 1000);
    m_loader.AddMedia(MakePackets("a.cdg", 300));
    EXPECT_THAT(Asked(), IsEmpty());
}

TEST_F(CompanionTest, AccentsAndLettersThatFoldMeetInAnyForm)
{
    const std::vector<std::pair<std::string, std::string>> names = {
        {"Caf\xC3\xA9", "CAFE\xCC\x81"}, // composed, decomposed
        {"\xC3\x89t\xC3\xA9 x", "e\xCC\x81T\xC3\x89 X"},
        {"\xE2\x84\xAA", "k"},                     // the sign of kelvin
        {"caf\xE9 \xC3\x89", "CAF\xE9 \xC3\xA9"}}; // with a byte that is no text
    for (const auto& [packets, audio] : names) {
        m_loader.ClearMedia();
        MakeAudio(audio + ".Ogg", 1000);
        m_loader.AddMedia(MakePackets(packets + ".cdg", 300));
        ASSERT_EQ(m_track.ClipCount(), 1) << audio;
        EXPECT_EQ(NativeFromText(m_track.ClipList[1].Path).toStdString(),
                  m_folder / (audio + ".Ogg"));
    }
}

TEST_F(CompanionTest, WithoutAFolderToReadNothingIsFound)
{
    m_loader.AddCDGFile(In("none/a.cdg"), true);
    m_loader.AddAudioFile(In("none/a.mp3"), true);
    EXPECT_EQ(m_track.ClipCount(), 0);
    EXPECT_EQ(m_track.PacketCount(), 0);
}

} // namespace
} // namespace lantern
