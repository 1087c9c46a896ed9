// SPDX-License-Identifier: GPL-3.0-or-later
// An evening with the player: a hand that does anything at random, and the accidents of a desktop.
// After each step the window has to answer, the picture to be that of the position, and nothing to
// be lost. The environment tells how long (LANTERN_SOAK_MINUTES) and from which seed
// (LANTERN_SOAK_SEED); the same seed does the same steps, as far as the machine's pace allows.
#include "Journey.h"
#include "PlayerDesk.h"
#include "ScreenWindow.h"
#include "SessionBus.h"
#include "SoakTracks.h"
#include "StallWatch.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <deque>
#include <functional>
#include <iostream>
#include <random>

namespace lantern::test {
namespace {

constexpr const char* kBusName = "org.mpris.MediaPlayer2.lyric_lantern";
constexpr Clock::duration kAnswersWithin = 1s;
constexpr double kPictureWithinSeconds = 0.25;
constexpr std::size_t kStepsToTell = 12;
constexpr int kStepsToWarmUp = 25;
constexpr int kStepsUntilRestart = 40;
constexpr std::ptrdiff_t kMoreDescriptors = 16;
constexpr std::ptrdiff_t kMoreThreads = 6;
constexpr long kMoreKibibytes = 48 * 1024;

double FromEnvironment(const char* name, double otherwise)
{
    const char* const value = std::getenv(name);
    return value ? std::atof(value) : otherwise;
}

// What a process holds.
struct Holdings {
    std::ptrdiff_t descriptors = 0;
    std::ptrdiff_t threads = 0;
    long kibibytes = 0;

    static Holdings Of(const Process& process)
    {
        const auto entries = [&](const char* folder) {
            const auto path = "/proc/" + std::to_string(process.Id()) + "/" + folder;
            return std::distance(std::filesystem::directory_iterator(path), {});
        };
        return {entries("fd"), entries("task"), process.ResidentKibibytes()};
    }
};

class Soak : public Journey {
protected:
    using Act = std::function<void()>;
    struct Deed {
        const char* name;
        int weight;
        Act act;
    };

    Soak() { m_random.seed(m_seed); }

    int Any(int below) { return std::uniform_int_distribution(0, below - 1)(m_random); }
    void Rest(int atMostMs)
    {
        std::this_thread::sleep_for(std::chrono::milliseconds(Any(atMostMs)));
    }
    PlayerDesk Desk() const { return PlayerDesk(player->WindowArea(), player->IsFullScreen()); }
    Point Middle() const
    {
        const QRect picture = Desk().Picture();
        return {picture.center().x(), picture.top() + picture.height() / 3};
    }

    void Begin()
    {
        m_bus = std::make_unique<SessionBus>();
        m_track = Any(m_tracks.Count());
        ASSERT_NO_FATAL_FAILURE(
            StartPlayer({m_tracks.Path(m_track).string()}, m_bus->Environment()));
        m_stepsSinceStart = 0;
        m_most = {};
    }

    // A number that the player tells over the bus; nothing if it doesn't.
    std::optional<std::string> Property(const std::string& name) const
    {
        const std::filesystem::path log = folder / "answer";
        std::filesystem::remove(log);
        Process asker({.arguments = {"gdbus", "call", "--session", "--timeout", "2", "--dest",
                                     kBusName, "--object-path", "/org/mpris/MediaPlayer2",
                                     "--method", "org.freedesktop.DBus.Properties.Get",
                                     "org.mpris.MediaPlayer2.Player", name},
                       .environment = m_bus->Environment(),
                       .log = log});
        if (asker.WaitForExit(3s) != 0)
            return std::nullopt;
        return ReadFile(log);
    }
    std::optional<double> Position() const
    {
        const std::optional<std::string> told = Property("Position"); // (<int64 1234>,)
        const std::size_t number = told ? told->find("int64 ") : std::string::npos;
        if (number == std::string::npos)
            return std::nullopt;
        return std::atof(told->c_str() + number + 6) / 1e6;
    }
    bool Is(const char* status) const
    {
        const std::optional<std::string> told = Property("PlaybackStatus");
        return told && told->find(status) != std::string::npos;
    }

    // By a later start, as a double click in a file manager.
    void Open(const std::filesystem::path& path, const std::string& said = {})
    {
        Player later(screen, sound.Environment(), home, PlayerStart{.arguments = {path.string()}});
        EXPECT_EQ(later.Program().WaitForExit(20s), 0);
        EXPECT_EQ(later.Log(), said);
    }
    void Open(int track)
    {
        m_track = track;
        Open(m_tracks.Path(m_track));
        EXPECT_TRUE(Eventually([this] { return Shown().track == m_track; }, kPatience, 20ms))
            << "the picture of track " << m_track << " did not come";
    }
    void Restart()
    {
        Leave();
        EXPECT_EQ(player->Log(), "");
        const std::string settings = ReadFile(home.SettingsFile());
        EXPECT_GE(std::ranges::count(settings, '\n'), m_settingLines) << settings;
        m_settingLines = std::ranges::count(settings, '\n');
        Begin();
    }

