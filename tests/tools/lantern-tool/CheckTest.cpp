// SPDX-License-Identifier: GPL-3.0-or-later
#include "LanternToolFixture.h"
#include "PacketParity.h"

#include <sys/stat.h>

namespace lantern {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::IsSupersetOf;

// The real program's judgement of real files.
class Check : public LanternToolTest {
protected:
    // Of one track: what it says, and the exit code that goes with that.
    QJsonObject Checked(const std::string& path, const Words& more = {})
    {
        Words words = {"check", "--json", path};
        words.insert(words.end(), more.begin(), more.end());
        const Result result = Run(words);
        EXPECT_EQ(result.error, "");
        const QJsonObject all =
            QJsonDocument::fromJson(QByteArray::fromStdString(result.output)).object();
        const QJsonArray tracks = all[u"tracks"].toArray();
        EXPECT_EQ(tracks.size(), 1) << result.output;
        const QJsonObject track = tracks[0].toObject();
        const std::vector<std::string> verdicts = {"good", "faulty", "unreadable"};
        EXPECT_EQ(verdicts.at(static_cast<std::size_t>(result.code)),
                  track[u"verdict"].toString().toStdString());
        EXPECT_EQ(track[u"track"].toString().toStdString(), path);
        EXPECT_EQ(all[u"summary"][u"tracks"].toInt(), 1);
        return track;
    }
    static std::vector<std::string> Codes(const QJsonObject& track)
    {
        std::vector<std::string> codes;
        for (const QJsonValue& finding : track[u"findings"].toArray())
            codes.push_back(finding[u"code"].toString().toStdString());
        return codes;
    }
    std::vector<std::string> CodesOf(const std::string& path) { return Codes(Checked(path)); }

