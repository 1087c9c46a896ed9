// SPDX-License-Identifier: GPL-3.0-or-later
#include "MediaLoaderFixture.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <sys/stat.h>

namespace lantern {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;
using Words = std::vector<std::string>;

class MediaLoaderZipTest : public MediaLoaderFixture {
protected:
    MediaLoaderZipTest() { m_engine.DurationMs = 1000; }

    // An archive of the files, in the order given.
    QString Zip(const Words& files)
    {
        const std::string script = R"(cd "$0" && rm -f a.zip && exec zip -q a.zip "$@")";
        Words all = {"sh", "-c", script, m_folder.Path().native()};
        all.insert(all.end(), files.begin(), files.end());
        test::OutputOf({.arguments = all});
        return In("a.zip");
    }
    void ExpectNothing() const
    {
        EXPECT_EQ(m_track.ClipCount(), 0);
        EXPECT_EQ(m_track.PacketCount(), 0);
    }
    static std::string Text(std::span<const std::uint8_t> bytes)
    {
        return {bytes.begin(), bytes.end()};
    }
};

TEST_F(MediaLoaderZipTest, TheFirstOfEachKindIsTaken)
{
    Make("1.mp3", "the mp3");
    Make("2.wav", "the wav");
    MakePackets("3.cdg", 300);
    MakePackets("4.cdg", 200);
    EXPECT_EQ(m_loader.AddMedia(Zip({"1.mp3", "2.wav", "3.cdg", "4.cdg"})), QString());
    ASSERT_EQ(m_track.ClipCount(), 1);
    EXPECT_EQ(Text(m_track.ClipList[1].Data.Bytes()), "the mp3");
    EXPECT_EQ(m_track.PacketCount(), 300);
    EXPECT_THAT(m_host.skipped,
                ElementsAre(Pair("2.wav", "another one of its kind comes before it"),
                            Pair("4.cdg", "another one of its kind comes before it")));
}

TEST_F(MediaLoaderZipTest, TheOrderOfTheExtensionsPlaysNoPart)
{
    Make("1.mpc", "the mpc");
    Make("2.mp3", "the mp3");
    m_loader.AddMedia(Zip({"1.mpc", "2.mp3"}));
    EXPECT_EQ(Text(m_track.ClipList[1].Data.Bytes()), "the mpc");
}

TEST_F(MediaLoaderZipTest, TheStemsNeedNotBeTheSame)
{
    MakePackets("words.cdg", 300);
    Make("music.ogg", "sound");
    m_loader.AddMedia(Zip({"words.cdg", "music.ogg"}));
    EXPECT_EQ(m_track.ClipCount(), 1);
    ASSERT_EQ(m_track.PacketCount(), 300);
    EXPECT_EQ(m_track.PacketStore[300].PacketData[0], 300 & 0xFF);
    EXPECT_THAT(m_host.skipped, IsEmpty());
}

TEST_F(MediaLoaderZipTest, TheAudioIsTheMembersOwnBytes)
{
    const std::string sound = "sound \xFF\x01" + std::string(5000, '\0') + "end";
    Make("a.mp3", sound);
    m_loader.AddMedia(Zip({"a.mp3"}));
    ASSERT_EQ(m_track.ClipCount(), 1);
    const AudioClip& clip = m_track.ClipList[1];
    EXPECT_EQ(clip.Kind, ClipKind::Data);
    EXPECT_EQ(clip.Path, QString());
    EXPECT_EQ(clip.LengthMs, 1000);
    EXPECT_EQ(Text(clip.Data.Bytes()), sound);
    EXPECT_TRUE(std::ranges::equal(m_engine.LoadedImage, clip.Data.Bytes()));
}

TEST_F(MediaLoaderZipTest, TheAudioIsMeasuredAtTheNeutralTempo)
{
    struct WatchfulEngine : FakeAudioEngine {
        explicit WatchfulEngine(const Track& watched) : track(watched) {}
        std::int32_t LoadMemory(std::span<const std::uint8_t> image) override
        {
            heldAtLoad = track.TempoHeld;
            return FakeAudioEngine::LoadMemory(image);
        }
        const Track& track;
        bool heldAtLoad = false;
    } engine(m_track);
    engine.DurationMs = 1000;
    engine.Tempo = 25;
    MediaLoader loader(m_track, engine, m_host, m_zip);
    Make("a.mp3", "sound");
    loader.AddMedia(Zip({"a.mp3"}));
    EXPECT_THAT(engine.Log, ElementsAre("GetEngineTempo", "SetEngineTempo 0", "LoadMemory 5",
                                        "GetLoadedDuration", "CloseSound", "SetEngineTempo 25"));
    EXPECT_TRUE(engine.heldAtLoad);
    EXPECT_FALSE(m_track.TempoHeld);
}

TEST_F(MediaLoaderZipTest, AudioThatDoesNotLoadIsNoClip)
{
    m_engine.Tempo = 25;
    m_engine.LoadResults = {1};
    Make("a.mp3", "sound");
    MakePackets("a.cdg", 300);
    m_loader.AddMedia(Zip({"a.mp3", "a.cdg"}));
    EXPECT_THAT(m_engine.Actions(),
                ElementsAre("SetEngineTempo 0", "LoadMemory 5", "SetEngineTempo 25"));
    EXPECT_FALSE(m_track.TempoHeld);
    EXPECT_THAT(m_host.skipped, ElementsAre(Pair("a.mp3", "no usable sound")));
    ASSERT_EQ(m_track.ClipCount(), 1);
    ExpectSilence(m_track.ClipList[1], 1000, 176400);
}

TEST_F(MediaLoaderZipTest, AudioWithoutLengthIsNoClip)
{
    for (const std::int32_t length : {0, -1}) {
        m_engine.DurationMs = length;
        m_engine.Log.clear();
        Make("a.mp3", "sound");
        m_loader.AddMedia(Zip({"a.mp3"}));
        ExpectNothing();
        EXPECT_THAT(m_engine.Actions(), ElementsAre("SetEngineTempo 0", "LoadMemory 5",
                                                    "CloseSound", "SetEngineTempo 0"));
    }
}

TEST_F(MediaLoaderZipTest, PacketsThatOutlastTheAudioGetASilentClip)
{
    Make("a.mp3", "sound");
    MakePackets("a.cdg", 400);
    m_loader.AddMedia(Zip({"a.mp3", "a.cdg"}));
    ASSERT_EQ(m_track.ClipCount(), 2);
    ExpectSilence(m_track.ClipList[2], 333, 58741);
    EXPECT_EQ(m_track.ClipList[2].StartMs, 1000);
}

TEST_F(MediaLoaderZipTest, AudioAlonePlaysAgainstEmptyPackets)
{
    Make("a.mp3", "sound");
    m_loader.AddMedia(Zip({"a.mp3"}));
    EXPECT_EQ(m_track.PacketCount(), 300);
    EXPECT_EQ(m_track.PacketStore[300], CdgPacket());
}

TEST_F(MediaLoaderZipTest, PacketsAlonePlayAgainstSilenceAndATrailingPieceIsDropped)
{
    MakePackets("a.cdg", 300, 23);
    m_loader.AddMedia(Zip({"a.cdg"}));
    EXPECT_EQ(m_track.PacketCount(), 300);
    ASSERT_EQ(m_track.ClipCount(), 1);
    ExpectSilence(m_track.ClipList[1], 1000, 176400);
}

TEST_F(MediaLoaderZipTest, AnEmptyMemberTakesThePlaceOfItsKind)
{
    Make("1.cdg");
    MakePackets("2.cdg", 300);
    Make("1.mp3");
    Make("2.mp3", "sound");
    m_loader.AddMedia(Zip({"1.cdg", "2.cdg", "1.mp3", "2.mp3"}));
    ExpectNothing();
    EXPECT_THAT(m_host.skipped,
                ElementsAre(Pair("1.cdg", "empty"),
                            Pair("2.cdg", "another one of its kind comes before it"),
                            Pair("1.mp3", "empty"),
                            Pair("2.mp3", "another one of its kind comes before it")));
}

TEST_F(MediaLoaderZipTest, OtherTypesAreNotLookedAt)
{
    MakePackets("a.cdg", 300);
    Zip({"a.cdg"});
    std::filesystem::rename(m_folder / "a.zip", m_folder / "nested.zip");
    Make("a.bin", std::string(2448, 'x'));
    Make("a.txt", "text");
    m_loader.AddMedia(Zip({"nested.zip", "a.bin", "a.txt"}));
    ExpectNothing();
    const auto skipped = [](const char* name) { return Pair(name, "not of the types asked for"); };
    EXPECT_THAT(m_host.skipped,
                ElementsAre(skipped("nested.zip"), skipped("a.bin"), skipped("a.txt")));
}

TEST_F(MediaLoaderZipTest, EveryAudioTypeIsTakenWhateverItsLetterCase)
{
    for (const char* extension : {"mp3", "wav", "ogg", "wma", "flac", "mp4", "mod", "xm", "it",
                                  "aif", "aac", "au", "ape", "mpc", "MP3", "Wav"}) {
        m_loader.ClearMedia();
        const std::string name = std::string("a.") + extension;
        Make(name, "sound");
        m_loader.AddMedia(Zip({name}));
        EXPECT_EQ(m_track.ClipCount(), 1) << extension;
    }
    MakePackets("A.CDG", 300);
    m_loader.ClearMedia();
    m_loader.AddMedia(Zip({"A.CDG"}));
    EXPECT_EQ(m_track.PacketStore[300].Command, 9);
}

TEST_F(MediaLoaderZipTest, EachArchiveStartsWithBothPlacesFree)
{
    Make("a.mp3", "sound");
    MakePackets("a.cdg", 300);
    Zip({"a.mp3", "a.cdg"});
    m_loader.AddMedia(In("a.zip"));
    m_loader.AddMedia(In("a.zip"));
    EXPECT_EQ(m_track.ClipCount(), 2);
    EXPECT_EQ(m_track.PacketCount(), 600);
    EXPECT_EQ(m_track.TotalLengthMs, 2000);
}

TEST_F(MediaLoaderZipTest, WhatIsNoArchiveGivesAnEmptyTrackAndNoMessage)
{
    EXPECT_EQ(m_loader.AddMedia(Make("a.zip", "no archive")), QString());
    EXPECT_EQ(m_loader.AddMedia(Make("b.zip")), QString());
    ASSERT_EQ(mkfifo((m_folder / "c.zip").c_str(), 0600), 0);
    EXPECT_EQ(m_loader.AddMedia(In("c.zip")), QString());
    m_loader.AddZipFile(In("none.zip"));
    ExpectNothing();
    ASSERT_EQ(m_host.skipped.size(), 4U);
    EXPECT_THAT(m_host.skipped[0], Pair("", "Not a zip archive"));
}

TEST_F(MediaLoaderZipTest, TheBufferGivesItsMemoryBack)
{
    MakePackets("a.cdg", 300);
    m_loader.AddMedia(Zip({"a.cdg"}));
    EXPECT_EQ(m_loader.FileBuffer().data(), nullptr);
}

// The handler as the loader drives it: writes down each operation, and offers what a test wants.
class ScriptedHandler : public ZipHandler {
public:
    explicit ScriptedHandler(Words& log) : m_log(log) {}

