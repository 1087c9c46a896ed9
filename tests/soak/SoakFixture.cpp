// SPDX-License-Identifier: GPL-3.0-or-later
#include "SoakFixture.h"

#include "ScreenWindow.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sched.h>
#include <sstream>
#include <sys/mount.h>

namespace lantern::test {
namespace {

constexpr const char* kBusName = "org.mpris.MediaPlayer2.lyric_lantern";
constexpr Clock::duration kAnswersWithin = 1s;
constexpr double kPictureWithinSeconds = 0.25;
constexpr int kStepsToWarmUp = 25;
constexpr std::ptrdiff_t kMoreDescriptors = 16;
constexpr std::ptrdiff_t kMoreThreads = 6;
constexpr long kMoreKibibytes = 48 * 1024;

// For this thread and what it starts from now on. Only an administrator may.
bool MountSmallDisk(const std::filesystem::path& folder)
{
    return unshare(CLONE_NEWNS) == 0 &&
           mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           mount("tmpfs", folder.c_str(), "tmpfs", 0, "size=4m") == 0;
}

} // namespace

double FromEnvironment(const char* name, double otherwise)
{
    const char* const value = std::getenv(name);
    return value ? std::atof(value) : otherwise;
}

Holdings Holdings::Of(const Process& process)
{
    const auto entries = [&](const char* what) {
        const auto path = "/proc/" + std::to_string(process.Id()) + "/" + what;
        return std::distance(std::filesystem::directory_iterator(path), {});
    };
    return {entries("fd"), entries("task"), process.ResidentKibibytes()};
}

SoakFixture::SoakFixture() : m_hasSmallDisk(MountSmallDisk(SettingsDisk()))
{
    m_random.seed(m_seed);
    MoveClock(0);
}

void SoakFixture::Rest(int atMostMs)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(Any(atMostMs)));
}

Point SoakFixture::Middle() const
{
    const QRect picture = Desk().Picture();
    return {picture.center().x(), picture.top() + picture.height() / 3};
}

void SoakFixture::Begin()
{
    m_bus = std::make_unique<SessionBus>();
    m_track = Any(m_tracks.Count());
    EnvironmentChanges environment = m_bus->Environment();
#ifndef LANTERN_SANITIZED
    environment.insert(environment.end(), {{"LD_PRELOAD", "/usr/$LIB/faketime/libfaketimeMT.so.1"},
                                           {"FAKETIME_TIMESTAMP_FILE", folder / "clock"},
                                           {"FAKETIME_NO_CACHE", "1"},
                                           {"FAKETIME_DONT_FAKE_MONOTONIC", "1"}});
#endif
    ASSERT_NO_FATAL_FAILURE(StartPlayer({m_tracks.Path(m_track).string()}, environment));
    m_stepsSinceStart = 0;
    m_most = {};
}

void SoakFixture::Restart()
{
    Leave();
    BeginAnew();
}

void SoakFixture::RestartWithFullDisk()
{
    hand.Key("ctrl+q");
    const ScreenWindow message(screen, "Cannot Write to Settings File");
    EXPECT_TRUE(message.HasKeyboardSoon());
    hand.Key("Return");
    EXPECT_EQ(player->Program().WaitForExit(kPatience), 0);
    EmptyDisk();
    BeginAnew();
}

void SoakFixture::BeginAnew()
{
    EXPECT_EQ(player->Log(), "");
    const std::string settings = ReadFile(home.SettingsFile());
    EXPECT_GE(std::ranges::count(settings, '\n'), m_settingLines) << settings;
    m_settingLines = std::ranges::count(settings, '\n');
    Begin();
}

void SoakFixture::Open(const std::filesystem::path& path, const std::string& said)
{
    Player later(screen, sound.Environment(), home, PlayerStart{.arguments = {path.string()}});
    EXPECT_EQ(later.Program().WaitForExit(20s), 0);
    EXPECT_EQ(later.Log(), said);
}

void SoakFixture::Open(int track)
{
    m_track = track;
    Open(m_tracks.Path(m_track));
    EXPECT_TRUE(Eventually([this] { return Shown().track == m_track; }, kPatience, 20ms))
        << "the picture of track " << m_track << " did not come";
}