    // So many seconds of words, a block in each.
    static std::vector<CdgPacket> SomeWords(std::size_t seconds)
    {
        std::vector<CdgPacket> packets(seconds * 300);
        packets[0] = PrimaryColours();
        for (std::size_t second = 0; second < seconds; ++second)
            packets[second * 300 + 299] = Block(2, 1, 1);
        return packets;
    }
    std::string MakeWords(const std::string& name, std::size_t seconds)
    {
        return Make(name, Bytes(SomeWords(seconds)));
    }
    // Noise, so that what is encoded of it is as long as the sound.
    std::string NoisyWav(const std::string& name, std::size_t seconds)
    {
        std::string wav = SilentWav(44100 * seconds);
        unsigned random = 1;
        for (std::size_t i = 46; i < wav.size(); ++i) {
            random = random * 1664525 + 1013904223;
            if (i % 2 == 0)
                wav[i] = static_cast<char>(random >> 24U);
        }
        return Make(name, wav);
    }
};

TEST_F(Check, AGoodTrackIsGoodInAllFourForms)
{
    MakeWords("a.cdg", 2);
    Make("a.wav", SilentWav(88200));
    Make("b.bin", Sectors(SomeWords(2)));
    Zip("c.zip", {"a.wav", "a.cdg"});
    for (const char* name : {"a.cdg", "a.wav", "b.bin", "c.zip"}) {
        const QJsonObject track = Checked(In(name));
        EXPECT_THAT(Codes(track), IsEmpty()) << name;
        EXPECT_EQ(track[u"words"], QStringLiteral("plays"));
        const QJsonObject picture = track[u"picture"].toObject();
        EXPECT_EQ(picture[u"packets"].toInt(), 600) << name;
        EXPECT_EQ(picture[u"graphics"].toInt(), 3) << name;
        EXPECT_DOUBLE_EQ(picture[u"graphics_share"].toDouble(), 3.0 / 600) << name;
        EXPECT_EQ(picture[u"words_to_ms"].toInt(), 2000) << name;
        EXPECT_EQ(picture[u"parity_p"][u"state"], QStringLiteral("absent")) << name;
        EXPECT_EQ(track[u"sound"][u"length_ms"].toInt(), 2000) << name;
    }
    const Result text = Run({"check", In("a.cdg")});
    EXPECT_EQ(text.output, In("a.cdg") + ": good: plays\n"
                                         "  picture  0:02, 600 packets, 0.5% with graphics\n"
                                         "  unknown  0 instructions, 0 other packets\n"
                                         "  parity   P absent, Q absent\n"
                                         "  sound    0:02\n");
}

TEST_F(Check, ParityOfThePacketsIsChecked)
{
    std::vector<CdgPacket> packets = SomeWords(4);
    for (CdgPacket& packet : packets)
        packet = WithParity(packet);
    Make("a.wav", SilentWav(4 * 44100));
    const std::string path = Make("a.cdg", Bytes(packets));
    EXPECT_EQ(Checked(path)[u"picture"][u"parity_p"][u"state"], QStringLiteral("right"));
    packets[599].PacketData[7] ^= 0x10U;
    Make("a.cdg", Bytes(packets));
    const QJsonObject track = Checked(path);
    EXPECT_THAT(Codes(track), ElementsAre("packets-damaged"));
    EXPECT_EQ(track[u"picture"][u"parity_p"][u"wrong"].toInt(), 1);
    EXPECT_EQ(track[u"picture"][u"parity_q"][u"state"], QStringLiteral("right"));
}

TEST_F(Check, DiscsThatAreNoneAreFound)
{
    const std::string disc = Sectors(SomeWords(2));
    EXPECT_EQ(Checked(Make("a.bin", disc.substr(0, disc.size() - 100)))[u"words"],
              QStringLiteral("plays; disc image is cut off within a sector"));
    // As most programs save a disc.
    EXPECT_THAT(CodesOf(Make("b.bin", std::string(2352UL * 100, '\0'))),
                ElementsAre("picture-empty", "disc-without-subcode"));
}

// The silence and the empty packets that the player fills up with are none of the track's own.
TEST_F(Check, WhatIsShorterIsFound)
{
    MakeWords("a.cdg", 5);
    Make("a.wav", SilentWav(2 * 44100));
    EXPECT_EQ(Checked(In("a.cdg"))[u"words"],
              QStringLiteral("plays; sound ends 3 s before the words"));
    MakeWords("b.cdg", 2);
    Make("b.wav", SilentWav(14 * 44100));
    Zip("c.zip", {"b.cdg", "b.wav"});
    for (const char* name : {"b.cdg", "b.wav", "c.zip"}) {
        const QJsonObject track = Checked(In(name));
        EXPECT_THAT(Codes(track), ElementsAre("sound-longer")) << name;
        EXPECT_EQ(track[u"picture"][u"length_ms"].toInt(), 2000) << name;
        EXPECT_EQ(track[u"picture"][u"packets"].toInt(), 600) << name;
    }
}

TEST_F(Check, APieceThatIsMissingIsFound)
{
    EXPECT_THAT(CodesOf(MakeWords("a.cdg", 1)), ElementsAre("sound-missing"));
    EXPECT_THAT(CodesOf(Zip("a.zip", {"a.cdg"})), ElementsAre("sound-missing"));
    Make("a.mp3", "no sound");
    EXPECT_THAT(CodesOf(In("a.cdg")), ElementsAre("sound-unusable"));
    EXPECT_EQ(Checked(Zip("a.zip", {"a.mp3"}))[u"words"],
              QStringLiteral("no sound: a.mp3 can't be played (no usable sound)"));
    EXPECT_THAT(CodesOf(Make("b.wav", SilentWav(441))), ElementsAre("picture-missing"));
    EXPECT_THAT(CodesOf(Zip("b.zip", {"b.wav"})), ElementsAre("picture-missing"));
    Make("b.cdg", std::string(24 * 9 + 5, '\0'));
    EXPECT_THAT(CodesOf(In("b.cdg")), ElementsAre("picture-empty", "picture-cut-off"));
}

TEST_F(Check, NamesThatPairOnlyHereAreFound)
{
    MakeWords("song.cdg", 1);
    Make("Song.WAV", SilentWav(44100));
    EXPECT_EQ(Checked(In("song.cdg"))[u"words"],
              QStringLiteral("plays; names differ in letter case: pairs here, not on others"));
    EXPECT_THAT(CodesOf(In("Song.WAV")), ElementsAre("names-differ"));
    EXPECT_THAT(CodesOf(Zip("a.zip", {"song.cdg", "Song.WAV"})), ElementsAre("names-differ"));
    // The ending doesn't pair names.
    Make("song.Wav", SilentWav(44100));
    std::filesystem::remove(In("Song.WAV"));
    EXPECT_THAT(CodesOf(In("song.cdg")), IsEmpty());
}

TEST_F(Check, PackingsThatOthersCannotReadAreFound)
{
    MakeWords("a.cdg", 1);
    Make("a.wav", SilentWav(44100));
    MakeWords("b.cdg", 1);
    EXPECT_THAT(CodesOf(Zip("a.zip", {"-Z", "bzip2", "a.cdg", "a.wav"})),
                ElementsAre("archive-method"));
    EXPECT_EQ(Checked(Zip("s.zip", {"-0", "a.cdg", "a.wav", "b.cdg"}))[u"words"],
              QStringLiteral("plays; archive holds several songs, of which the first plays"));
}

TEST_F(Check, SoundThatIsCutOffIsFound)
{
    const std::string wav = NoisyWav("n.wav", 4);
    const std::vector<test::Process::Command> encoders = {
        {.arguments = {"flac", "--silent", "-f", wav, "-o", In("a.flac")}},
        {.arguments = {"lame", "--quiet", wav, In("b.mp3")}},
        {.arguments = {"oggenc", "-Q", "-o", In("c.ogg"), wav}},
        {.arguments = {"ffmpeg", "-v", "error", "-i", wav, In("d.aif")}},
    };
    for (const auto& encoder : encoders)
        test::OutputOf(encoder);
    for (const char* name : {"a.flac", "b.mp3", "c.ogg", "d.aif", "n.wav"}) {
        EXPECT_THAT(CodesOf(In(name)), ElementsAre("picture-missing")) << name;
        std::filesystem::resize_file(In(name), std::filesystem::file_size(In(name)) * 6 / 10);
        EXPECT_THAT(CodesOf(In(name)), IsSupersetOf({"sound-cut-off"})) << name;
        const QJsonObject quick = Checked(In(name), {"--quick"});
        EXPECT_THAT(Codes(quick), ElementsAre("picture-missing")) << name;
        EXPECT_EQ(quick[u"sound"][u"examined"], false) << name;
    }
}

TEST_F(Check, SoundThatIsDamagedIsFound)
{
    const std::string wav = NoisyWav("n.wav", 4);
    test::OutputOf({.arguments = {"flac", "--silent", "-f", wav, "-o", In("a.flac")}});
    test::OutputOf({.arguments = {"lame", "--quiet", wav, In("b.mp3")}});
    test::OutputOf({.arguments = {"oggenc", "-Q", "-o", In("c.ogg"), wav}});
    for (const char* name : {"a.flac", "b.mp3", "c.ogg"}) {
        std::string bytes = test::ReadFile(In(name));
        bytes.replace(bytes.size() / 2, 300, std::string(300, 'x'));
        Make(name, bytes);
        const QJsonObject track = Checked(In(name));
        EXPECT_THAT(Codes(track), IsSupersetOf({"sound-damaged"})) << name;
        EXPECT_GE(track[u"sound"][u"damaged_packets"].toInt(), 1) << name;
        EXPECT_LE(track[u"sound"][u"damaged_packets"].toInt(), 5) << name;
    }
}

TEST_F(Check, ManyTracksEndWithASummary)
{
    std::filesystem::create_directories(In("songs/more"));
    MakeWords("songs/1.cdg", 1);
    Make("songs/1.wav", SilentWav(44100));
    MakeWords("songs/2.cdg", 1);
    Make("songs/more/3.zip", "no archive");
    const Result result = Run({"check", "--recursive", "--jobs", "3", In("songs"), In("none.bin")});
    EXPECT_EQ(result.code, 2);
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(result.output, In("songs/1.cdg") + ": good: plays\n" + In("songs/2.cdg") +
                                 ": faulty: no sound: no audio of that name is beside it\n" +
                                 In("songs/more/3.zip") +
                                 ": can't be read: Nothing to play: " + In("songs/more/3.zip") +
                                 " (Not a zip archive)\n" + In("none.bin") +
                                 ": can't be read: File not found: " + In("none.bin") +
                                 "\n4 tracks: 1 good, 1 faulty, 2 can't be read\n");
    EXPECT_EQ(Run({"check", In("songs/1.cdg"), In("songs/2.cdg")}).code, 1);
    EXPECT_EQ(Run({"check", In("songs/1.cdg"), In("songs/1.wav")}).code, 0);

    const Result json = Run({"check", "--json", In("songs")});
    const QJsonDocument document = QJsonDocument::fromJson(QByteArray::fromStdString(json.output));
    EXPECT_EQ(document[u"tracks"].toArray().size(), 2) << json.output;
    EXPECT_EQ(document[u"summary"][u"good"].toInt(), 1);
}

// Not 1, which would say that a track is faulty.
TEST_F(Check, ACommandLineThatIsBadIsLikeATrackThatCannotBeRead)
{
    for (const Words& words :
         {Words{"check"}, Words{"check", "--raw", "a"}, Words{"check", "--jobs", "0", "a"}}) {
        const Result result = Run(words);
        EXPECT_EQ(result.code, 2);
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(std::ranges::count(result.error, '\n'), 1) << result.error;
    }
    EXPECT_EQ(Run({"check", "/dev"}).error, "lantern-tool: No tracks in /dev\n");
}

// Scripts read it: it never changes.
TEST_F(Check, TheDemoSongIsToldOfAsEver)
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "it is not made under sanitizers";
#endif
    const std::string demo = LANTERN_DEMO_FOLDER "/demo.cdg";
    const Result text = Run({"check", demo});
    EXPECT_EQ(text.code, 0);
    EXPECT_EQ(text.output, demo + ": good: plays\n"
                                  "  picture  1:02, 18,750 packets, 37.0% with graphics\n"
                                  "  unknown  0 instructions, 0 other packets\n"
                                  "  parity   P absent, Q absent\n"
                                  "  sound    1:02\n");
    QJsonObject expected = QJsonDocument::fromJson(R"({
        "findings": [], "verdict": "good", "words": "plays",
        "picture": {
            "graphics": 6946, "graphics_share": 0.37045333333333336, "length_ms": 62500,
            "other_commands": 0, "packets": 18750, "undefined_colours": [],
            "parity_p": {"absent": 6946, "right": 0, "state": "absent", "wrong": 0},
            "parity_q": {"absent": 6946, "right": 0, "state": "absent", "wrong": 0},
            "unknown_instructions": 0, "words_from_ms": 16, "words_to_ms": 57430},
        "sound": {"clips": 1, "cut_off": false, "damaged_packets": 0, "examined": true,
                  "length_ms": 62500}})")
                               .object();
    expected[u"track"] = QString::fromStdString(demo);
    EXPECT_EQ(Checked(demo), expected);

    EXPECT_EQ(Run({"info", demo}).output, R"({
    "clips": [
        {
            "kind": "FILE",
            "length_ms": 62500,
            "path": ")" LANTERN_DEMO_FOLDER R"(/demo.wav",
            "start_ms": 0
        }
    ],
    "length_ms": 62500,
    "packets": 18750,
    "skipped": [
    ]
}
)");
}

