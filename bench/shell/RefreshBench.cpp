// SPDX-License-Identifier: GPL-3.0-or-later
// The tick's refresh of the controls, which runs a hundred times a second.
#include "AudioControl.h"
#include "ControlRefresh.h"
#include "FakeAudioEngine.h"
#include "OptionsHost.h"
#include "RecordingAudioHost.h"
#include "Toolbar.h"
#include "ToolbarLayout.h"
#include "Track.h"
#include "frmOptions.h"

#include <QApplication>

#include <benchmark/benchmark.h>

#include <chrono>

namespace lantern {
namespace {

// The fake writes down what it is asked; that is not what is measured here.
class SilentEngine : public FakeAudioEngine {
public:
    float GetEngineVolume() override { return Volume; }
    float GetEngineBalance() override { return Balance; }
    int GetEnginePitch() override { return Pitch; }
    float GetEngineTempo() override { return Tempo; }
};

class IdlePlayer : public OptionsHost {
public:
    void DoKeyDown(KeyCode, ShiftBits) override {}
    void DoKeyUp(KeyCode, ShiftBits) override {}
    void MouseWheel(std::int32_t, std::int32_t, std::int32_t, std::int32_t) override {}
    void ToggleStage() override {}
    void ShowPopMenu() override {}
    void ShowDeviceMenu() override {}
    void OpenWebSite() override {}
};

// Both windows on the screen, with a track that plays.
class PlayingPlayer {
public:
    PlayingPlayer()
    {
        window.resize(640, 500);
        pic.setFocusPolicy(Qt::StrongFocus);
        toolbar.SetupToolbar();
        toolbar.Place(TBarRect({640 * 15, 500 * 15}, 150));
        track.CurrentMedia = QStringLiteral("song.cdg");
        track.ClipList.Add({});
        window.show();
        options.show();
        QApplication::setActiveWindow(&window);
        refresh.SetOptions(&options);
        Refresh();
        QCoreApplication::processEvents();
    }

    void Refresh() { refresh.Refresh(5000, isPlaying, false); }

    // The same controls set to the same values, without asking whether they have them.
    void WriteAll()
    {
        options.ctlBalance().SetValue(0);
        options.ctlKeyPitch().SetValue(0);
        options.ctlSpeed().SetValue(0);
        options.ctlVolume().SetValue(100);
        toolbar.ctlVolume().SetValue(100);
        for (const CheckRule& rule : kCheckRules) {
            if (rule.toolbarButton) {
                ctlPicBtn& button = toolbar.tBtn(*rule.toolbarButton);
                button.SetValue(button.Value());
            }
            if (rule.optionIndex) {
                ctlPicBtn& button = options.cmd(*rule.optionIndex);
                button.SetValue(button.Value());
            }
        }
        for (const ButtonRule& rule : kButtonRules) {
            ctlPicBtn& button = toolbar.tBtn(rule.button);
            button.SetEnabled(button.Enabled());
            button.setVisible(!button.isHidden());
        }
    }

    SilentEngine engine;
    RecordingAudioHost audioHost;
    AudioControl audio{engine, audioHost};
    Track track;
    IdlePlayer player;
    QWidget window;
    QWidget pic{&window};
    Toolbar toolbar{window, pic, {}};
    frmOptions options{window, player, audio, nullptr, {}};
    ControlRefresh refresh{toolbar, engine, audio, track};
    bool isPlaying = true;
};

double SecondsOf(const auto& action)
{
    constexpr int kTimes = 2000;
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < kTimes; ++i)
        action();
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    return taken.count() / kTimes;
}

void TickWithoutNews(benchmark::State& state)
{
    PlayingPlayer player;
    for (auto _ : state)
        player.Refresh();
    // Of one run, so that a busy machine slows both.
    const double blind = SecondsOf([&] { player.WriteAll(); });
    state.counters["writing_all_over_ours"] = blind / SecondsOf([&] { player.Refresh(); });
}

// Six controls change and are drawn.
void TickAtPlayAndPause(benchmark::State& state)
{
    PlayingPlayer player;
    for (auto _ : state) {
        player.isPlaying = !player.isPlaying;
        player.Refresh();
    }
}

void BuildToolbar(benchmark::State& state)
{
    for (auto _ : state) {
        QWidget window;
        QWidget pic(&window);
        Toolbar toolbar(window, pic, {});
        toolbar.SetupToolbar();
    }
}

BENCHMARK(TickWithoutNews)->Unit(benchmark::kMicrosecond);
BENCHMARK(TickAtPlayAndPause)->Unit(benchmark::kMicrosecond);
BENCHMARK(BuildToolbar)->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace lantern
