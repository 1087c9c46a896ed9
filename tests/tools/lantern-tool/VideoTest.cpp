// SPDX-License-Identifier: GPL-3.0-or-later
#include "DecodedFilm.h"
#include "LanternToolFixture.h"

#include <QRect>

#include <cmath>
#include <csignal>
#include <filesystem>
#include <random>

namespace lantern {
namespace {

using ::testing::HasSubstr;

constexpr int kRate = 44100;
constexpr int kPlaces = 30; // in a second
constexpr std::uint8_t kBorderPreset = 2;

// Sixteen bits, stereo.
std::string WavOf(const std::vector<std::int16_t>& samples)
{
    const auto size = samples.size() * sizeof(std::int16_t);
    const auto header = WavHeader(static_cast<std::uint32_t>(size));
    return std::string(header.begin(), header.end()) +
           std::string(reinterpret_cast<const char*>(samples.data()), size);
}

// The moments at which something begins that has been off for a while.
template <typename IsOn>
std::vector<double> Onsets(std::size_t count, double perSecond, IsOn isOn)
{
    std::vector<double> onsets;
    auto lastOn = -perSecond;
    for (std::size_t i = 0; i < count; ++i) {
        if (!isOn(i))
            continue;
        if (static_cast<double>(i) - lastOn > 0.2 * perSecond)
            onsets.push_back(static_cast<double>(i) / perSecond);
        lastOn = static_cast<double>(i);
    }
    return onsets;
}

class VideoTest : public LanternToolTest {
protected:
    // The search for leaks takes the variables that threads have of some modules for where they are
    // not, and then dies.
    Result Run(const Words& words, const std::string& before = "exec")
    {
        return LanternToolTest::Run(words, before, {{"ASAN_OPTIONS", "intercept_tls_get_addr=0"}});
    }
    // Blocks and colours that come and go, on a blue border, for so many packets.
    std::string MakeSong(int packets, const std::string& name = "song.cdg",
                         const CdgPacket& colours = PrimaryColours())
    {
        std::mt19937 random(5);
        std::vector<CdgPacket> song = {colours, Fill(1), Packet(kBorderPreset, {3})};
        while (static_cast<int>(song.size()) < packets) {
            const bool draws = random() % 7 == 0;
            song.push_back(draws ? Block(static_cast<std::uint8_t>(random() % 4),
                                         static_cast<std::uint8_t>(random() % 18),
                                         static_cast<std::uint8_t>(random() % 50))
                                 : CdgPacket());
        }
        return Make(name, Bytes(song));
    }
    test::DecodedFilm Film(const std::string& track, const std::string& film, const Words& more)
    {
        Words words = {"video", track, "--out", In(film)};
        words.insert(words.end(), more.begin(), more.end());
        const Result result = Run(words);
        EXPECT_EQ(result.code, 0) << result.error;
        EXPECT_EQ(result.output + result.error, "");
        return result.code == 0 ? test::DecodeFilm(In(film)) : test::DecodedFilm();
    }
    // What `frame` draws after the packets, within a blue border.
    std::vector<std::string> Wanted(const std::string& track, QSize film, const QRect& place,
                                    const std::vector<int>& packets, const Words& more)
    {
        std::string list;
        for (const int packet : packets)
            list += (list.empty() ? "" : ",") + std::to_string(packet);
        Words words = {
            "frame",  track,
            "--size", std::to_string(place.width()) + 'x' + std::to_string(place.height()),
            "--out",  In("p%d.png"),
            "--force"};
        words.insert(words.end(), {"--packet", list});
        words.insert(words.end(), more.begin(), more.end());
        const Result result = Run(words);
        EXPECT_EQ(result.code, 0) << result.error;
        std::vector<std::string> wanted;
        for (const int packet : packets) {
            const QImage image(QString::fromStdString(In("p" + std::to_string(packet) + ".png")));
            std::string& rgb = wanted.emplace_back();
            for (int y = 0; y < film.height(); ++y) {
                for (int x = 0; x < film.width(); ++x) {
                    const QRgb pixel = place.contains(x, y)
                                           ? image.pixel(QPoint(x, y) - place.topLeft())
                                           : (packet < 3 ? kBlackPixel : kBlue);
                    for (const int part : {qRed(pixel), qGreen(pixel), qBlue(pixel)})
                        rgb += static_cast<char>(part);
                }
            }
        }
        return wanted;
    }
    // Each picture, of so many at least, is what `frame` draws at its time. Of larger ones than
    // are asked for here Qt converts the colours on threads, which the thread sanitizer can't
    // follow.
    void ExpectFrames(const std::string& track, const std::string& name, QSize size,
                      const QRect& place, int leastPictures, double leastDecibels,
                      const Words& more = {})
    {
        Words words = {"--size",
                       std::to_string(size.width()) + 'x' + std::to_string(size.height())};
        words.insert(words.end(), more.begin(), more.end());
        const test::DecodedFilm film = Film(track, name, words);
        ASSERT_EQ(QSize(film.width, film.height), size);
        std::vector<int> packets;
        for (const test::FilmStill& still : film.pictures)
            packets.push_back(static_cast<int>(std::lround(still.seconds * 1000)) *
                              kPacketsPerSecond / 1000);
        EXPECT_GE(static_cast<int>(packets.size()), leastPictures);
        const std::vector<std::string> wanted = Wanted(track, size, place, packets, more);
        for (std::size_t i = 0; i < packets.size(); ++i)
            EXPECT_GE(test::PeakSignalToNoise(film.pictures[i].rgb, wanted[i]), leastDecibels)
                << name << ' ' << film.pictures[i].seconds;
    }
    // White flashes with clicks, twice a second.
    std::string MakeFlashes(int seconds)
    {
        std::vector<CdgPacket> song(static_cast<std::size_t>(seconds) * kPacketsPerSecond);
        std::vector<std::int16_t> sound(static_cast<std::size_t>(seconds) * kRate * 2);
        song[0] = Packet(30, {0, 0, 0x3F, 0x3F});
        for (int flash = 1; flash < 2 * seconds; ++flash) {
            const std::size_t packet = static_cast<std::size_t>(flash) * kPacketsPerSecond / 2;
            song[packet] = Fill(1);
            song[packet + 30] = Fill(0);
            const std::size_t click = static_cast<std::size_t>(flash) * kRate / 2;
            for (std::size_t i = 0; i < kRate / 20; ++i)
                sound[2 * (click + i)] = sound[2 * (click + i) + 1] = static_cast<std::int16_t>(
                    20000 * std::sin(static_cast<double>(i) * 2 * 3.14159265 * 1000 / kRate));
        }
        Make("flash.wav", WavOf(sound));
        return Make("flash.cdg", Bytes(song));
    }
    void ExpectFlashesWithClicks(const test::DecodedFilm& film, std::size_t count,
                                 double atMost = 1.0 / kPlaces)
    {
        const auto pixel = film.height / 2 * film.width + film.width / 2;
        const auto middle = static_cast<std::size_t>(pixel) * 3;
        std::vector<double> flashes;
        for (std::size_t i = 1; i < film.pictures.size(); ++i)
            if (static_cast<std::uint8_t>(film.pictures[i].rgb[middle]) > 128 &&
                static_cast<std::uint8_t>(film.pictures[i - 1].rgb[middle]) < 128)
                flashes.push_back(film.pictures[i].seconds);
        const std::vector<double> clicks =
            Onsets(film.stereo.size() / 2, film.soundRate,
                   [&](std::size_t i) { return std::abs(film.stereo[2 * i]) > 0.2F; });
        ASSERT_EQ(flashes.size(), count);
        ASSERT_EQ(clicks.size(), count);
        for (std::size_t i = 0; i < count; ++i)
            EXPECT_NEAR(flashes[i], clicks[i], atMost) << i;
    }
    int FilesInFolder() const
    {
        int count = 0;
        for ([[maybe_unused]] const auto& entry :
             std::filesystem::directory_iterator(m_folder.Path()))
            ++count;
        return count;
    }
};

TEST_F(VideoTest, AnExactFilmShowsWhatFrameDraws)
{
    // As much of it as a disc's border leaves, in its own proportions, and in the middle.
    ExpectFrames(MakeSong(450), "a.mkv", {320, 180}, QRect(40, 10, 240, 160), 30, 99);
}

TEST_F(VideoTest, AnExactFilmShowsWhatFrameDrawsSmooth)
{
    ExpectFrames(MakeSong(120), "a.mkv", {451, 400}, QRect(9, 56, 432, 288), 9, 99, {"--smooth"});
}

// Its encoder asks for far more memory than it needs, and of a sound's decoder that would be
// refused.
TEST_F(VideoTest, AnExactFilmWithSoundMayBeLarge)
{
    const std::string track = MakeSong(40);
    Make("song.wav", SilentWav(2000));
    const Result result = Run({"video", track, "--size", "2300x1100", "--out", In("a.mkv")});
    EXPECT_EQ(result.code, 0) << result.error;
    EXPECT_THAT(test::ProbeFilm(In("a.mkv"), "stream=width,height"), HasSubstr("2300,1100\n"));
}

TEST_F(VideoTest, FilmsForPlayersShowItClosely)
{
    // White, cream and black on blue: as words are. What is small and of bright colours loses more,
    // as such a film has one colour for four pixels.
    const std::string words =
        MakeSong(150, "words.cdg", Packet(30, {0, 0, 0x3F, 0x3F, 0x33, 0x0A, 0, 0x0F}));
    ExpectFrames(words, "a.mp4", {576, 324}, QRect(72, 18, 432, 288), 10, 34);
    ExpectFrames(words, "a.webm", {576, 324}, QRect(72, 18, 432, 288), 10, 34);
}

TEST_F(VideoTest, PicturesStandOnlyWhereSomethingChanges)
{
    std::vector<CdgPacket> song(750);
    song[0] = PrimaryColours();
    song[1] = Fill(1);
    song[299] = Fill(2);
    song[500] = Fill(3);
    const test::DecodedFilm film =
        Film(Make("few.cdg", Bytes(song)), "few.mp4", {"--size", "64x48"});
    std::vector<int> places;
    for (const auto& still : film.pictures)
        places.push_back(static_cast<int>(std::lround(still.seconds * 1000)));
    // Where the packets are due, each second, and at the end; the second one comes too soon.
    EXPECT_EQ(places, (std::vector<int>{0, 34, 1000, 1670, 2499}));
    EXPECT_NEAR(film.seconds, 2.5, 0.05);
}

TEST_F(VideoTest, FlashesComeWithTheirClicks)
{
    const std::string track = MakeFlashes(5);
    for (const char* name : {"a.mp4", "a.webm", "a.mkv"}) {
        SCOPED_TRACE(name);
        ExpectFlashesWithClicks(Film(track, name, {"--size", "64x48"}), 9, 0.01);
    }
}

TEST_F(VideoTest, FlashesComeWithTheirClicksInAnotherKeyAtAnotherSpeed)
{
    const std::string track = MakeFlashes(5);
    const std::vector<std::pair<Words, double>> changes = {
        {{"--key", "3", "--speed", "25"}, 4.0},
        {{"--key", "-4", "--speed", "-20"}, 6.25},
    };
    for (const auto& [words, seconds] : changes) {
        Words all = {"--size", "64x48", "--force"};
        all.insert(all.end(), words.begin(), words.end());
        const test::DecodedFilm film = Film(track, "a.mp4", all);
        ExpectFlashesWithClicks(film, 9);
        EXPECT_NEAR(film.seconds, seconds, 0.05);
    }
}

TEST_F(VideoTest, APartOfASongIsAFilm)
{
    const std::string track = MakeFlashes(6);
    const test::DecodedFilm film =
        Film(track, "a.mp4", {"--size", "64x48", "--from", "1.75", "--to", "4.25"});
    ExpectFlashesWithClicks(film, 5);
    EXPECT_NEAR(film.seconds, 2.5, 0.05);
    ASSERT_FALSE(film.pictures.empty());
    EXPECT_NEAR(film.pictures[0].seconds, 0, 0.001);
}

TEST_F(VideoTest, AnExactFilmSoundsByTheSample)
{
    std::mt19937 random(6);
    std::vector<std::int16_t> samples(2 * 30011); // not so many whole milliseconds
    for (std::int16_t& sample : samples)
        sample = static_cast<std::int16_t>(random());
    Make("a.wav", WavOf(samples));
    const test::DecodedFilm film =
        Film(Make("a.cdg", Bytes(Blocks(200))), "a.mkv", {"--size", "32x32"});
    EXPECT_EQ(film.soundRate, kRate);
    ASSERT_EQ(film.stereo.size(), samples.size());
    int wrong = 0;
    for (std::size_t i = 0; i < samples.size(); ++i)
        wrong += film.stereo[i] == static_cast<float>(samples[i]) / 32768 ? 0 : 1;
    EXPECT_EQ(wrong, 0);
}

TEST_F(VideoTest, ASongThatOutlastsItsSoundEndsInSilence)
{
    std::mt19937 random(7);
    std::vector<std::int16_t> samples(kRate); // half a second
    for (std::int16_t& sample : samples)
        sample = static_cast<std::int16_t>(random() % 10000);
    Make("a.wav", WavOf(samples));
    const std::string track = MakeSong(600, "a.cdg");
    for (const char* name : {"a.mkv", "a.webm"}) {
        const test::DecodedFilm film = Film(track, name, {"--size", "32x32"});
        EXPECT_NEAR(film.seconds, 2, 0.05);
        EXPECT_NEAR(static_cast<double>(film.stereo.size()) / 2 / film.soundRate, 2, 0.03);
        const auto loudest = [&](double from, double to) {
            float most = 0;
            for (double at = from; at < to; at += 1.0 / film.soundRate)
                most = std::max(most, std::abs(film.stereo.at(
                                          2 * static_cast<std::size_t>(at * film.soundRate))));
            return most;
        };
        EXPECT_GT(loudest(0.1, 0.4), 0.1F) << name;
        EXPECT_LT(loudest(0.6, 1.9), 0.05F) << name; // of what Opus filters away
        EXPECT_LT(loudest(1.5, 1.9), 0.002F) << name;
    }
}

TEST_F(VideoTest, TheNameTellsTitleAndArtist)
{
    const std::string track = MakeSong(10, "AB0123-04 - Ĉu Vi - La Kanto.cdg");
    Film(track, "a.mp4", {"--size", "32x32"});
    EXPECT_EQ(test::ProbeFilm(In("a.mp4"), "format_tags=title"), "La Kanto\n");
    EXPECT_EQ(test::ProbeFilm(In("a.mp4"), "format_tags=artist"), "Ĉu Vi\n");
}

TEST_F(VideoTest, EachOfSeveralTracksIsAFilm)
{
    MakeSong(30, "one.cdg");
    MakeSong(30, "two.cdg");
    const Result result =
        Run({"video", In("one.cdg"), In("two.cdg"), "--size", "32x32", "--out", In("%t.webm")});
    EXPECT_EQ(result.code, 0) << result.error;
    for (const char* name : {"one.webm", "two.webm"})
        EXPECT_NEAR(test::DecodeFilm(In(name)).seconds, 0.1, 0.05) << name;
}

TEST_F(VideoTest, BadOptionsAreRefusedInALine)
{
    const std::string track = MakeSong(30);
    const auto refused = [&](const Words& more, const std::string& error) {
        Words words = {"video", track};
        words.insert(words.end(), more.begin(), more.end());
        ExpectFailure(words, error);
    };
    refused({}, "video needs --out FILE");
    refused({"--out", In("a.avi")}, "--out is no .mp4, .webm or .mkv");
    refused(
        {"--out", In("a.mp4"), "--size", "65x48"},
        "Bad value for --size: '65x48' (the sides of a .mp4 film have an even number of pixels)");
    refused({"--out", In("a.mkv"), "--size", "15x48"},
            "Bad value for --size: '15x48' (a film has 16 to 4096 pixels to a side)");
    refused({"--out", In("a.mkv"), "--size", "big"}, "Bad value for --size: 'big'");
    refused({"--out", In("a.mkv"), "--fps", "0"}, "Bad value for --fps: '0'");
    refused({"--out", In("a.mkv"), "--fps", "121"}, "Bad value for --fps: '121'");
    refused({"--out", In("a.mkv"), "--key", "11"}, "Bad value for --key: '11'");
    refused({"--out", In("a.mkv"), "--speed", "-91"}, "Bad value for --speed: '-91'");
    refused({"--out", In("a.mkv"), "--from", "nan"}, "Bad value for --from: 'nan'");
    refused({"--out", In("a.mkv"), "--from", "2", "--to", "2"}, "--to is not behind --from");
    refused({"--out", In("a.mkv"), "--from", "0.1"}, "--from is behind the end of " + track);
    EXPECT_EQ(FilesInFolder(), 3); // the track, what was printed and what went wrong
}

TEST_F(VideoTest, WhatCannotBeWrittenLeavesNothing)
{
    const std::string track = MakeSong(30);
    const std::string film = Make("a.mp4", "something");
    ExpectFailure({"video", track, "--out", film},
                  "Cannot write " + film + ": it exists (--force replaces it)");
    EXPECT_EQ(test::ReadFile(film), "something");
    ExpectFailure({"video", track, "--out", In("no/a.mp4")},
                  "Cannot write " + In("no/a.mp4") + ": No such file or directory");
    // The disk is full for a file that may not grow.
    const Result result =
        Run({"video", track, "--out", In("b.mkv")}, "ulimit -f 1; trap '' XFSZ; exec");
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.error, "lantern-tool: Cannot write " + In("b.mkv") + ": File too large\n");
    EXPECT_EQ(FilesInFolder(), 4);
}

TEST_F(VideoTest, DamagedTracksEndInALine)
{
    Make("a.cdg", "short");
    ExpectFailure({"video", In("a.cdg"), "--out", In("a.mp4")}, "Nothing to play: " + In("a.cdg"));
    Make("b.zip", "PK\3\4 and no more");
    const Result result = Run({"video", In("b.zip"), "--out", In("a.mp4")});
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(std::ranges::count(result.error, '\n'), 1);
    // A sound that is none is none.
    std::string noise(20000, 'x');
    Make("c.mp3", noise);
    const test::DecodedFilm film = Film(MakeSong(60, "c.cdg"), "c.mp4", {"--size", "32x32"});
    EXPECT_NEAR(film.seconds, 0.2, 0.05);
    EXPECT_FALSE(std::filesystem::exists(In("a.mp4")));
}

TEST_F(VideoTest, AnInterruptionLeavesNothing)
{
    const std::string track = MakeSong(300 * 600); // takes a while
    const int before = FilesInFolder();
    test::Process process({.arguments = {LANTERN_TOOL, "video", track, "--out", In("a.mp4")}});
    const auto until = std::chrono::steady_clock::now() + 30s;
    while (FilesInFolder() == before && std::chrono::steady_clock::now() < until)
        std::this_thread::sleep_for(5ms);
    EXPECT_EQ(FilesInFolder(), before + 1);
    EXPECT_FALSE(std::filesystem::exists(In("a.mp4")));
    process.Signal(SIGINT);
    EXPECT_EQ(process.WaitForExit(30s), 128 + SIGINT);
    EXPECT_EQ(FilesInFolder(), before);
}

} // namespace
} // namespace lantern
