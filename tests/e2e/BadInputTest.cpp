// SPDX-License-Identifier: GPL-3.0-or-later
#include "Journey.h"
#include "PulseServer.h"

#include <fcntl.h>
#include <random>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace lantern::test {
namespace {

constexpr const char* kTitle = "Lyric Lantern CDG Player";
// Sanitizers and a busy machine slow the program, not what it waits for.
constexpr Clock::duration kAnswerWithin = 5s;

std::string RandomBytes(std::size_t count)
{
    std::mt19937 random(3);
    std::string bytes(count, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(random());
    return bytes;
}

// Inputs that nobody should give and somebody will. Whatever they are, the player answers at once
// and leaves when told to; the fixture checks the latter after each.
class BadInput : public Journey {
protected:
    std::filesystem::path Write(const std::string& name, std::string_view bytes)
    {
        WriteFile(folder / name, bytes);
        return folder / name;
    }

    // Opens it and looks for signs of life for a second and a half.
    void ExpectToSurvive(const std::string& argument)
    {
        ASSERT_NO_FATAL_FAILURE(StartPlayer({argument}));
        ExpectAnswers(1500ms);
        hand.Key("p");
        hand.Key("Right");
        ExpectAnswers(500ms);
    }

    void ExpectAnswers(Clock::duration howLong)
    {
        const Moment end = Clock::now() + howLong;
        while (Clock::now() < end) {
            ASSERT_TRUE(player->AnswerTime(kAnswerWithin)) << "no answer";
            std::this_thread::sleep_for(50ms);
        }
        ASSERT_TRUE(player->Program().IsRunning()) << player->Log();
    }
};

TEST_F(BadInput, AMissingFile)
{
    ExpectToSurvive((folder / "none.cdg").string());
}

TEST_F(BadInput, AnEmptyPacketFile)
{
    ExpectToSurvive(Write("empty.cdg", "").string());
}

TEST_F(BadInput, AnEmptyAudioFile)
{
    ExpectToSurvive(Write("empty.mp3", "").string());
}

TEST_F(BadInput, RandomPackets)
{
    ExpectToSurvive(Write("noise.cdg", RandomBytes(240'000)).string());
}

TEST_F(BadInput, RandomBytesAsEachKindOfFile)
{
    for (const char* type : {"mp3", "wav", "ogg", "flac", "mod", "bin", "zip"}) {
        SCOPED_TRACE(type);
        ExpectToSurvive(Write(std::string("noise.") + type, RandomBytes(100'000)).string());
        Leave();
    }
}

TEST_F(BadInput, PacketsBesideNoise)
{
    const std::filesystem::path track = WriteToneTrack("song", 10.0);
    std::filesystem::remove(folder / "song.wav");
    Write("song.mp3", RandomBytes(50'000));
    ASSERT_NO_FATAL_FAILURE(StartPlayer({track.string()}));
    EXPECT_TRUE(AwaitPicture(kPicture)) << "the picture plays against silence";
    ExpectAnswers(500ms);
}

TEST_F(BadInput, ACutSoundFile)
{
    const std::filesystem::path track = WriteToneTrack("song", 10.0);
    const std::string whole = ReadFile(folder / "song.wav");
    Write("song.wav", whole.substr(0, whole.size() / 3));
    OpenTrack(track);
    ExpectAnswers(4s);
    EXPECT_TRUE(AwaitPicture(kPicture, 10ms)) << "the picture goes on after the sound's end";
}

TEST_F(BadInput, APipeThatNobodyWritesTo)
{
    for (const char* name : {"pipe.cdg", "pipe.mp3"}) {
        ASSERT_EQ(mkfifo((folder / name).c_str(), 0600), 0);
        ExpectToSurvive((folder / name).string());
        Leave();
        std::filesystem::remove(folder / name);
    }
}

TEST_F(BadInput, AnEndlessDevice)
{
    for (const char* name : {"zero.cdg", "zero.mp3"}) {
        std::filesystem::create_symlink("/dev/zero", folder / name);
        ExpectToSurvive((folder / name).string());
        EXPECT_LT(player->Program().ResidentKibibytes(), 1'000'000);
        Leave();
    }
}

TEST_F(BadInput, AFolder)
{
    std::filesystem::create_directory(folder / "folder.cdg");
    ExpectToSurvive((folder / "folder.cdg").string());
}

TEST_F(BadInput, AFileThatMayNotBeRead)
{
    const std::filesystem::path track = WriteToneTrack("song", 10.0);
    std::filesystem::permissions(track, std::filesystem::perms::none);
    ExpectToSurvive(track.string());
}

TEST_F(BadInput, ALoopOfLinks)
{
    std::filesystem::create_symlink(folder / "loop.cdg", folder / "loop.cdg");
    ExpectToSurvive((folder / "loop.cdg").string());
}

TEST_F(BadInput, ANameThatIsNoTextPlaysAllTheSame)
{
    OpenTrack(WriteToneTrack("Caf\xE9 \xFF '$(x)' \xE6\xBC\xA2", 10.0));
    Leave();
}

TEST_F(BadInput, ABrokenSettingsFile)
{
    WriteSettings("zoom\tnonsense\r\nvolume\t\r\nspeed\t1e999\r\nkeypitch\t99999999999\r\n" +
                  RandomBytes(5000));
    OpenTrack(WriteToneTrack("song", 10.0));
    ExpectAnswers(500ms);
}

TEST_F(BadInput, ASettingsFolderThatCannotBeMade)
{
    // A file stands where the folder belongs: the start says so, and goes on.
    WriteFile(home.Folder() / "appdata" / "Lyric Lantern", "in the way");
    player =
        std::make_unique<Player>(screen, sound.Environment(), home,
                                 PlayerStart{.arguments = {WriteToneTrack("song", 10.0).string()}});
    ASSERT_TRUE(player->AwaitWindowTitled("Cannot Write to Settings File"));
    hand.Key("Return");
    ASSERT_TRUE(player->AwaitWindow());
    EXPECT_TRUE(AwaitPicture(kPicture));
    hand.Key("ctrl+q");
    ASSERT_TRUE(player->AwaitWindowTitled("Cannot Write to Settings File"));
    hand.Key("Return");
    EXPECT_EQ(player->Program().WaitForExit(kPatience), 0);
}

class BadSound : public BadInput {
protected:
    void ExpectMessageAndEnd(const EnvironmentChanges& soundServer)
    {
        player = std::make_unique<Player>(screen, soundServer, home);
        ASSERT_TRUE(player->AwaitWindowTitled(kTitle));
        std::this_thread::sleep_for(200ms);
        KeepPicture(eyes.Screen(), "no-sound-message");
        EXPECT_EQ(player->Windows().size(), 1U) << "nothing but the message";
        hand.Key("Return");
        const std::optional<int> code = player->Program().WaitForExit(kPatience);
        ASSERT_TRUE(code);
        EXPECT_LT(*code, 128) << "it crashed: " << player->Log();
    }
};

TEST_F(BadSound, NoServerIsToldInAMessage)
{
    ExpectMessageAndEnd({{"PULSE_SERVER", "unix:" + (folder / "nobody").string()}});
}

TEST_F(BadSound, AServerWithoutDevicesIsToldInAMessage)
{
    const PulseServer silent{std::vector<PulseSink>{}};
    ExpectMessageAndEnd(silent.Environment());
}

TEST_F(BadSound, AServerThatAnswersLateIsWaitedFor)
{
    sound.Freeze();
    std::jthread thaw([this] {
        std::this_thread::sleep_for(1500ms);
        sound.Thaw();
    });
    ASSERT_NO_FATAL_FAILURE(OpenTrack(WriteToneTrack("song", 60.0)));
}

TEST_F(BadSound, AServerThatDiesWhilePlayingMayComeBack)
{
    OpenTrack(WriteToneTrack("song", 120.0));
    for (int round = 0; round < 3; ++round) {
        sound.Kill();
        ExpectAnswers(1s);
        sound.Restart();
        const Ears again(sound, "studio");
        ExpectAnswers(1s);
        const auto isHeard = [&] { return Level(again.HeardLately(200ms)) > 0.1; };
        // It may have paused; then the play key goes on.
        if (!Eventually(isHeard, 4s))
            hand.Key("p");
        EXPECT_TRUE(Eventually(isHeard, kPatience)) << "round " << round;
    }
    EXPECT_TRUE(AwaitPicture(kPicture, 100ms));
}

TEST_F(BadSound, AServerThatStopsAnsweringStopsOnlyTheSound)
{
    OpenTrack(WriteToneTrack("song", 60.0));
    sound.Freeze();
    ExpectAnswers(3s);
    hand.Key("m");
    hand.Key("Right");
    ExpectAnswers(1s);
    sound.Thaw();
    hand.Key("m");
    EXPECT_TRUE(AwaitSound());
}

TEST_F(BadSound, ADeviceThatGoesHandsTheSoundToAnother)
{
    sound.AddSink({"stage", "Stage HDMI Output"});
    const Ears stageEars(sound, "stage");
    OpenTrack(WriteToneTrack("song", 60.0));
    sound.RemoveSink("studio");
    EXPECT_TRUE(Eventually([&] { return Level(stageEars.HeardLately(200ms)) > 0.1; }, kPatience));
    ExpectAnswers(500ms);
}

TEST_F(BadSound, TheLastDeviceMayGoAndComeBack)
{
    OpenTrack(WriteToneTrack("song", 60.0));
    sound.RemoveSink("studio");
    ExpectAnswers(1500ms);
    hand.Key("Right");
    ExpectAnswers(500ms);
    sound.AddSink({"studio", "Studio Speakers"});
    const Ears again(sound, "studio");
    const auto isHeard = [&] { return Level(again.HeardLately(200ms)) > 0.1; };
    if (!Eventually(isHeard, 4s))
        hand.Key("p");
    EXPECT_TRUE(Eventually(isHeard, kPatience));
}

} // namespace
} // namespace lantern::test