    SoakTracks::Shown Shown()
    {
        return SoakTracks::Decode(eyes.At(Middle())).value_or(SoakTracks::Shown{-1, -1});
    }

    void DoOneOf(const std::vector<Deed>& deeds)
    {
        int sum = 0;
        for (const Deed& deed : deeds)
            sum += deed.weight;
        int left = Any(sum);
        for (const Deed& deed : deeds) {
            left -= deed.weight;
            if (left < 0) {
                m_done.push_back(deed.name);
                deed.act();
                break;
            }
        }
        if (m_done.size() > kStepsToTell)
            m_done.pop_front();
    }

    void ClickIn(const QRect& slider) { hand.Click(SliderPoint(slider, Any(1000) / 1000.0)); }

    // What a user does.
    std::vector<Deed> Deeds()
    {
        const auto key = [this](const char* chord) { return [this, chord] { hand.Key(chord); }; };
        const auto turn = [this](const char* mode) {
            return [this, mode] {
                hand.Key(mode);
                Keys(Any(2) == 0 ? "Up" : "Down", 1 + Any(6));
            };
        };
        return {
            {"another track", 6, [this] { Open(Any(m_tracks.Count())); }},
            {"a file that isn't there", 1,
             [this] {
                 const std::filesystem::path none = folder / "none.cdg";
                 Open(none, "lyric-lantern: File not found: " + none.string() + "\n");
                 ExpectAnswer();
                 Open(Any(m_tracks.Count()));
             }},
            {"forward", 6, key("Right")},
            {"far forward", 4, key("Page_Down")},
            {"back", 6, key("Left")},
            {"far back", 4, key("Page_Up")},
            {"a click into the position", 8, [this] { ClickIn(Desk().PositionSlider()); }},
            {"a drag of the position", 4,
             [this] {
                 const QRect slider = Desk().PositionSlider();
                 hand.Drag(SliderPoint(slider, Any(1000) / 1000.0),
                           SliderPoint(slider, Any(1000) / 1000.0));
             }},
            {"a click into the volume", 2, [this] { ClickIn(Desk().VolumeSlider()); }},
            {"key", 5, turn("k")},
            {"speed", 5, turn("s")},
            {"balance", 2, turn("b")},
            {"volume", 2, turn("v")},
            {"the wheel", 3,
             [this] {
                 hand.MoveTo(Middle());
                 hand.Wheel(Any(9) - 4);
             }},
            {"mute", 2, key("m")},
            {"pause", 5, key("p")},
            {"stop and play", 2,
             [this] {
                 hand.Key("period");
                 Rest(300);
                 hand.Key("p");
             }},
            {"size 1", 1, key("1")},
            {"size 2", 2, key("2")},
            {"size 3", 1, key("3")},
            {"full screen or back", 3, key("f")},
            {"bigger", 1, key("KP_Add")},
            {"smaller", 1, key("KP_Subtract")},
            {"copy", 1, key("c")},
            {"options", 2,
             [this] {
                 hand.Key("Escape");
                 Rest(800);
                 hand.Key("Escape");
             }},
            {"the menu", 2,
             [this] {
                 hand.Click(Middle(), 3);
                 Rest(300);
                 hand.Key("Escape");
             }},
            {"the file dialog", 1,
             [this] {
                 hand.Key("o");
                 const ScreenWindow dialog(screen, "Select a Karaoke File");
                 EXPECT_TRUE(dialog.HasKeyboardSoon());
                 ExpectAnswer();
                 hand.Key("Escape");
                 EXPECT_TRUE(dialog.IsGoneSoon());
             }},
            {"a rest", 4, [this] { Rest(3000); }},
            {"hasty keys", 3,
             [this] {
                 for (int i = 0; i < 20; ++i) {
                     hand.Key(std::array{"Right", "Left", "p", "m", "Up", "Down", "k", "s", "t",
                                         "2"}[static_cast<std::size_t>(Any(10))]);
                 }
             }},
        };
    }

