// SPDX-License-Identifier: GPL-3.0-or-later
// What the live spectrum costs: each of its steps alone, and all of it in a window on a screen
// while a sound plays, beside the same window hidden and one that is only filled as often.
#include "MakeAudioEngine.h"
#include "PulseServer.h"
#include "SoundTap.h"
#include "SpectrumSurface.h"
#include "SpectrumTransform.h"
#include "TestSounds.h"
#include "XServer.h"

#include <QApplication>
#include <QEventLoop>
#include <QPainter>
#include <QScreen>
#include <QTimer>

#include <benchmark/benchmark.h>

#include <chrono>
#include <cmath>
#include <ctime>
#include <memory>
#include <random>
#include <stdexcept>
#include <vector>

namespace lantern {
namespace {

using namespace std::chrono_literals;

constexpr int kBands = 55;
constexpr int kFramesAtOnce = 512;

// Argument: whether somebody listens.
void TapNote(benchmark::State& state)
{
    SoundTap tap;
    tap.Listen(state.range(0) != 0);
    const std::vector<float> stereo(std::size_t{2} * kFramesAtOnce, 0.5F);
    for (auto _ : state)
        tap.Note(stereo);
    state.SetItemsProcessed(state.iterations() * kFramesAtOnce);
}

void TapCopyOut(benchmark::State& state)
{
    SoundTap tap;
    tap.Listen(true);
    tap.Note(std::vector<float>(std::size_t{2} * SoundTap::kDepthFrames, 0.5F));
    std::vector<float> stereo(std::size_t{2} * 4096);
    for (auto _ : state) {
        tap.CopyOut(tap.PassedFrames() - 5000, stereo);
        benchmark::DoNotOptimize(stereo.data());
    }
}

void Transform(benchmark::State& state)
{
    SpectrumTransform transform(static_cast<int>(state.range(0)));
    float number = 0.0F;
    for (float& sample : transform.Stretch())
        sample = std::sin(number += 0.7F);
    std::vector<float> strengths(kBands);
    for (auto _ : state) {
        transform.Measure(strengths);
        benchmark::DoNotOptimize(strengths.data());
    }
}

// A field of the same size that is only filled for each frame: what any animation costs here.
class BlankField : public QWidget {
public:
    BlankField()
    {
        resize(275, 36);
        setAttribute(Qt::WA_OpaquePaintEvent);
        m_timer.setTimerType(Qt::PreciseTimer);
        QObject::connect(&m_timer, &QTimer::timeout, this, [this] { update(); });
    }

    void Show(bool on)
    {
        setVisible(on);
        on ? m_timer.start(FrameMs(screen()->refreshRate())) : m_timer.stop();
    }

protected:
    void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(rect(), Qt::black); }

private:
    QTimer m_timer;
};

// A track that plays, and the field of the options window.
class Playing {
public:
    Playing()
    {
        Pcm noise{.sampleRate = 44100, .channels = 2, .samples = {}};
        std::minstd_rand random(3);
        for (int i = 0; i < 2 * 44100 * 120; ++i)
            noise.samples.push_back(
                static_cast<std::int16_t>(static_cast<int>(random() % 20001) - 10000));
        m_image = WavImage(noise);
        m_engine = MakeAudioEngine();
        if (!m_engine->EngineInit() || m_engine->LoadMemory(m_image) != 0)
            throw std::runtime_error("no sound");
        m_surface = std::make_unique<SpectrumSurface>(&m_window);
        m_window.resize(412, 220);
        m_surface->setGeometry(79, 167, 275, 36);
        m_surface->Attach(m_engine->Spectrum());
        m_surface->SetOn(true);
        m_engine->StartSound();
    }

    // Percent of one core that the whole process uses, as the screen shows the window or not.
    double ProcessorPercent(bool isShown, std::chrono::milliseconds length)
    {
        m_window.setVisible(isShown);
        for (int i = 0; i < 50 && m_surface->IsRunning() != isShown; ++i)
            Turn(100ms);
        Turn(300ms);
        if (m_surface->IsRunning() != isShown)
            throw std::runtime_error("the spectrum does not run when it should, or does");
        return ProcessorPercent(length);
    }

    double BlankProcessorPercent(std::chrono::milliseconds length)
    {
        m_window.setVisible(false);
        m_blank.Show(true);
        Turn(500ms);
        const double percent = ProcessorPercent(length);
        m_blank.Show(false);
        return percent;
    }

    SpectrumSurface& Surface() { return *m_surface; }

private:
    static double ProcessorPercent(std::chrono::milliseconds length)
    {
        const double before = ProcessorSeconds();
        Turn(length);
        return 100.0 * (ProcessorSeconds() - before) /
               std::chrono::duration<double>(length).count();
    }

    static double ProcessorSeconds()
    {
        timespec used = {};
        clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
        return static_cast<double>(used.tv_sec) + static_cast<double>(used.tv_nsec) * 1e-9;
    }

    static void Turn(std::chrono::milliseconds length)
    {
        QEventLoop loop;
        QTimer::singleShot(length, &loop, &QEventLoop::quit);
        loop.exec();
    }

    std::vector<std::uint8_t> m_image;
    std::unique_ptr<AudioEngine> m_engine;
    QWidget m_window;
    BlankField m_blank;
    std::unique_ptr<SpectrumSurface> m_surface;
};

// Draws the bars and brings them to the screen.
void Repaint(benchmark::State& state)
{
    Playing playing;
    playing.ProcessorPercent(true, 1s);
    for (auto _ : state)
        playing.Surface().repaint();
}

// The windows take turns, so that a busy moment of the machine meets both.
void WhilePlaying(benchmark::State& state)
{
    Playing playing;
    playing.ProcessorPercent(false, 2s); // until all is decoded
    double hidden = 0.0;
    double blank = 0.0;
    double shown = 0.0;
    for (auto _ : state) {
        hidden += playing.ProcessorPercent(false, 2s);
        blank += playing.BlankProcessorPercent(2s);
        shown += playing.ProcessorPercent(true, 2s);
    }
    const auto rounds = static_cast<double>(state.iterations());
    state.counters["percent_of_a_core_hidden"] = hidden / rounds;
    state.counters["percent_of_a_core_blank"] = blank / rounds;
    state.counters["percent_of_a_core_shown"] = shown / rounds;
    state.counters["shown_to_hidden"] = shown / hidden;
    state.counters["shown_to_blank"] = shown / blank;
}

BENCHMARK(TapNote)->ArgName("listening")->Arg(0)->Arg(1);
BENCHMARK(TapCopyOut);
BENCHMARK(Transform)->ArgName("rate")->Arg(44100)->Arg(192000);
BENCHMARK(Repaint);
BENCHMARK(WhilePlaying)->Iterations(5)->Unit(benchmark::kSecond);

} // namespace
} // namespace lantern

int main(int argc, char** argv)
{
    const lantern::test::XServer screen(1280, 800);
    const lantern::test::PulseServer sound;
    for (const auto& [name, value] : screen.Environment())
        qputenv(name.c_str(), value.value_or("").c_str());
    qputenv("QT_QPA_PLATFORM", "xcb");
    qputenv("PULSE_SERVER", sound.Address().c_str());
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
