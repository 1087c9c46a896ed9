// SPDX-License-Identifier: GPL-3.0-or-later
// The player under the hands of the desktop: media keys, a remote control of the desktop's own, and
// programs that mean no good.
#include "Journey.h"
#include "SessionBus.h"
#include "StallWatch.h"

#include <cmath>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <gmock/gmock.h>
#include <iostream>
#include <numbers>

namespace lantern::test {
namespace {

using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using ::testing::StartsWith;

constexpr const char* kBusName = "org.mpris.MediaPlayer2.lyric_lantern";
// How far a tone is from one that goes on evenly, at the worst frame of its left side: each sample
// of a pure tone follows from the two before it.
double Unevenness(std::span<const float> stereo, double frequency)
{
    const double turn = 2 * std::cos(2 * std::numbers::pi * frequency / Recording::kRate);
    double most = 0;
    for (std::size_t i = 4; i < stereo.size(); i += 2) {
        const double expected =
            turn * static_cast<double>(stereo[i - 2]) - static_cast<double>(stereo[i - 4]);
        most = std::max(most, std::abs(static_cast<double>(stereo[i]) - expected));
    }
    return most;
}

constexpr double kMostMs = 5.0;
constexpr double kMostOffSeconds = 0.5;
constexpr double kMostUneven = 0.001;
constexpr double kMostOffLevel = 0.001;
// Far less than the sound that waits in the server, but the client and the bus stall, too.
constexpr Clock::duration kSpoilingStall = 30ms;

// What came of a flood of calls.
struct FloodedSound {
    double medianMs = 0;    // of the answers
    double positionOff = 0; // by seconds
    double levelOff = 0;    // of a full scale of 1
    double unevenness = 0;  // likewise
    bool isSpoiled = false; // by a machine that stalled meanwhile

    bool IsGood() const
    {
        return medianMs < kMostMs && positionOff < kMostOffSeconds && levelOff < kMostOffLevel &&
               unevenness < kMostUneven;
    }
};

constexpr QRgb kFirst = 0xFF3366CC;
constexpr QRgb kSecond = 0xFFCC3300;
constexpr QRgb kTenth = 0xFFEEEE00;

class MediaControl : public Journey {
protected:
    // With the second of three tracks of its folder.
    void Open()
    {
        WriteToneTrack("Song 1", 60.0, 440.0, kFirst);
        WriteToneTrack("Song 10", 60.0, 880.0, kTenth);
        const std::filesystem::path second = WriteToneTrack("Song 2", 60.0, 660.0, kSecond);
        ASSERT_NO_FATAL_FAILURE(StartPlayer({second.string()}, bus.Environment()));
        ASSERT_TRUE(AwaitPicture(kSecond));
        ASSERT_TRUE(AwaitSound());
        ASSERT_TRUE(
            Eventually([this] { return Control({"status"}) == "Playing"; }, kPatience, 20ms));
    }

    Process::Command Command(std::vector<std::string> arguments,
                             const std::filesystem::path& log) const
    {
        EnvironmentChanges environment = bus.Environment();
        environment.emplace_back("LC_ALL", "C.UTF-8");
        return {.arguments = std::move(arguments), .environment = environment, .log = log};
    }
    std::string Said(std::vector<std::string> arguments) const
    {
        const std::filesystem::path log = folder / "said";
        std::filesystem::remove(log);
        Process(Command(std::move(arguments), log)).WaitForExit(kPatience);
        std::string said = ReadFile(log);
        if (said.ends_with('\n'))
            said.pop_back();
        return said;
    }
    std::string Control(std::vector<std::string> arguments) const
    {
        arguments.insert(arguments.begin(), {"playerctl", "--player=lyric_lantern"});
        return Said(std::move(arguments));
    }
    std::string Call(const std::string& method, std::vector<std::string> arguments = {}) const
    {
        arguments.insert(arguments.begin(),
                         {"gdbus", "call", "--session", "--dest", kBusName, "--object-path",
                          "/org/mpris/MediaPlayer2", "--method", method});
        return Said(std::move(arguments));
    }
    // What the desktop's mixer shows of the player.
    bool AwaitMixer(const std::string& title) const
    {
        const std::string shown = "media.name = \"" + title + "\"\n";
        return Eventually(
            [&] {
                return sound.Control({"list", "sink-inputs"}).find(shown) != std::string::npos;
            },
            kPatience, 20ms);
    }
    double Position() const { return std::atof(Control({"position"}).c_str()); }
    bool AwaitControl(const std::vector<std::string>& question, const std::string& answer) const
    {
        return Eventually([&] { return Control(question) == answer; }, kPatience, 20ms);
    }

