// SPDX-License-Identifier: GPL-3.0-or-later
// What is remembered of songs, and how loud they are: by hand, and as it is heard.
#include "Journey.h"
#include "ScreenWindow.h"

#include <csignal>
#include <filesystem>
#include <random>

namespace lantern::test {
namespace {

constexpr double kSeconds = 60;
constexpr std::size_t kWavHeaderBytes = 44;

class Songs : public Journey {
protected:
    const ScreenWindow main{screen, kMainTitle};
    const ScreenWindow stage{screen, "Lyric Lantern CDG Player Stage"};

    // A tone track that draws something of its own.
    std::filesystem::path WriteSong(const std::string& stem, int row, double loudness = kLoudness)
    {
        SoundSheet sheet(kSeconds);
        sheet.Add({.length = kSeconds, .frequency = 440.0, .left = loudness, .right = loudness});
        const std::filesystem::path path = WritePlainTrack(stem, kSeconds, sheet);
        PacketSheet packets(kSeconds);
        packets.Put(1, Packet::LoadColoursLow({0xFF000000, kPicture, kBorder}));
        packets.Put(2, Packet::MemoryPreset(1));
        packets.Put(3, Packet::BorderPreset(2));
        packets.Put(4, Packet::Tile(5, row, 1, 1, {}));
        packets.Write(path);
        return path;
    }
    void Rename(const std::string& from, const std::string& to)
    {
        for (const char* extension : {".cdg", ".wav"})
            std::filesystem::rename(folder / (from + extension), folder / (to + extension));
    }
    std::filesystem::path Zip(const std::string& stem)
    {
        OutputOf({.arguments = {"zip", "-q", "-j", (folder / (stem + ".zip")).string(),
                                (folder / (stem + ".cdg")).string(),
                                (folder / (stem + ".wav")).string()}});
        return folder / (stem + ".zip");
    }
    // As a drive reads the disc.
    std::filesystem::path Disc(const std::string& stem)
    {
        const std::string packets = ReadFile(folder / (stem + ".cdg"));
        const std::string samples = ReadFile(folder / (stem + ".wav")).substr(kWavHeaderBytes);
        std::string disc;
        for (std::size_t i = 0; (i + 1) * 96 <= packets.size(); ++i)
            disc += samples.substr(i * 2352, 2352) + packets.substr(i * 96, 96);
        WriteFile(folder / (stem + ".bin"), disc);
        return folder / (stem + ".bin");
    }
    void WriteStage(const std::string& lines)
    {
        std::filesystem::create_directories(home.SettingsFile().parent_path());
        WriteFile(home.SettingsFile().parent_path() / "data_stage.ini", lines);
    }
    std::filesystem::path SongsFile() const
    {
        return home.Folder() / "home" / ".local" / "state" / "Lyric Lantern" / "songs.db";
    }
    // Key by half tones from the tone as it is.
    ::testing::AssertionResult AwaitKey(int key)
    {
        return AwaitTone(440.0 * std::exp2(key / 12.0));
    }
    void ChangeKey(int down)
    {
        hand.Key("k");
        Keys("Down", down);
    }
};

TEST_F(Songs, ASongKeepsItsKeyUnderEachNameAndInEachForm)
{
    OpenTrack(WriteSong("song", 3));
    EXPECT_FALSE(std::filesystem::exists(SongsFile()));
    hand.Key("F2");
    ASSERT_TRUE(stage.HasKeyboardSoon());
    Keys("Tab", 5);
    hand.Key("space");
    hand.Key("Escape");
    ASSERT_TRUE(main.HasKeyboardSoon());
    ChangeKey(2);
    EXPECT_TRUE(AwaitKey(-2));
    Leave();
    EXPECT_TRUE(std::filesystem::exists(SongsFile()));

    OpenTrack(WriteSong("other", 5));
    EXPECT_TRUE(AwaitKey(0));
    ChangeKey(4);
    EXPECT_TRUE(AwaitKey(-4));
    std::this_thread::sleep_for(1s); // a busy disk takes a moment to keep it
    player->Program().Signal(SIGKILL);
    player->Program().WaitForExit(kPatience);

    Rename("song", "renamed");
    OpenTrack(folder / "renamed.cdg");
    EXPECT_TRUE(AwaitKey(-2));
    Leave();
    OpenTrack(Zip("renamed"));
    EXPECT_TRUE(AwaitKey(-2));
    Leave();
    OpenTrack(Disc("renamed"));
    EXPECT_TRUE(AwaitKey(-2));
    Leave();
    OpenTrack(folder / "other.cdg");
    EXPECT_TRUE(AwaitKey(-4));
}

TEST_F(Songs, LoudAndQuietSongsAreEquallyLoudTheSecondTimeFromTheStart)
{
    WriteStage("evenloudness\tY\r\n");
    // As loud as a tone of -16 LUFS at this frequency.
    constexpr double kEven = 0.1213;
    for (const auto& [stem, loudness] : {std::pair("loud", 0.8), std::pair("quiet", 0.06)}) {
        OpenTrack(WriteSong(stem, 3, loudness));
        EXPECT_TRUE(AwaitLevel(Side::Left, kEven, 0.003)) << stem;
        EXPECT_TRUE(AwaitLevel(Side::Right, kEven, 0.003)) << stem;
        Leave();
    }
    const Moment before = Clock::now();
    OpenTrack(folder / "quiet.cdg");
    std::this_thread::sleep_for(500ms); // until its start has been heard
    const std::vector<float> start = ears.Heard().Between(before, Clock::now());
    const auto isLoud = [](float sample) { return sample > 0.01F; };
    const auto first = std::ranges::find_if(start, isLoud);
    ASSERT_GT(start.end() - first, 2 * 4410);
    const auto from = static_cast<std::size_t>(first - start.begin()) / 2 * 2;
    EXPECT_NEAR(Level(std::span(start).subspan(from, 2 * 4410)), kEven, 0.005);

    hand.Key("F2");
    ASSERT_TRUE(stage.HasKeyboardSoon());
    Keys("Tab", 6);
    hand.Key("space");
    EXPECT_TRUE(AwaitLevel(Side::Left, 0.06 / std::sqrt(2.0), 0.001));
}

TEST_F(Songs, AFileOfNoUseCostsTheMemoryAndNotTheEvening)
{
    WriteStage("remembertunes\tY\r\nevenloudness\tY\r\n");
    std::filesystem::create_directories(SongsFile().parent_path());
    std::string random(30'000, '\0');
    std::mt19937 chance(3);
    for (char& byte : random)
        byte = static_cast<char>(chance());
    const std::filesystem::path track = WriteSong("song", 3);
    for (const char* kind : {"random", "folder", "locked"}) {
        std::filesystem::remove_all(SongsFile());
        std::unique_ptr<Process> holder;
        if (kind == std::string("random")) {
            WriteFile(SongsFile(), random);
        } else if (kind == std::string("folder")) {
            std::filesystem::create_directory(SongsFile());
        } else {
            const std::string hold = "import sqlite3, time; file = sqlite3.connect('" +
                                     SongsFile().string() +
                                     "'); file.execute('BEGIN EXCLUSIVE'); time.sleep(60)";
            holder =
                std::make_unique<Process>(Process::Command{.arguments = {"python3", "-c", hold}});
            ASSERT_TRUE(Eventually([&] { return std::filesystem::exists(SongsFile()); }));
            std::this_thread::sleep_for(200ms);
        }
        OpenTrack(track);
        EXPECT_TRUE(AwaitKey(0)) << kind;
        ChangeKey(3);
        EXPECT_TRUE(AwaitKey(-3)) << kind;
        Leave();
    }
}

} // namespace
} // namespace lantern::test