    // What a desktop does to it.
    std::vector<Deed> Accidents()
    {
        return {
            {"the sound server is killed", 2,
             [this] {
                 sound.Kill();
                 Rest(3000);
                 ExpectAnswer();
                 sound.Restart();
             }},
            {"the sound server freezes", 2,
             [this] {
                 sound.Freeze();
                 Rest(1500);
                 ExpectAnswer();
                 sound.Thaw();
             }},
            {"another sink comes and goes", 3,
             [this] {
                 sound.AddSink({"stage", "Stage"});
                 sound.SetDefaultSink("stage");
                 Rest(1000);
                 sound.RemoveSink("stage");
             }},
            {"the sink is suspended", 2,
             [this] {
                 sound.Control({"suspend-sink", "studio", "1"});
                 Rest(2000);
                 ExpectAnswer();
                 sound.Control({"suspend-sink", "studio", "0"});
             }},
            {"the program is stopped for a while", 2,
             [this] {
                 player->Program().Signal(SIGSTOP);
                 Rest(2000);
                 player->Program().Signal(SIGCONT);
             }},
            {"the sound's file is deleted", 1,
             [this] { Damage([](const auto& path) { std::filesystem::remove(path); }); }},
            {"the sound's file is cut", 1,
             [this] {
                 Damage([](const auto& path) {
                     std::filesystem::resize_file(path, std::filesystem::file_size(path) / 3);
                 });
             }},
            {"a new start", 2, [this] { Restart(); }},
            {"the bus goes", 1,
             [this] {
                 m_bus->Daemon().Signal(SIGKILL);
                 Rest(1000);
                 ExpectAnswer();
                 Restart();
             }},
        };
    }

    // Of the track that plays; the next one opened is another.
    void Damage(const std::function<void(const std::filesystem::path&)>& act)
    {
        const int damaged = m_track;
        act(m_tracks.SoundOf(damaged));
        Rest(1000);
        Keys("Right", 1 + Any(3));
        Rest(1000);
        ExpectAnswer();
        Open((damaged + 1 + Any(m_tracks.Count() - 1)) % m_tracks.Count());
        m_tracks.Write(damaged);
    }

    // A stall of the machine is none of the player's.
    void ExpectAnswer()
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

    void ExpectThePicture()
    {
        std::string seen;
        const auto isRight = [&] {
            const std::optional<double> before = Position();
            const SoakTracks::Shown shown = Shown();
            const std::optional<double> after = Position();
            if (!before || !after)
                return false;
            std::ostringstream account;
            account << "track " << shown.track << ", second " << shown.second << "; position "
                    << *before << " to " << *after << " of track " << m_track;
            seen = account.str();
            return shown.track == m_track && shown.second + 1 > *before - kPictureWithinSeconds &&
                   shown.second < *after + kPictureWithinSeconds;
        };
        EXPECT_TRUE(Eventually(isRight, 10s, 50ms)) << seen;
    }

    void ExpectNothingLost()
    {
        EXPECT_EQ(player->Log(), "");
        const Holdings now = Holdings::Of(player->Program());
        if (m_stepsSinceStart <= kStepsToWarmUp) {
            m_most = {std::max(now.descriptors, m_most.descriptors),
                      std::max(now.threads, m_most.threads),
                      std::max(now.kibibytes, m_most.kibibytes)};
            return;
        }
        EXPECT_LE(now.descriptors, m_most.descriptors + kMoreDescriptors);
        EXPECT_LE(now.threads, m_most.threads + kMoreThreads);
        EXPECT_LE(now.kibibytes, m_most.kibibytes + kMoreKibibytes);
    }

    void Step(int number)
    {
        ++m_stepsSinceStart;
        DoOneOf(number % 5 == 4 ? Accidents() : Deeds());
        if (m_stepsSinceStart >= kStepsUntilRestart)
            Restart();
        Rest(400);
        ASSERT_TRUE(player->Program().IsRunning()) << "the player has ended: " << player->Log();
        ExpectAnswer();
        // It may have come to its end, or stand: then it goes on.
        const auto plays = [this] {
            const bool isPlaying = Is("Playing");
            if (!isPlaying)
                hand.Key("p");
            return isPlaying;
        };
        EXPECT_TRUE(Eventually(plays, kPatience, 1s)) << "it does not play";
        ExpectThePicture();
        ExpectNothingLost();
    }

    const unsigned m_seed = static_cast<unsigned>(FromEnvironment("LANTERN_SOAK_SEED", 1.0));
    std::mt19937 m_random;
    SoakTracks m_tracks{folder.Path()};
    StallWatch m_stalls;
    std::unique_ptr<SessionBus> m_bus;
    std::deque<std::string> m_done;
    int m_track = 0;
    int m_stepsSinceStart = 0;
    std::ptrdiff_t m_settingLines = 0;
    Holdings m_most;
};

TEST_F(Soak, AnEvening)
{
    const auto end = Clock::now() + FromSeconds(60 * FromEnvironment("LANTERN_SOAK_MINUTES", 5.0));
    ASSERT_NO_FATAL_FAILURE(Begin());
    int step = 0;
    for (; Clock::now() < end && !HasFailure(); ++step)
        Step(step);
    std::cout << step << " steps from seed " << m_seed << '\n';
    if (HasFailure()) {
        std::cout << "The last were:\n";
        for (const std::string& done : m_done)
            std::cout << "  " << done << '\n';
    }
}

} // namespace
} // namespace lantern::test