    FloodedSound Flood();

    SessionBus bus;
};

// Eight seconds of a thousand calls.
FloodedSound MediaControl::Flood()
{
    const double before = Position();
    const Moment start = Clock::now();
    const std::string said =
        Said({"/usr/bin/python3", "-B", LANTERN_FLOODING_CLIENT, kBusName, "8"});
    const Moment end = Clock::now();
    std::cout << said << '\n';
    FloodedSound sounded;
    sounded.positionOff = std::abs(Position() - before - Milliseconds(end - start) / 1000.0);
    int answers = 0;
    int refused = 0;
    EXPECT_EQ(std::sscanf(said.c_str(), "%d answers %d refused %lf median", &answers, &refused,
                          &sounded.medianMs),
              3)
        << said;
    EXPECT_EQ(answers, 8000);
    EXPECT_EQ(refused, 0);
    const std::vector<float> heard = ears.Heard().Between(start, end - 200ms);
    EXPECT_GT(heard.size(), std::size_t{2} * 7 * Recording::kRate);
    sounded.levelOff = std::abs(Level(heard) - kLoudness / std::sqrt(2.0));
    sounded.unevenness = Unevenness(heard, 660.0);
    return sounded;
}

TEST_F(MediaControl, PlaysPausesAndMovesTheTrack)
{
    ASSERT_NO_FATAL_FAILURE(Open());
    EXPECT_EQ(Control({"metadata", "title"}), "Song 2");
    EXPECT_EQ(Control({"metadata", "mpris:length"}), "60000000");
    EXPECT_EQ(Control({"metadata", "xesam:url"}),
              "file://" + folder.Path().string() + "/Song%202.cdg");
    Control({"pause"});
    EXPECT_TRUE(AwaitSilence());
    EXPECT_EQ(Control({"status"}), "Paused");
    Control({"play-pause"});
    EXPECT_TRUE(AwaitSound());
    Control({"position", "30"});
    EXPECT_NEAR(Position(), 30.0, 2.0);
    Control({"position", "10-"});
    EXPECT_NEAR(Position(), 20.0, 4.0);
    Control({"volume", "0.5"});
    EXPECT_TRUE(AwaitLevel(Side::Left, kLoudness / 2 / std::sqrt(2.0), 0.01));
    EXPECT_EQ(Control({"volume"}), "0.500000");
    Control({"stop"});
    EXPECT_TRUE(AwaitSilence());
    EXPECT_EQ(Control({"status"}), "Stopped");
    EXPECT_EQ(Position(), 0.0);
    Control({"play"});
    EXPECT_TRUE(AwaitTone(660.0));
}

TEST_F(MediaControl, GoesToTheTracksBesideItAndToAnyOther)
{
    ASSERT_NO_FATAL_FAILURE(Open());
    EXPECT_TRUE(AwaitMixer("Song 2"));
    Control({"next"});
    EXPECT_TRUE(AwaitTone(880.0));
    EXPECT_TRUE(AwaitMixer("Song 10"));
    EXPECT_TRUE(AwaitPicture(kTenth));
    EXPECT_THAT(Control({"next"}), HasSubstr("No player could handle this command"));
    Control({"previous"});
    EXPECT_TRUE(AwaitControl({"metadata", "title"}, "Song 2"));
    Control({"pause"});
    EXPECT_TRUE(AwaitSilence());
    Control({"previous"});
    EXPECT_TRUE(AwaitPicture(kFirst) || AwaitControl({"metadata", "title"}, "Song 1"));
    EXPECT_EQ(Control({"status"}), "Paused");
    Control({"open", "file://" + folder.Path().string() + "/Song%2010.cdg"});
    EXPECT_TRUE(AwaitTone(880.0));
    EXPECT_THAT(Control({"open", "http://example.org/a.cdg"}), HasSubstr("can't do that"));
    EXPECT_TRUE(AwaitControl({"metadata", "title"}, "Song 10"));
}

TEST_F(MediaControl, ReachesTheWindow)
{
    ASSERT_NO_FATAL_FAILURE(Open());
    const std::string set = "org.freedesktop.DBus.Properties.Set";
    Call(set, {"org.mpris.MediaPlayer2", "Fullscreen", "<true>"});
    EXPECT_TRUE(Eventually([this] { return player->IsFullScreen(); }, kPatience));
    Call(set, {"org.mpris.MediaPlayer2", "Fullscreen", "<false>"});
    EXPECT_TRUE(Eventually([this] { return !player->IsFullScreen(); }, kPatience));
    Call(set, {"org.mpris.MediaPlayer2.Player", "Rate", "<1.5>"});
    EXPECT_THAT(
        Call("org.freedesktop.DBus.Properties.Get", {"org.mpris.MediaPlayer2.Player", "Rate"}),
        "(<1.5>,)");
    Process other(
        {.arguments = {"xev", "-geometry", "900x700+20+20"}, .environment = screen.Environment()});
    ASSERT_TRUE(Eventually([this] { return !player->AwaitWindow(0s); }, kPatience, 20ms));
    Call("org.mpris.MediaPlayer2.Raise");
    EXPECT_TRUE(player->AwaitWindow());
    other.End();
    EXPECT_EQ(Call("org.mpris.MediaPlayer2.Quit"), "()");
    EXPECT_EQ(player->Program().WaitForExit(kPatience), 0);
    EXPECT_EQ(player->Log(), "");
}

TEST_F(MediaControl, WhoListensHearsWhatTheUserDoes)
{
    ASSERT_NO_FATAL_FAILURE(Open());
    const std::filesystem::path log = folder / "monitor";
    Process monitor(Command({"gdbus", "monitor", "--session", "--dest", kBusName}, log));
    ASSERT_TRUE(
        Eventually([&] { return ReadFile(log).find("owned by") != std::string::npos; }, kPatience));
    std::this_thread::sleep_for(200ms);
    const auto hears = [&](const char* text) {
        return Eventually([&] { return ReadFile(log).find(text) != std::string::npos; }, kPatience,
                          20ms);
    };
    hand.Key("p");
    EXPECT_TRUE(hears("'PlaybackStatus': <'Paused'>"));
    hand.Key("m");
    EXPECT_TRUE(hears("'Volume': <0.0>"));
    hand.Key("m");
    EXPECT_TRUE(hears("'Volume': <1.0>"));
    hand.Key("q");
    EXPECT_TRUE(hears("'Rate': <1.2>"));
    EXPECT_EQ(ReadFile(log).find("Seeked"), std::string::npos) << ReadFile(log);
    hand.Key("Right");
    EXPECT_TRUE(hears("Player.Seeked"));
    hand.Key("XF86AudioNext");
    EXPECT_TRUE(hears("<'Song 10'>"));
    EXPECT_TRUE(hears("'CanGoNext': <false>"));
}

TEST_F(MediaControl, MediaKeysWorkWithTheFocus)
{
    ASSERT_NO_FATAL_FAILURE(Open());
    hand.Key("XF86AudioPlay");
    EXPECT_TRUE(AwaitSilence());
    hand.Key("XF86AudioPlay");
    EXPECT_TRUE(AwaitTone(660.0));
    hand.Key("XF86AudioNext");
    EXPECT_TRUE(AwaitTone(880.0));
    hand.Key("XF86AudioPrev");
    hand.Key("XF86AudioPrev");
    EXPECT_TRUE(AwaitTone(440.0));
    hand.Key("XF86AudioStop");
    EXPECT_TRUE(AwaitSilence());
    hand.Key("XF86AudioPlay");
    EXPECT_TRUE(AwaitTone(440.0));
}

TEST_F(MediaControl, ABusThatHangsOrDiesIsNotFelt)
{
    ASSERT_NO_FATAL_FAILURE(Open());
    bus.Daemon().Signal(SIGSTOP);
    for (const char* key : {"p", "p", "Right", "m", "m", "q", "XF86AudioNext"}) {
        hand.Key(key);
        const auto answered = player->AnswerTime(kPatience);
        ASSERT_TRUE(answered.has_value()) << key;
        EXPECT_LT(Milliseconds(*answered), 1000) << key;
    }
    EXPECT_TRUE(AwaitPicture(kTenth));
    EXPECT_TRUE(AwaitSound());
    bus.Daemon().Signal(SIGKILL);
    hand.Key("XF86AudioPrev");
    EXPECT_TRUE(AwaitPicture(kSecond));
    EXPECT_TRUE(AwaitSound());
    Leave();
    EXPECT_EQ(player->Log(), "");
}

TEST_F(MediaControl, ABusThatIsSilentFromTheStartIsDoneWithout)
{
    bus.Daemon().Signal(SIGSTOP);
    const std::filesystem::path track = WriteToneTrack("Song", 60.0, 440.0, kFirst);
    ASSERT_NO_FATAL_FAILURE(StartPlayer({track.string()}, bus.Environment()));
    EXPECT_LT(Milliseconds(Clock::now() - player->Program().StartedAt()), 10'000);
    EXPECT_TRUE(AwaitPicture(kFirst));
    EXPECT_TRUE(AwaitSound());
    const Moment left = Clock::now();
    Leave();
    EXPECT_LT(Milliseconds(Clock::now() - left), 5'000);
    EXPECT_EQ(player->Log(), "");
}

TEST_F(MediaControl, ProgramsThatMeanNoGoodDoNotBringItDown)
{
    ASSERT_NO_FATAL_FAILURE(Open());
    std::vector<std::unique_ptr<Process>> clients;
    for (const char* seed : {"1", "2", "3"})
        clients.push_back(std::make_unique<Process>(
            Command({"/usr/bin/python3", "-B", LANTERN_HOSTILE_CLIENT, kBusName, "4", seed},
                    folder / ("client-" + std::string(seed)))));
    while (clients.front()->IsRunning()) {
        ASSERT_TRUE(player->AnswerTime(kPatience)) << "it does not answer";
        std::this_thread::sleep_for(100ms);
    }
    for (const char* seed : {"1", "2", "3"}) {
        clients[static_cast<std::size_t>(*seed - '1')]->WaitForExit(kPatience);
        const std::string said = ReadFile(folder / ("client-" + std::string(seed)));
        EXPECT_THAT(said, MatchesRegex("[0-9]+ answers [1-9][0-9]* errors 0 silences\n"));
    }
    Control({"volume", "1"});
    Control({"open", "file://" + folder.Path().string() + "/Song%201.cdg"});
    EXPECT_TRUE(AwaitControl({"metadata", "title"}, "Song 1"));
    EXPECT_TRUE(AwaitSound());
    EXPECT_EQ(player->Log(), "");
}

TEST_F(MediaControl, AThousandCallsASecondAreAnsweredWhileTheSoundGoesOn)
{
    ASSERT_NO_FATAL_FAILURE(Open());
    FloodedSound sounded;
    for (int attempt = 0; attempt < 3; ++attempt) {
        const StallWatch stalls;
        ASSERT_NO_FATAL_FAILURE(sounded = Flood());
        sounded.isSpoiled = !sounded.IsGood() && stalls.LongestStall() > kSpoilingStall;
        if (!sounded.isSpoiled)
            break;
    }
    EXPECT_EQ(Control({"status"}), "Playing");
    Control({"next"});
    EXPECT_TRUE(AwaitTone(880.0));
    EXPECT_EQ(player->Log(), "");
    if (sounded.isSpoiled)
        GTEST_SKIP() << "the machine stalled: whether the sound stutters was not measured";
    EXPECT_LT(sounded.medianMs, kMostMs);
    EXPECT_LT(sounded.positionOff, kMostOffSeconds);
    EXPECT_LT(sounded.levelOff, kMostOffLevel);
    EXPECT_LT(sounded.unevenness, kMostUneven) << "the sound stutters";
}

} // namespace
} // namespace lantern::test
