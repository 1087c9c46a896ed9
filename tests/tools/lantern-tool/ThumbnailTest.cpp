// SPDX-License-Identifier: GPL-3.0-or-later
#include "LanternToolFixture.h"

#include <chrono>
#include <sys/stat.h>

namespace lantern {
namespace {

constexpr QRgb kWhite = 0xFFFFFFFF;

// A song as one is made: a title that fades in and out, then pages of words.
class Song {
public:
    explicit Song(int seconds) : m_packets(static_cast<std::size_t>(seconds) * kPacketsPerSecond) {}

    // Each call takes the next packets from that second on.
    Song& At(int second)
    {
        m_next = static_cast<std::size_t>(second) * kPacketsPerSecond;
        return *this;
    }
    Song& Put(const CdgPacket& packet)
    {
        m_packets.at(m_next++) = packet;
        return *this;
    }
    // Entry 0 is black, 1 is as bright as that (0 to 15), 2 is red, 3 is blue.
    Song& Colours(int brightness)
    {
        const auto high = static_cast<std::uint8_t>(brightness << 2 | brightness >> 2);
        const auto low = static_cast<std::uint8_t>((brightness & 3) << 4 | brightness);
        return Put(Packet(30, {0, 0, high, low, 0x3C, 0, 0, 0x0F}));
    }
    // So many letters in colour 1, in lines from that row on.
    Song& Letters(int count, int row = 2)
    {
        for (int i = 0; i < count; ++i) {
            CdgPacket packet = Packet(6, {0, 1, static_cast<std::uint8_t>(row + i / 40),
                                          static_cast<std::uint8_t>(5 + i % 40)});
            // The letter H.
            for (std::size_t line = 6; line < 14; ++line)
                packet.PacketData[line] = line == 9 ? 0x1E : 0x12;
            Put(packet);
        }
        return *this;
    }
    std::string Stream() const { return Bytes(m_packets); }

private:
    std::vector<CdgPacket> m_packets;
    std::size_t m_next = 0;
};

class Thumbnail : public LanternToolTest {
protected:
    QImage Draw(const std::string& track, const std::string& size = "256")
    {
        const Result result =
            Run({"thumbnail", track, "--size", size, "--out", In("thumbnail.png")});
        EXPECT_EQ(result.code, 0) << result.error;
        EXPECT_EQ(result.output + result.error, "");
        return QImage(QString::fromStdString(In("thumbnail.png")), "PNG");
    }
    // Drawn at its own size, a picture has pixels of its own colours.
    static int Count(const QImage& image, QRgb colour)
    {
        int count = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                count += image.pixel(x, y) == colour ? 1 : 0;
        }
        return count;
    }
    static constexpr int kPixelsOfALetter = 7 * 2 + 4;
    int LettersOn(const Song& song)
    {
        const QImage image = Draw(Make("song.cdg", song.Stream()), "288");
        EXPECT_EQ(image.size(), QSize(288, 192));
        return Count(image, kWhite) / kPixelsOfALetter;
    }
};

TEST_F(Thumbnail, ItShowsThePageWithTheMostWords)
{
    Song song(100);
    song.At(30).Colours(15).Letters(20).At(50).Put(Fill(0)).Letters(90).At(70).Put(Fill(0)).Letters(
        50);
    EXPECT_EQ(LettersOn(song), 90);
}

TEST_F(Thumbnail, ItWaitsUntilAPageIsComplete)
{
    Song song(100);
    song.At(30).Colours(15);
    for (int letter = 0; letter < 60; ++letter)
        song.At(31 + letter / 4).Letters(letter + 1);
    EXPECT_EQ(LettersOn(song), 60);
}

TEST_F(Thumbnail, ItIsNotTheTitleHoweverManyWordsThatHas)
{
    Song song(100);
    song.At(1).Colours(15).Letters(300).At(12).Put(Fill(0)).At(30).Letters(40);
    EXPECT_EQ(LettersOn(song), 40);
}

TEST_F(Thumbnail, ItIsNotAPictureThatHasFadedAway)
{
    Song song(100);
    song.At(30).Colours(15).Letters(30).At(50).Colours(1).Letters(90);
    EXPECT_EQ(LettersOn(song), 30);
}

TEST_F(Thumbnail, APatternIsNoText)
{
    Song song(100);
    song.At(30).Colours(15).Letters(30).At(50).Put(Fill(0));
    for (std::uint8_t row = 1; row < 17; ++row) {
        for (std::uint8_t column = 1; column < 17; ++column) {
            CdgPacket packet = Packet(6, {0, 1, row, column});
            std::fill(packet.PacketData.begin() + 4, packet.PacketData.end(),
                      std::uint8_t{0b101010});
            song.Put(packet);
        }
    }
    EXPECT_EQ(LettersOn(song), 30);
}

TEST_F(Thumbnail, AShortSongShowsWhatItHas)
{
    EXPECT_EQ(LettersOn(Song(2).At(0).Colours(15).Letters(20)), 20);
    EXPECT_EQ(LettersOn(Song(60).At(1).Colours(15).Letters(20).At(6).Put(Fill(0))), 20);
}

TEST_F(Thumbnail, WithoutWordsItIsThePictureInTheMiddle)
{
    Song song(100);
    song.At(10).Colours(15).Put(Fill(2)).At(48).Put(Fill(3)).At(53).Put(Fill(2));
    EXPECT_EQ(Draw(Make("song.cdg", song.Stream())).pixel(0, 0), kBlue);
}

TEST_F(Thumbnail, TheSizeIsThatOfTheLongerSide)
{
    const std::string track = Make("song.cdg", Song(10).At(0).Colours(15).Put(Fill(1)).Stream());
    for (const auto& [size, wanted] : std::vector<std::pair<std::string, QSize>>{
             {"1", {1, 1}}, {"128", {128, 85}}, {"256", {256, 170}}, {"1024", {1024, 682}}}) {
        const QImage image = Draw(track, size);
        EXPECT_EQ(image.size(), wanted) << size;
        EXPECT_EQ(Count(image, kWhite), wanted.width() * wanted.height()) << size;
    }
    const Result result = Run({"thumbnail", track, "--out", In("default.png")});
    EXPECT_EQ(result.code, 0) << result.error;
    EXPECT_EQ(QImage(QString::fromStdString(In("default.png"))).size(), QSize(256, 170));
}

TEST_F(Thumbnail, EnlargedItIsSharp)
{
    const std::string track =
        Make("song.cdg", Song(10).At(0).Colours(15).Put(Block(1, 1, 1)).Stream());
    const QImage image = Draw(track, "864");
    EXPECT_EQ(Count(image, kWhite), 18 * 36);
    EXPECT_EQ(image.pixel(17, 35), kWhite);
    EXPECT_EQ(image.pixel(18, 35), kBlackPixel);
    EXPECT_EQ(Count(image, kBlackPixel), 864 * 576 - 18 * 36);
}

TEST_F(Thumbnail, AnyFormOfATrackHasOne)
{
    const Song song = Song(10).At(0).Colours(15).Put(Fill(2));
    Make("a.cdg", song.Stream());
    Make("a.wav", SilentWav(44100));
    for (const char* name : {"a.wav", "a.cdg"})
        EXPECT_EQ(Draw(In(name)).pixel(0, 0), kRed) << name;
    EXPECT_EQ(Draw(Zip("a.zip", {"a.wav", "a.cdg"})).pixel(0, 0), kRed);
}

TEST_F(Thumbnail, SoundBesideThePacketsIsNotLookedAt)
{
    Make("a.cdg", Song(10).At(0).Colours(15).Put(Fill(2)).Stream());
    ASSERT_EQ(mkfifo(In("a.mp3").c_str(), 0600), 0);
    EXPECT_EQ(Draw(In("a.cdg")).pixel(0, 0), kRed);
}

// They take longer to load than the picture takes to draw.
TEST_F(Thumbnail, TheLibrariesOfSoundAreLoadedOnlyWhereASoundIs)
{
    const std::string track = Make("a.cdg", Song(10).At(0).Colours(15).Put(Fill(2)).Stream());
    Make("a.wav", SilentWav(44100));
    const auto loadsThem = [this](const Words& words) {
        std::filesystem::remove_all(In("loaded"));
        std::filesystem::create_directory(In("loaded"));
        EXPECT_EQ(
            Run(words, "exec", {{"LD_DEBUG", "files"}, {"LD_DEBUG_OUTPUT", In("loaded/by")}}).code,
            0);
        std::string loaded;
        for (const auto& entry : std::filesystem::directory_iterator(In("loaded")))
            loaded += test::ReadFile(entry.path());
        EXPECT_NE(loaded.find("libQt6Gui"), std::string::npos) << loaded.size();
        return loaded.find("libavcodec") != std::string::npos;
    };
    EXPECT_FALSE(loadsThem({"thumbnail", track, "--out", In("b.png")}));
    EXPECT_TRUE(loadsThem({"info", track}));
}

TEST_F(Thumbnail, AVeryLongFileIsReadOnlyAtItsBegin)
{
    const std::string track = Make("long.cdg", Song(100).At(30).Colours(15).Letters(20).Stream());
    std::filesystem::resize_file(track, 3'000'000'000U);
    const auto began = std::chrono::steady_clock::now();
    EXPECT_EQ(Count(Draw(track, "288"), kWhite), 20 * kPixelsOfALetter);
    EXPECT_LT(std::chrono::steady_clock::now() - began, 20s);
}

// File managers run it so, as a file may come from anywhere.
TEST_F(Thumbnail, ItWorksInASandboxWithoutNetworkAndEnvironment)
{
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizer looks for leaks in /proc, which the sandbox has not";
#endif
    const std::string track = Make("a.cdg", Song(10).At(0).Colours(15).Put(Fill(2)).Stream());
    const Words sandbox = {"bwrap",      "--unshare-all",
                           "--clearenv", "--die-with-parent",
                           "--ro-bind",  "/usr",
                           "/usr",       "--symlink",
                           "usr/lib",    "/lib",
                           "--symlink",  "usr/lib64",
                           "/lib64",     "--symlink",
                           "usr/bin",    "/bin",
                           "--ro-bind",  LANTERN_TOOL,
                           "/tmp/tool",  "--ro-bind",
                           track,        "/tmp/Lied \xC3\xA4\xFF.cdg",
                           "--bind",     m_folder.Path().native(),
                           "/out"};
    const auto inSandbox = [&](const Words& words) {
        Words all = sandbox;
        all.insert(all.end(), words.begin(), words.end());
        return test::Process({.arguments = all, .log = In("log")}).WaitForExit(30s).value_or(-1);
    };
    if (inSandbox({"/bin/true"}) != 0)
        GTEST_SKIP() << "there can be no sandbox here: " << test::ReadFile(In("log"));
    EXPECT_EQ(inSandbox({"/tmp/tool", "thumbnail", "/tmp/Lied \xC3\xA4\xFF.cdg", "--size", "128",
                         "--out", "/out/sandbox.png"}),
              0)
        << test::ReadFile(In("log"));
    EXPECT_EQ(test::ReadFile(In("log")), "");
    EXPECT_EQ(QImage(QString::fromStdString(In("sandbox.png"))).pixel(0, 0), kRed);
}

TEST_F(Thumbnail, ABadCommandLineIsOneLine)
{
    ExpectFailure({"thumbnail"}, "thumbnail needs --out FILE");
    ExpectFailure({"thumbnail", "--out", "b"}, "no track");
    ExpectFailure({"thumbnail", "a", "--out", "b", "--packet", "1"},
                  "--packet is not for thumbnail");
    ExpectFailure({"info", "a", "--size", "5"}, "--size is not for info");
    ExpectFailure({"frame", "a", "--size", "5", "--packet", "1", "--out", "b"},
                  "Bad value for --size: '5'");
    for (const char* number : {"0", "-1", "x", "", "1.5", "4097"}) {
        ExpectFailure({"thumbnail", "a", "--out", "b", std::string("--size=") + number},
                      std::string("Bad value for --size: '") + number + "'");
    }
}

TEST_F(Thumbnail, ABadFileIsOneLine)
{
    ExpectFailure({"thumbnail", In("none.cdg"), "--out", In("b")},
                  "File not found: " + In("none.cdg"));
    for (const std::size_t size : {0U, 23U}) {
        const std::string track = Make("a.cdg", std::string(size, '\t'));
        ExpectFailure({"thumbnail", track, "--out", In("b")}, "Nothing to play: " + track);
    }
    ASSERT_EQ(mkfifo(In("fifo.cdg").c_str(), 0600), 0);
    ExpectFailure({"thumbnail", In("fifo.cdg"), "--out", In("b")},
                  "Nothing to play: " + In("fifo.cdg"));
    EXPECT_FALSE(std::filesystem::exists(In("b")));
}

} // namespace
} // namespace lantern
