// SPDX-License-Identifier: GPL-3.0-or-later
// An evening with the player: a hand that does anything at random, and the accidents of a desktop.
// After each step the window has to answer, the picture to be that of the position, and nothing to
// be lost. The environment tells how long (LANTERN_SOAK_MINUTES) and from which seed
// (LANTERN_SOAK_SEED); the same seed does the same steps, as far as the machine's pace allows.
#include "ScreenWindow.h"
#include "SoakFixture.h"

#include <array>
#include <csignal>
#include <deque>
#include <functional>
#include <iostream>
#include <vector>

namespace lantern::test {
namespace {

constexpr std::size_t kStepsToTell = 12;
constexpr int kStepsUntilRestart = 40;
constexpr int kHour = 3600; // seconds

class Soak : public SoakFixture {
protected:
    using Act = std::function<void()>;
    struct Deed {
        const char* name;
        int weight;
        Act act;
    };

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
            {"another monitor comes and goes", 2,
             [this] {
                 Xrandr({"--setmonitor", "stage", "800/200x1200/300+800+0", "none"});
                 Rest(1500);
                 ExpectAnswer();
                 Xrandr({"--delmonitor", "stage"});
             }},
            {"the program is stopped for a while", 2,
             [this] {
                 player->Program().Signal(SIGSTOP);
                 Rest(2000);
                 player->Program().Signal(SIGCONT);
             }},
            {"the clock is set", 2,
             [this] {
                 MoveClock((Any(49) - 24) * kHour);
                 Rest(1000);
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
            {"the disk is full", CanFillDisk() ? 2 : 0,
             [this] {
                 FillDisk();
                 Keys("Up", 1 + Any(3));
                 Open((m_track + 1) % m_tracks.Count());
                 RestartWithFullDisk();
             }},
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

    void Step(int number)
    {
        ++m_stepsSinceStart;
        DoOneOf(number % 5 == 4 ? Accidents() : Deeds());
        if (m_stepsSinceStart >= kStepsUntilRestart)
            Restart();
        Rest(400);
        ASSERT_TRUE(player->Program().IsRunning()) << "the player has ended: " << player->Log();
        ExpectAnswer();
        ExpectThePicture();
        ExpectNothingLost();
    }

    std::deque<std::string> m_done;
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