// Whatever is in them, each command comes to an end, and tells of each file in one line.
TEST_F(Check, FilesMeantToDoHarmAreToldOf)
{
    std::filesystem::create_directories(In("bad"));
    const std::vector<std::pair<std::string, std::string>> kinds = {{"fuzz_audio", ".mp3"},
                                                                    {"fuzz_audio", ".wav"},
                                                                    {"fuzz_packets", ".cdg"},
                                                                    {"fuzz_bin", ".bin"},
                                                                    {"fuzz_zip", ".zip"}};
    std::ptrdiff_t count = 0;
    for (const auto& [corpus, ending] : kinds) {
        for (const auto& entry :
             std::filesystem::directory_iterator(std::string(LANTERN_CORPUS) + "/" + corpus)) {
            const std::string name = std::to_string(count) + ending;
            std::filesystem::copy_file(entry.path(), In("bad/" + name));
            ++count;
        }
    }
    ASSERT_GT(count, 40);
    for (const char* name : {"fifo1.cdg", "fifo2.zip", "fifo3.mp3"}) {
        ASSERT_EQ(mkfifo(In(std::string("bad/") + name).c_str(), 0600), 0);
        ++count;
    }

    const Result check = Run({"check", In("bad")});
    EXPECT_EQ(check.code, 2);
    EXPECT_EQ(check.error, "");
    EXPECT_EQ(std::ranges::count(check.output, '\n'), count + 1) << check.output;
    EXPECT_THAT(check.output, HasSubstr("\n" + std::to_string(count) + " tracks: "));

    const Result info = Run({"info", In("bad")});
    EXPECT_EQ(info.code, 1);
    const auto told =
        QJsonDocument::fromJson(QByteArray::fromStdString(info.output)).array().size();
    const auto failed = std::ranges::count(info.error, '\n');
    EXPECT_EQ(told + failed, count);

    for (const Words& words : {Words{"thumbnail"}, Words{"frame", "--packet", "300"}}) {
        Words all = words;
        all.insert(all.end(), {In("bad"), "--out", In(words[0])});
        const Result drawn = Run(all);
        EXPECT_EQ(drawn.code, 1);
        EXPECT_EQ(std::ranges::count(drawn.error, '\n'), failed) << drawn.error;
        std::ptrdiff_t pictures = 0;
        for (const auto& entry : std::filesystem::directory_iterator(In(words[0]))) {
            EXPECT_FALSE(QImage(QString::fromStdString(entry.path().native())).isNull())
                << entry.path();
            ++pictures;
        }
        EXPECT_EQ(pictures + failed, count);
    }
}

} // namespace
} // namespace lantern
