// SPDX-License-Identifier: GPL-3.0-or-later
#include "LanternToolFixture.h"

#include "SungTrack.h"

#include <filesystem>
#include <random>

namespace lantern {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

// A sanitizer takes far more addresses than there are bytes.
#ifdef __SANITIZE_ADDRESS__
constexpr const char* kBounds = "ulimit -t 100; exec";
#else
// 400 MB of addresses are few for a program with Tesseract.
constexpr const char* kBounds = "ulimit -v 400000; ulimit -t 40; exec";
#endif

class LyricsTest : public LanternToolTest {
protected:
    // The search for leaks takes the variables that threads have of some modules for where they are
    // not, and then dies.
    Result Run(const Words& words, const std::string& before = "exec",
               test::EnvironmentChanges environment = {})
    {
        environment.emplace_back("ASAN_OPTIONS", "intercept_tls_get_addr=0");
        return LanternToolTest::Run(words, before, environment);
    }
    // A short track, whose lines are known.
    std::string MakeSong(const std::string& name)
    {
        if (s_song.empty()) {
            const test::SungTrack track = test::MakeSungTrack(test::SungStyles().front(), 4, 21);
            s_song = Bytes({track.packets.begin(), track.packets.end()});
            for (const auto& line : track.lines) {
                QStringList words;
                for (const test::KnownWord& word : line)
                    words += word.text;
                s_lines.push_back(words.join(u' ').toStdString());
            }
        }
        return Make(name, s_song);
    }
    void ExpectAllLines(const std::string& text)
    {
        for (const std::string& line : s_lines)
            EXPECT_THAT(text, HasSubstr(line));
    }

    static inline std::string s_song;
    static inline std::vector<std::string> s_lines;
};

TEST_F(LyricsTest, PrintsTheLinesAndThatTheyMayErr)
{
    const Result result = Run({"lyrics", MakeSong("song.cdg")});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.error, "");
    EXPECT_THAT(result.output, StartsWith("# Recognised from the picture"));
    ExpectAllLines(result.output);
}

TEST_F(LyricsTest, PrintsEachWordWithItsTimeAndHowSureItIsAsJson)
{
    const Result result = Run({"lyrics", MakeSong("song.cdg"), "--format", "json"});
    EXPECT_EQ(result.code, 0);
    const QJsonDocument json = QJsonDocument::fromJson(QByteArray::fromStdString(result.output));
    const QJsonArray lines = json.object()[u"lines"].toArray();
    ASSERT_EQ(lines.size(), 4);
    double before = 0;
    for (const QJsonValue& line : lines) {
        for (const QJsonValue& word : line[u"words"].toArray()) {
            EXPECT_GT(word[u"start_ms"].toDouble(), before);
            before = word[u"start_ms"].toDouble();
            EXPECT_GT(word[u"confidence"].toDouble(), 0.5);
            EXPECT_FALSE(word[u"interpolated"].toBool(true));
        }
    }
}

// Drawn by another program, with fades between its pages and a drawing beside its title.
TEST_F(LyricsTest, ReadsTheDemoSong)
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "the demo song is not made there";
#endif
    const Result result = Run({"lyrics", std::string(LANTERN_DEMO_FOLDER) + "/demo.cdg"});
    EXPECT_EQ(result.code, 0) << result.error;
    EXPECT_EQ(result.output.substr(result.output.find("\n\n") + 2),
              "Should auld acquaintance\nbe forgot,\nand never\nbrought to mind?\n"
              "Should auld acquaintance\nbe forgot,\nand days of\nauld lang syne?\n"
              "For auld lang syne,\nmy dear,\nfor auld\nlang syne,\n"
              "We'll take a cup\nof kindness yet,\nfor auld\nlang syne.\n");
}

TEST_F(LyricsTest, KeepsAnOutputThatExistsUnlessForced)
{
    const std::string song = MakeSong("song.cdg");
    const std::string out = Make("song.lrc", "mine");
    const Result kept = Run({"lyrics", song, "--format", "lrc", "--out", out});
    EXPECT_EQ(kept.code, 1);
    EXPECT_THAT(kept.error, HasSubstr(out));
    EXPECT_EQ(test::ReadFile(out), "mine");

    const Result forced = Run({"lyrics", song, "--format", "lrc", "--out", out, "--force"});
    EXPECT_EQ(forced.code, 0) << forced.error;
    EXPECT_EQ(forced.output, "");
    EXPECT_THAT(test::ReadFile(out), StartsWith("[re:Recognised"));
}

