// SPDX-License-Identifier: GPL-3.0-or-later
#include "MediaLoaderFixture.h"

#include <gmock/gmock.h>
#include <span>
#include <sys/stat.h>

namespace lantern {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class MediaLoaderTest : public MediaLoaderFixture {};

TEST_F(MediaLoaderTest, APacketFileKeepsItsPacketsAsTheyStandAndDropsATrailingPiece)
{
    EXPECT_EQ(m_loader.AddMedia(MakePackets("a.cdg", 1000, 1)), QString());
    ASSERT_EQ(m_track.PacketCount(), 1000);
    for (int i = 1; i <= 1000; ++i) {
        ASSERT_EQ(m_track.PacketStore[i].Command, 9);
        ASSERT_EQ(m_track.PacketStore[i].PacketData[0], i & 0xFF);
        ASSERT_EQ(m_track.PacketStore[i].PacketData[1], i >> 8);
    }
}

TEST_F(MediaLoaderTest, APacketFileAloneHasOneSilentClipOfItsLength)
{
    m_loader.AddMedia(MakePackets("a.cdg", 1000));
    ASSERT_EQ(m_track.ClipCount(), 1);
    ExpectSilence(m_track.ClipList[1], 3333, 587941); // 3.333 seconds: 587941.2 bytes
    EXPECT_EQ(m_track.ClipList[1].StartMs, 0);
    EXPECT_EQ(m_track.TotalLengthMs, 3333);
}

TEST_F(MediaLoaderTest, APacketFileOfLessThanAPacketGivesNothing)
{
    EXPECT_EQ(m_loader.AddMedia(Make("a.cdg", std::string(23, 'x'))), QString());
    EXPECT_EQ(m_track.PacketCount(), 0);
    EXPECT_EQ(m_track.ClipCount(), 0);
    EXPECT_EQ(m_track.TotalLengthMs, 0);
}

TEST_F(MediaLoaderTest, AnEmptyFileGivesAnEmptyTrack)
{
    for (const char* name : {"a.cdg", "b.mp3"})
        EXPECT_EQ(m_loader.AddMedia(Make(name)), QString());
    EXPECT_EQ(m_track.PacketCount(), 0);
    EXPECT_EQ(m_track.ClipCount(), 0);
}

TEST_F(MediaLoaderTest, TheFirstExtensionOfTheListFindsTheAudioBesideThePackets)
{
    MakeAudio("a.ogg", 1000);
    const QString mp3 = MakeAudio("a.mp3", 1000);
    m_loader.AddMedia(MakePackets("a.cdg", 300));
    ASSERT_EQ(m_track.ClipCount(), 1);
    EXPECT_EQ(m_track.ClipList[1].Kind, ClipKind::File);
    EXPECT_EQ(m_track.ClipList[1].Path, mp3);
    EXPECT_EQ(m_track.ClipList[1].LengthMs, 1000);
    EXPECT_TRUE(m_track.ClipList[1].Data.Bytes().empty());
    EXPECT_THAT(Asked(), ElementsAre("a.mp3"));
}

TEST_F(MediaLoaderTest, EveryAudioTypeIsFoundBesideThePackets)
{
    for (const char* extension : {"mp3", "wav", "ogg", "wma", "flac", "mp4", "mod", "xm", "it",
                                  "aif", "aac", "au", "ape", "mpc"}) {
        const std::string stem = std::string("of ") + extension;
        MakeAudio(stem + '.' + extension, 1000);
        m_loader.ClearMedia();
        m_loader.AddMedia(MakePackets(stem + ".cdg", 300));
        ASSERT_EQ(m_track.ClipCount(), 1) << extension;
        EXPECT_EQ(m_track.ClipList[1].Path, In(stem + '.' + extension));
    }
}

TEST_F(MediaLoaderTest, TheSearchStopsAtTheFirstFileEvenIfTheEngineCannotUseIt)
{
    MakeAudio("a.mp3", 0);
    MakeAudio("a.ogg", 1000);
    m_loader.AddMedia(MakePackets("a.cdg", 300));
    EXPECT_THAT(Asked(), ElementsAre("a.mp3"));
    ASSERT_EQ(m_track.ClipCount(), 1);
    ExpectSilence(m_track.ClipList[1], 1000, 176400);
}

TEST_F(MediaLoaderTest, AFolderWithTheNameOfTheAudioIsPassedOver)
{
    std::filesystem::create_directory(m_folder / "a.mp3");
    MakeAudio("a.wav", 1000);
    m_loader.AddMedia(MakePackets("a.cdg", 300));
    EXPECT_THAT(Asked(), ElementsAre("a.wav"));
}

TEST_F(MediaLoaderTest, CompanionsAreFoundWhateverTheirLetterCaseAndKeepTheirRealName)
{
    const QString audio = MakeAudio("Song.Mp3", 1000);
    MakePackets("Song.CDG", 300);
    m_loader.AddMedia(In("song.cdg"));
    EXPECT_EQ(m_track.PacketCount(), 300);
    ASSERT_EQ(m_track.ClipCount(), 1);
    EXPECT_EQ(m_track.ClipList[1].Path, audio);

    m_loader.ClearMedia();
    m_loader.AddMedia(In("SONG.mp3"));
    EXPECT_EQ(m_track.PacketCount(), 300);
    EXPECT_EQ(m_track.PacketStore[2].Command, 9);
    ASSERT_EQ(m_track.ClipCount(), 1);
    EXPECT_EQ(m_track.ClipList[1].Path, audio);
}

TEST_F(MediaLoaderTest, CompanionsAreFoundWhateverTheFormOfTheirAccents)
{
    const QString audio = MakeAudio("Cafe\xCC\x81.mp3", 1000);
    m_loader.AddMedia(MakePackets("Caf\xC3\xA9.cdg", 300));
    ASSERT_EQ(m_track.ClipCount(), 1);
    EXPECT_EQ(m_track.ClipList[1].Path, audio);
}

TEST_F(MediaLoaderTest, NamesOfAnyBytesLoad)
{
    const QString audio = MakeAudio("\xE9\xFF \".mp3", 1000);
    m_loader.AddMedia(MakePackets("\xE9\xFF \".cdg", 300));
    EXPECT_EQ(m_track.PacketCount(), 300);
    ASSERT_EQ(m_track.ClipCount(), 1);
    EXPECT_EQ(m_track.ClipList[1].Path, audio);
}

TEST_F(MediaLoaderTest, AnAudioFileFindsThePacketsBesideIt)
{
    MakePackets("a.cdg", 300);
    EXPECT_EQ(m_loader.AddMedia(MakeAudio("a.flac", 1000)), QString());
    EXPECT_EQ(m_track.PacketCount(), 300);
    EXPECT_EQ(m_track.PacketStore[300].PacketData[0], 300 & 0xFF);
    EXPECT_EQ(m_track.ClipCount(), 1);
}

TEST_F(MediaLoaderTest, AnAudioFileTakesNoOtherAudioBesideIt)
{
    MakePackets("a.cdg", 300);
    MakeAudio("a.mp3", 500);
    m_loader.AddMedia(MakeAudio("a.ogg", 1000));
    EXPECT_THAT(Asked(), ElementsAre("a.ogg"));
}

TEST_F(MediaLoaderTest, AnAudioFileAlonePlaysAgainstEmptyPackets)
{
    m_loader.AddMedia(MakeAudio("a.mp3", 60000));
    EXPECT_EQ(m_track.PacketCount(), 18000);
    EXPECT_EQ(m_track.PacketStore[1], CdgPacket());
    EXPECT_EQ(m_track.PacketStore[18000], CdgPacket());
    EXPECT_EQ(m_track.TotalLengthMs, 60000);
}

TEST_F(MediaLoaderTest, AudioThatTheEngineCannotMeasureIsNoClip)
{
    for (const std::int32_t length : {0, -1}) {
        m_loader.ClearMedia();
        EXPECT_EQ(m_loader.AddMedia(MakeAudio("a.mp3", length)), QString());
        EXPECT_EQ(m_track.ClipCount(), 0);
        EXPECT_EQ(m_track.TotalLengthMs, 0);
        EXPECT_EQ(m_track.PacketCount(), 0);
    }
}

TEST_F(MediaLoaderTest, PacketsBesideAudioThatCannotBeMeasuredGetSilence)
{
    MakePackets("a.cdg", 300);
    m_loader.AddMedia(MakeAudio("a.mp3", 0));
    ASSERT_EQ(m_track.ClipCount(), 1);
    ExpectSilence(m_track.ClipList[1], 1000, 176400);
}

TEST_F(MediaLoaderTest, PacketsThatOutlastTheAudioGetASilentClip)
{
    MakeAudio("a.mp3", 1000);
    m_loader.AddMedia(MakePackets("a.cdg", 400));
    ASSERT_EQ(m_track.ClipCount(), 2);
    ExpectSilence(m_track.ClipList[2], 333, 58741); // 58741.2
    EXPECT_EQ(m_track.ClipList[2].StartMs, 1000);
    EXPECT_EQ(m_track.TotalLengthMs, 1333);
    EXPECT_EQ(m_track.PacketCount(), 400);
}

TEST_F(MediaLoaderTest, AudioThatOutlastsThePacketsGetsEmptyOnes)
{
    MakeAudio("a.mp3", 1000);
    m_loader.AddMedia(MakePackets("a.cdg", 200));
    EXPECT_EQ(m_track.PacketCount(), 300);
    EXPECT_EQ(m_track.PacketStore[200].Command, 9);
    EXPECT_EQ(m_track.PacketStore[201], CdgPacket());
    EXPECT_EQ(m_track.PacketStore[300], CdgPacket());
    EXPECT_EQ(m_track.ClipCount(), 1);
    EXPECT_EQ(m_track.TotalLengthMs, 1000);
}

TEST_F(MediaLoaderTest, ExpectedPacketsAreRoundedWithTiesToEven)
{
    const std::vector<std::pair<std::int32_t, std::int32_t>> cases = {
        {1, 0}, {2, 1}, {5, 2}, {15, 4}, {25, 8}, {999, 300}, {1000, 300}};
    for (const auto& [lengthMs, packets] : cases) {
        m_loader.ClearMedia();
        m_loader.AddMedia(MakeAudio("a.mp3", lengthMs));
        EXPECT_EQ(m_track.PacketCount(), packets) << lengthMs;
    }
}

TEST_F(MediaLoaderTest, AddedMediaAppendsToWhatIsThere)
{
    m_loader.AddMedia(MakeAudio("a.mp3", 1000));
    m_loader.AddMedia(MakeAudio("b.mp3", 2000));
    ASSERT_EQ(m_track.ClipCount(), 2);
    EXPECT_EQ(m_track.ClipList[1].StartMs, 0);
    EXPECT_EQ(m_track.ClipList[2].StartMs, 1000);
    EXPECT_EQ(m_track.TotalLengthMs, 3000);
    EXPECT_EQ(m_track.PacketCount(), 900);
    m_loader.AddMedia(MakePackets("c.cdg", 3));
    EXPECT_EQ(m_track.PacketCount(), 903);
    EXPECT_EQ(m_track.PacketStore[901].PacketData[0], 1);
    EXPECT_EQ(m_track.TotalLengthMs, 3010);
}

TEST_F(MediaLoaderTest, APathThatIsNoFileIsNotFound)
{
    const QString missing = In("none.cdg");
    EXPECT_EQ(m_loader.AddMedia(missing), QStringLiteral("File not found: ") + missing);
    std::filesystem::create_directory(m_folder / "folder.cdg");
    EXPECT_EQ(m_loader.AddMedia(In("folder.cdg")),
              QStringLiteral("File not found: ") + In("folder.cdg"));
}

TEST_F(MediaLoaderTest, AnUnknownOrMissingExtensionIsAnInvalidFormat)
{
    std::filesystem::create_directory(m_folder / "x.cdg");
    for (const char* name : {"a.txt", "a", "x.cdg/a", "a.cdg.bak", "a."})
        EXPECT_EQ(m_loader.AddMedia(Make(name, "x")), QStringLiteral("Invalid file format"));
    EXPECT_EQ(m_track.PacketCount(), 0);
}

TEST_F(MediaLoaderTest, TheExtensionAloneDecidesWhateverTheContents)
{
    const std::string zip = "PK\x03\x04" + std::string(44, 'x');
    m_loader.AddMedia(Make("a.CDG", zip));
    EXPECT_EQ(m_track.PacketCount(), 2);
}

TEST_F(MediaLoaderTest, AnEmptyPathDoesNothingAndSucceeds)
{
    EXPECT_EQ(m_loader.AddMedia(QString()), QString());
    EXPECT_THAT(m_engine.Log, IsEmpty());
}

TEST_F(MediaLoaderTest, AFifoLoadsNothingAndDoesNotBlock)
{
    ASSERT_EQ(mkfifo((m_folder / "a.cdg").c_str(), 0600), 0);
    ASSERT_EQ(mkfifo((m_folder / "b.mp3").c_str(), 0600), 0);
    EXPECT_EQ(m_loader.AddMedia(In("a.cdg")), QString());
    EXPECT_EQ(m_loader.AddMedia(In("b.mp3")), QString());
    EXPECT_EQ(m_track.PacketCount(), 0);
    EXPECT_EQ(m_track.ClipCount(), 0);
}

TEST_F(MediaLoaderTest, ReadBinaryFileReadsAllOfTheFile)
{
    std::string bytes;
    for (int i = 0; i < 100001; ++i)
        bytes += static_cast<char>(i * 7);
    EXPECT_EQ(m_loader.ReadBinaryFile(Make("a", bytes)), bytes.size());
    EXPECT_TRUE(std::equal(
        bytes.begin(), bytes.end(), m_loader.FileBuffer().begin(), m_loader.FileBuffer().end(),
        [](char left, std::uint8_t right) { return static_cast<std::uint8_t>(left) == right; }));
}

TEST_F(MediaLoaderTest, ReadBinaryFileLeavesTheBufferForAnEmptyOrUnreadableFile)
{
    m_loader.ReadBinaryFile(Make("a", "abc"));
    EXPECT_EQ(m_loader.ReadBinaryFile(Make("empty")), 0U);
    EXPECT_EQ(m_loader.ReadBinaryFile(In("none")), 0U);
    EXPECT_EQ(m_loader.ReadBinaryFile(In("")), 0U);
    EXPECT_THAT(m_loader.FileBuffer(), ElementsAre('a', 'b', 'c'));
}

TEST_F(MediaLoaderTest, TheBufferGivesItsMemoryBackWhenTheMediaIsAdded)
{
    m_loader.AddMedia(MakePackets("a.cdg", 10));
    EXPECT_THAT(m_loader.FileBuffer(), IsEmpty());
    EXPECT_EQ(m_loader.FileBuffer().data(), nullptr);
}

class OpenMediaTest : public MediaLoaderTest {
protected:
    const std::vector<std::string> m_cleared = {"SetSliderValues 0 0 0", "CloseSound",
                                                "HideMessage", "ForgetPicture"};