    void ZipOpenArchive(const QString& path) override { Write("open", path); }
    void ZipSetFilter(const QString& patterns) override { Write("filter", patterns); }
    void ZipSetFolder(const QString& folder) override { Write("folder", folder); }
    void ZipRun(std::int32_t& result) override
    {
        m_log.emplace_back("run");
        bool exclude = true; // whatever it was
        ZipDestination destination = ZipDestination::Folder;
        UnzipPreprocessingFile(QStringLiteral("A.CDG"), exclude, destination);
        EXPECT_FALSE(exclude);
        EXPECT_EQ(destination, ZipDestination::Memory);
        UnzipPreprocessingFile(QStringLiteral("b.cdg"), exclude, destination);
        EXPECT_TRUE(exclude);
        UnzippingMemoryFile(QStringLiteral("A.CDG"), std::vector<std::uint8_t>(72, 9));
        result = 13;
    }

private:
    void Write(const char* operation, const QString& argument)
    {
        m_log.push_back(operation + (' ' + argument.toStdString()));
    }

    Words& m_log;
};

TEST_F(MediaLoaderZipTest, AnArchiveHasAHandlerOfItsOwnAndItsResultIsNotLookedAt)
{
    Words log;
    int handlers = 0;
    MediaLoader loader(m_track, m_engine, m_host,
                       {[&] {
                            ++handlers;
                            return std::make_unique<ScriptedHandler>(log);
                        },
                        QStringLiteral("/program/")});
    loader.AddZipFile(QStringLiteral("x.zip"));
    EXPECT_THAT(log, ElementsAre("open x.zip",
                                 "filter *.cdg|*.mp3|*.wav|*.ogg|*.wma|*.flac|*.mp4|*.mod|*.xm|"
                                 "*.it|*.aif|*.aac|*.au|*.ape|*.mpc",
                                 "folder /program/", "run"));
    EXPECT_EQ(m_track.PacketCount(), 3);
    EXPECT_EQ(handlers, 1);
    loader.AddZipFile(QStringLiteral("x.zip"));
    EXPECT_EQ(handlers, 2);
}

} // namespace
} // namespace lantern