TEST_F(LyricsTest, GivesSeveralTracksAFileEach)
{
    const Words songs = {MakeSong("one.cdg"), MakeSong("two.cdg")};
    ExpectFailure({"lyrics", songs[0], songs[1]}, "the lyrics of several tracks need --out");
    const Result result =
        Run({"lyrics", songs[0], songs[1], "--format", "srt", "--out", In("texts")});
    EXPECT_EQ(result.code, 0) << result.error;
    ExpectAllLines(test::ReadFile(In("texts/one.srt")));
    ExpectAllLines(test::ReadFile(In("texts/two.srt")));
}

TEST_F(LyricsTest, TellsWhatCanNotBeAsked)
{
    const std::string song = MakeBlocks();
    ExpectFailure({"lyrics", song, "--format", "doc"}, "Bad value for --format: 'doc'");
    ExpectFailure({"lyrics", song, "--language", "../x"}, "Not the name of a language: '../x'");
    ExpectFailure({"lyrics", song, "--language", "xqz"},
                  "Tesseract has no data for 'xqz'; on Debian they come with a package such as "
                  "tesseract-ocr-eng");
    ExpectFailure({"lyrics", song, "--out", ""}, "Bad value for --out: ''");
    ExpectFailure({"lyrics", In("none.cdg")}, "File not found: " + In("none.cdg"));
}

TEST_F(LyricsTest, TellsThatTesseractOrItsDataAreMissing)
{
    const std::string song = MakeSong("song.cdg");
    std::filesystem::create_directory(In("empty"));
    const Result noData = Run({"lyrics", song}, "exec", {{"TESSDATA_PREFIX", In("empty")}});
    EXPECT_EQ(noData.code, 1);
    EXPECT_THAT(noData.error, StartsWith("lantern-tool: Tesseract has no data for 'eng'"));
    EXPECT_EQ(std::ranges::count(noData.error, '\n'), 1);

    // What is no library stands before the real one.
    Make("empty/libtesseract.so.5", "");
    const Result noLibrary = Run({"lyrics", song}, "exec", {{"LD_LIBRARY_PATH", In("empty")}});
    EXPECT_EQ(noLibrary.code, 1);
    EXPECT_THAT(noLibrary.error, StartsWith("lantern-tool: Reading words needs Tesseract 5"));
    EXPECT_EQ(std::ranges::count(noLibrary.error, '\n'), 1);
    EXPECT_EQ(noLibrary.output, "");
}

TEST_F(LyricsTest, FailsWithoutAFileWhereThereAreNoWords)
{
    const Result result = Run({"lyrics", MakeBlocks(), "--out", In("none.txt")});
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.error, "lantern-tool: No words found: " + In("blocks.cdg") + "\n");
    EXPECT_FALSE(std::filesystem::exists(In("none.txt")));
}

TEST_F(LyricsTest, LeavesNothingWhereItCanNotWrite)
{
    const std::string song = MakeSong("song.cdg");
    const std::string file = Make("file", "");
    const Result inFile = Run({"lyrics", song, "--out", file + "/song.txt"});
    EXPECT_EQ(inFile.code, 1);
    EXPECT_THAT(inFile.error, StartsWith("lantern-tool: Cannot write " + file + "/song.txt"));
    // As on a full disk, as far as what is written goes.
    const Result full = Run({"lyrics", song}, R"(exec >/dev/full; OUT=/dev/full; exec)");
    EXPECT_EQ(full.code, 1);
    EXPECT_EQ(std::ranges::count(full.error, '\n'), 1);
}

// Packets of any bits, those of scrolls, presets and colours among them.
TEST_F(LyricsTest, EndsInBoundsWithPacketsOfNoise)
{
    constexpr int kCount = 5000;
    std::mt19937 random(5);
    std::vector<CdgPacket> packets;
    for (int i = 0; i < kCount; ++i) {
        constexpr std::array<std::uint8_t, 8> kInstructions = {1, 6, 6, 38, 20, 24, 30, 31};
        CdgPacket packet = Packet(kInstructions[random() % kInstructions.size()], {});
        for (std::uint8_t& byte : packet.PacketData)
            byte = static_cast<std::uint8_t>(random());
        packets.push_back(packet);
    }
    const std::string noise = Make("noise.cdg", Bytes(packets));
    const Result result = Run({"lyrics", noise}, kBounds);
    EXPECT_TRUE(result.code == 0 || result.code == 1) << result.code;
    EXPECT_EQ(std::ranges::count(result.error, '\n'), result.code);
}

} // namespace
} // namespace lantern