void SoakFixture::MoveClock(int seconds)
{
    WriteFile(folder / "clock", (seconds < 0 ? "" : "+") + std::to_string(seconds));
}

std::optional<std::string> SoakFixture::Property(const std::string& name) const
{
    const std::filesystem::path log = folder / "answer";
    std::filesystem::remove(log);
    Process asker({.arguments = {"gdbus", "call", "--session", "--timeout", "2", "--dest", kBusName,
                                 "--object-path", "/org/mpris/MediaPlayer2", "--method",
                                 "org.freedesktop.DBus.Properties.Get",
                                 "org.mpris.MediaPlayer2.Player", name},
                   .environment = m_bus->Environment(),
                   .log = log});
    if (asker.WaitForExit(3s) != 0)
        return std::nullopt;
    return ReadFile(log);
}

std::optional<double> SoakFixture::Position() const
{
    const std::optional<std::string> told = Property("Position"); // (<int64 1234>,)
    const std::size_t number = told ? told->find("int64 ") : std::string::npos;
    if (number == std::string::npos)
        return std::nullopt;
    return std::atof(told->c_str() + number + 6) / 1e6;
}

void SoakFixture::Xrandr(std::vector<std::string> arguments) const
{
    arguments.insert(arguments.begin(), "xrandr");
    EXPECT_EQ(Process({.arguments = arguments, .environment = screen.Environment()})
                  .WaitForExit(kPatience),
              0);
}

void SoakFixture::FillDisk()
{
    std::ofstream filler(SettingsDisk() / "filler", std::ios::binary | std::ios::app);
    const std::string page(4096, 'x');
    while (filler << page << std::flush) {
    }
}

void SoakFixture::EmptyDisk()
{
    std::filesystem::remove(SettingsDisk() / "filler");
}

bool SoakFixture::Is(const char* status) const
{
    const std::optional<std::string> told = Property("PlaybackStatus");
    return told && told->find(status) != std::string::npos;
}

SoakTracks::Shown SoakFixture::Shown()
{
    return SoakTracks::Decode(eyes.At(Middle())).value_or(SoakTracks::Shown{-1, -1});
}

// A stall of the machine is none of the player's.
void SoakFixture::ExpectAnswer()
{
    for (int tried = 0; tried < 3; ++tried) {
        const Moment asked = Clock::now();
        if (player->AnswerTime(kAnswersWithin))
            return;
        if (!m_stalls.StalledBetween(asked, Clock::now()))
            break;
    }
    ADD_FAILURE() << "the window does not answer";
}

void SoakFixture::ExpectThePicture()
{
    std::string seen;
    const auto isRight = [&] {
        // It may have come to its end, or stand: then it goes on.
        const bool plays = Is("Playing");
        if (!plays)
            hand.Key("p");
        const std::optional<double> before = Position();
        const SoakTracks::Shown shown = Shown();
        const std::optional<double> after = Position();
        if (!before || !after)
            return false;
        std::ostringstream account;
        account << (plays ? "" : "not playing; ") << "track " << shown.track << ", second "
                << shown.second << "; position " << *before << " to " << *after << " of track "
                << m_track;
        seen = account.str();
        return plays && shown.track == m_track &&
               shown.second + 1 > *before - kPictureWithinSeconds &&
               shown.second < *after + kPictureWithinSeconds;
    };
    EXPECT_TRUE(Eventually(isRight, kPatience, 1s)) << seen;
}

void SoakFixture::ExpectNothingLost()
{
    EXPECT_EQ(player->Log(), "");
    const Holdings now = Holdings::Of(player->Program());
    if (m_stepsSinceStart <= kStepsToWarmUp) {
        m_most = {std::max(now.descriptors, m_most.descriptors),
                  std::max(now.threads, m_most.threads), std::max(now.kibibytes, m_most.kibibytes)};
        return;
    }
    EXPECT_LE(now.descriptors, m_most.descriptors + kMoreDescriptors);
    EXPECT_LE(now.threads, m_most.threads + kMoreThreads);
    EXPECT_LE(now.kibibytes, m_most.kibibytes + kMoreKibibytes);
}

} // namespace lantern::test
