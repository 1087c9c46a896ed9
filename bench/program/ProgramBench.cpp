// SPDX-License-Identifier: GPL-3.0-or-later
#include "PlayerRuns.h"
#include "SessionRuns.h"
#include "ToolRuns.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <future>
#include <iostream>
#include <stdexcept>
#include <string_view>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

// What the whole program costs, each number beside one of the same run. Prints what the other
// benchmarks print: a JSON object with one record a measurement.
//   bench_program          three rounds of each, about seven minutes
//   bench_program --quick  one short round of each, to see that it works
// With the path of another build of the player in LANTERN_OTHER_PLAYER, what a change costs is
// measured instead: this build beside that one.
namespace lantern::bench {
namespace {

using namespace lantern::test;

double YardstickPercent(Stage& stage, const std::vector<std::string>& options, const Effort& effort)
{
    const std::unique_ptr<Process> process = StartYardstick(stage, options);
    return ProcessorPercent(*process, effort);
}

std::vector<Measurement> MeasureProcessor(Stage& stage, const Effort& effort)
{
    return {
        Compare(
            "processor, playing at size 2", "% of a core", "mpv playing the sound alone", effort,
            [&] { return PlayerPercent(stage, {}, effort); },
            [&] { return YardstickPercent(stage, {}, effort); }),
        Compare(
            "processor, paused", "% of a core", "mpv playing the sound alone", effort,
            [&] {
                return PlayerPercent(stage, {{"p", 1}}, effort);
            },
            [&] { return YardstickPercent(stage, {}, effort); }),
        Compare(
            "processor, key +3 and speed -20 %", "% of a core",
            "mpv with the same stretcher and changes", effort,
            [&] {
                return PlayerPercent(stage, {{"k", 1}, {"Up", 3}, {"s", 1}, {"Down", 10}}, effort);
            },
            [&] {
                return YardstickPercent(
                    stage, {"--speed=0.8", "--af=rubberband=engine=finer:pitch-scale=1.189207"},
                    effort);
            })};
}

Measurement MeasureFullScreen(const Effort& effort)
{
    Stage stage(3240, 2160);
    return Compare(
        "processor, full screen at 3240 x 2160", "% of a core", "the same at size 2", effort,
        [&] {
            return PlayerPercent(stage, {{"f", 1}}, effort);
        },
        [&] { return PlayerPercent(stage, {}, effort); });
}

Measurement MeasureSmoothLetters(const Effort& effort)
{
    Stage stage(3240, 2160);
    const std::filesystem::path choices =
        stage.home.SettingsFile().replace_filename("data_stage.ini");
    return Compare(
        "processor, smooth letters in full screen at 3240 x 2160", "% of a core",
        "the same in blocks", effort,
        [&] {
            std::filesystem::create_directories(choices.parent_path());
            WriteFile(choices, "smoothletters\tY\r\n");
            const double percent = PlayerPercent(stage, {{"f", 1}}, effort);
            std::filesystem::remove(choices);
            return percent;
        },
        [&] {
            return PlayerPercent(stage, {{"f", 1}}, effort);
        });
}

// The dearest picture there is, beside the demo song.
Measurement MeasureColourLoads(Effort effort)
{
    effort.warmUp += 4s; // its tiles are drawn, and what it may spend at once is spent
    Stage stage(3840, 2160);
    const std::filesystem::path colours = WriteColourLoads(stage);
    const std::filesystem::path demo = LANTERN_DEMO_FOLDER "/demo.cdg";
    const auto percent = [&](const std::filesystem::path& track) {
        return PlayerPercent(stage, {{"f", 1}}, effort, {}, track);
    };
    return Compare(
        "processor, new colours in every packet, full screen at 3840 x 2160", "% of a core",
        "the demo song there", effort, [&] { return percent(colours); },
        [&] { return percent(demo); });
}

double ResidentMebibytes(const Process& process)
{
    std::this_thread::sleep_for(5s);
    return static_cast<double>(process.ResidentKibibytes()) / 1024.0;
}

double PlayerMebibytes(Stage& stage, const std::filesystem::path& track = {},
                       const std::string& program = {})
{
    const std::unique_ptr<Player> player = StartPlayer(stage, program, track);
    return ResidentMebibytes(player->Program());
}

// The sound of the stage over and over.
std::filesystem::path WriteHour(const Stage& stage)
{
    constexpr int kTimes = 15;
    const std::filesystem::path hour = stage.folder / "hour.mp3";
    std::ofstream out(hour, std::ios::binary);
    for (int i = 0; i < kTimes; ++i)
        out << std::ifstream(stage.audio, std::ios::binary).rdbuf();
    return hour;
}

std::vector<Measurement> MeasureMemory(Stage& stage)
{
    const double player = PlayerMebibytes(stage);
    const double yardstick = ResidentMebibytes(*StartYardstick(stage));
    const double hour = PlayerMebibytes(stage, WriteHour(stage));
    return {{"resident memory, four minutes of mp3", player, yardstick, "MiB",
             "mpv with the same sound"},
            {"resident memory, an hour of mp3", hour, player, "MiB", "four minutes of it"}};
}

double MillisecondsToSound(const Ears& ears, Moment start)
{
    std::optional<Moment> heard;
    const auto isHeard = [&] {
        heard = FirstSound(ears, start);
        return heard.has_value();
    };
    if (!Eventually(isHeard, 10s, 100ms))
        throw std::runtime_error("nothing was heard");
    return Milliseconds(*heard - start);
}

double YardstickStartToSound(Stage& stage)
{
    const Ears ears(stage.sound, "studio");
    std::this_thread::sleep_for(300ms);
    const std::unique_ptr<Process> process = StartYardstick(stage);
    return MillisecondsToSound(ears, process->StartedAt());
}

double PlayerStartToSound(Stage& stage)
{
    const Ears ears(stage.sound, "studio");
    std::this_thread::sleep_for(300ms);
    const std::unique_ptr<Player> player = StartPlayer(stage);
    return MillisecondsToSound(ears, player->Program().StartedAt());
}

double MillisecondsToExit(Process& process)
{
    const auto hasEnded = [&] { return !process.IsRunning(); };
    if (!Eventually(hasEnded, 10s, 0ms) || process.WaitForExit(0ms) != 0)
        throw std::runtime_error("it did not end by itself");
    return Milliseconds(Clock::now() - process.StartedAt());
}

// A start while the player runs: it hands its track over and ends.
double LaterStartToExit(Stage& stage)
{
    const std::unique_ptr<Player> running = StartPlayer(stage);
    Player later(stage.screen, stage.sound.Environment(), stage.home,
                 PlayerStart{.arguments = {stage.track.string()}});
    return MillisecondsToExit(later.Program());
}

double YardstickVersionToExit(const Stage& stage)
{
    return MillisecondsToExit(*StartYardstick(stage, {"--version"}, false));
}

double PlayerOpenToSound(Stage& stage)
{
    std::filesystem::create_directories(stage.home.SettingsFile().parent_path());
    WriteFile(stage.home.SettingsFile(), "lastplayed\t" + stage.track.string() + "\r\n");
    const Ears ears(stage.sound, "studio");
    Player player(stage.screen, stage.sound.Environment(), stage.home);
    if (!player.AwaitWindow())
        throw std::runtime_error("no window");
    std::this_thread::sleep_for(1s);
    Hand hand(stage.screen);
    const Moment start = Clock::now();
    hand.Key("p");
    return MillisecondsToSound(ears, start);
}

double YardstickOpenToSound(Stage& stage)
{
    const std::string path = (stage.folder / "control").string();
    const std::unique_ptr<Process> process =
        StartYardstick(stage, {"--idle=yes", "--input-ipc-server=" + path}, false);
    const Ears ears(stage.sound, "studio");
    std::this_thread::sleep_for(1s);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof(address.sun_path) - 1);
    const int link = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (connect(link, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0)
        throw std::runtime_error("mpv does not listen");
    const std::string command = R"({"command": ["loadfile", ")" + stage.audio.string() + "\"]}\n";
    const Moment start = Clock::now();
    if (write(link, command.data(), command.size()) < 0)
        throw std::runtime_error("mpv does not read");
    const double milliseconds = MillisecondsToSound(ears, start);
    close(link);
    return milliseconds;
}

std::vector<Measurement> MeasureStarts(Stage& stage, Effort effort)
{
    effort.rounds = effort.rounds * 2 - 1; // short, and uneven
    PaintTheEmptyScreen(stage);
    return {Compare(
                "start to the first painted frame", "ms", "mpv from start to sound", effort,
                [&] { return PlayerStartToPicture(stage); },
                [&] { return YardstickStartToSound(stage); }),
            Compare(
                "start to the first sound", "ms", "mpv from start to sound", effort,
                [&] { return PlayerStartToSound(stage); },
                [&] { return YardstickStartToSound(stage); }),
            Compare(
                "opening a track to its sound", "ms", "mpv loading it while idle", effort,
                [&] { return PlayerOpenToSound(stage); },
                [&] { return YardstickOpenToSound(stage); }),
            Compare(
                "a later start, to its end", "ms", "mpv telling its version", effort,
                [&] { return LaterStartToExit(stage); },
                [&] { return YardstickVersionToExit(stage); })};
}

// The longest that the player, asked again and again, takes to answer while something is done to
// it: an answer comes after what it is painting.
double LongestAnswerDuring(const Player& player, const std::function<void()>& action)
{
    const std::future<void> done = std::async(std::launch::async, action);
    Clock::duration longest = {};
    while (done.wait_for(0s) != std::future_status::ready)
        longest = std::max(longest, player.AnswerTime(5s).value_or(Clock::duration::max()));
    return Milliseconds(longest);
}

// By its lower right corner, from size 1 to size 5 while a track plays.
double LongestFrameOfADrag(Stage& stage)
{
    constexpr int kSteps = 120;
    constexpr Point kWay = {4 * 288, 4 * 192};
    const std::unique_ptr<Player> player = StartPlayer(stage);
    Hand hand(stage.screen);
    hand.Key("1");
    if (!Eventually([&] { return player->WindowArea().width() < 2 * 288; }, 10s))
        throw std::runtime_error("the window did not take size 1");
    const QRect area = player->WindowArea();
    const Point corner = {area.right() - 2, area.bottom() - 2};
    hand.MoveTo(corner);
    hand.Press();
    const double longest = LongestAnswerDuring(*player, [&] {
        for (int step = 1; step <= kSteps; ++step)
            hand.MoveTo({corner.x + kWay.x * step / kSteps, corner.y + kWay.y * step / kSteps});
    });
    hand.Release();
    const int wanted = area.width() + kWay.x * 9 / 10;
    if (!Eventually([&] { return player->WindowArea().width() >= wanted; }, 5s))
        throw std::runtime_error("the window did not follow the drag");
    return longest;
}

double LongestFrameAtRest(Stage& stage)
{
    const std::unique_ptr<Player> player = StartPlayer(stage);
    Hand(stage.screen).Key("5");
    std::this_thread::sleep_for(1s);
    return LongestAnswerDuring(*player, [] { std::this_thread::sleep_for(4s); });
}

Measurement MeasureDrag(const Effort& effort)
{
    Stage stage(2800, 2000); // the window grows from the middle of the screen
    return Compare(
        "longest frame, dragging from size 1 to 5", "ms", "the longest while resting at size 5",
        effort, [&] { return LongestFrameOfADrag(stage); },
        [&] { return LongestFrameAtRest(stage); });
}

std::vector<Measurement> MeasureBeside(Stage& stage, const std::string& other, const Effort& effort)
{
    Effort starts = effort;
    starts.rounds = effort.rounds * 2 - 1;
    PaintTheEmptyScreen(stage);
    return {Compare(
                "start to the first painted frame", "ms", "the other build", starts,
                [&] { return PlayerStartToPicture(stage); },
                [&] { return PlayerStartToPicture(stage, other); }),
            Compare(
                "processor, playing at size 2", "% of a core", "the other build", effort,
                [&] { return PlayerPercent(stage, {}, effort); },
                [&] { return PlayerPercent(stage, {}, effort, other); }),
            Compare(
                "resident memory, four minutes of mp3", "MiB", "the other build", effort,
                [&] { return PlayerMebibytes(stage); },
                [&] { return PlayerMebibytes(stage, {}, other); })};
}

void Run(const Effort& effort)
{
    Stage stage;
    if (const char* const other = std::getenv("LANTERN_OTHER_PLAYER")) {
        Print(MeasureBeside(stage, other, effort));
        return;
    }
    std::vector<Measurement> all = MeasureStarts(stage, effort);
    for (Measurement& measurement : MeasureProcessor(stage, effort))
        all.push_back(std::move(measurement));
    all.push_back(MeasureThumbnail(stage, effort));
    all.push_back(MeasureFullScreen(effort));
    all.push_back(MeasureSmoothLetters(effort));
    all.push_back(MeasureColourLoads(effort));
    all.push_back(MeasureDrag(effort));
    for (Measurement& measurement : MeasureMemory(stage))
        all.push_back(std::move(measurement));
    for (Measurement& measurement : MeasureSession(effort))
        all.push_back(std::move(measurement));
    Print(all);
}

} // namespace
} // namespace lantern::bench

int main(int argc, char** argv)
{
    const bool isQuick = argc > 1 && std::string_view(argv[1]) == "--quick";
    using namespace std::chrono_literals;
    try {
        lantern::bench::Run(isQuick ? lantern::bench::Effort{1, 1s, 3s} : lantern::bench::Effort{});
    } catch (const std::exception& error) {
        std::cerr << "bench_program: " << error.what() << '\n';
        return 1;
    }
}