    std::vector<std::string> Calls(const std::vector<std::string>& before,
                                   const std::vector<std::string>& after) const
    {
        std::vector<std::string> calls = before;
        calls.insert(calls.end(), m_cleared.begin(), m_cleared.end());
        calls.insert(calls.end(), after.begin(), after.end());
        return calls;
    }
};

TEST_F(OpenMediaTest, ClearsLoadsRemembersAndPlays)
{
    const QString path = MakeAudio("a.mp3", 1000);
    m_loader.OpenMedia(path);
    EXPECT_EQ(m_engine.Actions(),
              Calls({"SetTicker -1 still"},
                    {"RememberLastPlayed " + path.toStdString(), "SetSliderValues 0 999 0",
                     "Play 0", "SetTicker 0 running"}));
    EXPECT_EQ(m_track.CurrentMedia, path);
    EXPECT_EQ(m_host.clipsAtPlay, 1);
}

TEST_F(OpenMediaTest, TheTrackCountsAsLoadingUntilItsEnd)
{
    m_loader.OpenMedia(MakeAudio("a.mp3", 1000));
    EXPECT_THAT(m_host.loadingAtTicker, ElementsAre(true, true));
    EXPECT_TRUE(m_host.loadingAtPlay);
    EXPECT_FALSE(m_track.MediaLoading);
}

TEST_F(OpenMediaTest, AFailureLeavesTheScreenClearedAndNothingRemembered)
{
    m_loader.OpenMedia(MakeAudio("a.mp3", 1000));
    m_engine.Log.clear();
    m_track.CurrentClip = 1;
    m_loader.OpenMedia(In("none.mp3"));
    EXPECT_EQ(m_engine.Actions(), Calls({"SetTicker -1 still"}, {"SetTicker 0 running"}));
    EXPECT_EQ(m_track.CurrentMedia, QString());
    EXPECT_EQ(m_track.ClipCount(), 0);
    EXPECT_EQ(m_track.PacketCount(), 0);
    EXPECT_EQ(m_track.TotalLengthMs, 0);
    EXPECT_EQ(m_track.CurrentClip, 0);
    EXPECT_FALSE(m_track.MediaLoading);
}

TEST_F(OpenMediaTest, TheSoundIsCalledAsTheTrackAndOnlyWhileThereIsOne)
{
    m_loader.OpenMedia(MakeAudio("Singer - Song.mp3", 1000));
    EXPECT_EQ(m_engine.SoundName, QStringLiteral("Singer - Song"));
    MakeAudio("other.mp3", 1000);
    m_loader.OpenMedia(MakePackets("other.cdg", 300));
    EXPECT_EQ(m_engine.SoundName, QStringLiteral("other"));
    m_loader.OpenMedia(In("none.mp3"));
    EXPECT_EQ(m_engine.SoundName, QString());
}

TEST_F(OpenMediaTest, AnEmptyPathOpensAnEmptyTrack)
{
    m_loader.OpenMedia(QStringLiteral(" \"\" "));
    EXPECT_EQ(m_engine.Actions(),
              Calls({"SetTicker -1 still"}, {"RememberLastPlayed ", "SetSliderValues 0 -1 0",
                                             "Play 0", "SetTicker 0 running"}));
    EXPECT_EQ(m_track.CurrentMedia, QString());
}

TEST_F(OpenMediaTest, QuotesAnywhereAndOuterBlanksAreNotOfThePath)
{
    const QString path = MakePackets("a b.cdg", 300);
    const QString quoted = QStringLiteral("  \"") + path.left(6) + u'"' + path.mid(6) + u'"' + u' ';
    m_loader.OpenMedia(quoted);
    EXPECT_EQ(m_track.CurrentMedia, path);
    EXPECT_EQ(m_track.PacketCount(), 300);
}

TEST_F(OpenMediaTest, TextThatNamesAFileAsItStandsIsTakenAsItStands)
{
    MakePackets("abc.cdg", 600);
    for (const char* name : {"a\"b\"c.cdg", "\"quoted\".cdg", " lead.cdg"}) {
        const QString path = MakePackets(name, 300);
        m_loader.OpenMedia(path);
        EXPECT_EQ(m_track.CurrentMedia, path);
        EXPECT_EQ(m_track.PacketCount(), 300) << name;
    }
    const QString blanks = MakePackets("folder.cdg ", 300);
    m_loader.OpenMedia(blanks);
    EXPECT_EQ(m_track.PacketCount(), 0) << "its extension is none of ours";
}

TEST_F(OpenMediaTest, AFolderOfThatNameDoesNotCountAsItStands)
{
    std::filesystem::create_directory(m_folder / "a\"b.cdg");
    const QString path = MakePackets("ab.cdg", 300);
    m_loader.OpenMedia(In("a\"b.cdg"));
    EXPECT_EQ(m_track.CurrentMedia, path);
}

TEST_F(OpenMediaTest, OtherOuterWhiteSpaceIsOfThePath)
{
    m_loader.OpenMedia(MakePackets("a.cdg", 300) + u'\n');
    EXPECT_EQ(m_track.PacketCount(), 0);
    EXPECT_EQ(m_track.CurrentMedia, QString());
}

TEST_F(OpenMediaTest, TheRememberedPathOpensAgain)
{
    m_loader.OpenMedia(MakeAudio("a.mp3", 1000));
    m_loader.OpenMedia(m_track.CurrentMedia);
    EXPECT_EQ(m_track.CurrentMedia, In("a.mp3"));
    EXPECT_EQ(m_track.ClipCount(), 1);
}

TEST_F(OpenMediaTest, ClearMediaClosesTheSoundWhileItsMemoryIsThere)
{
    struct WatchfulEngine : FakeAudioEngine {
        explicit WatchfulEngine(const Track& watched) : track(watched) {}
        void CloseSound() override { clipsAtClose = track.ClipCount(); }
        const Track& track;
        std::int32_t clipsAtClose = -1;
    } engine(m_track);
    MediaLoader loader(m_track, engine, m_host, m_zip);
    loader.AddSilence(1000);
    m_track.CurrentClip = 1;
    loader.ClearMedia();
    EXPECT_EQ(engine.clipsAtClose, 1);
    EXPECT_EQ(m_track.CurrentClip, 0);
    EXPECT_EQ(m_track.ClipCount(), 0);
}

} // namespace
} // namespace lantern
