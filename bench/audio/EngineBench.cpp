// SPDX-License-Identifier: GPL-3.0-or-later
// How long the engine keeps the user-interface thread at most, on one core that the stretcher has
// for itself: all that it renders is taken from it at once, so that it is always behind.
#include "HandOutput.h"
#include "StudioEngine.h"
#include "TestSounds.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>

#include <functional>
#include <sched.h>
#include <thread>
#include <vector>

namespace lantern::test {
namespace {

// The process stays on one core until the end of this.
class OneCore {
public:
    OneCore()
    {
        sched_getaffinity(0, sizeof(m_before), &m_before);
        cpu_set_t one;
        CPU_ZERO(&one);
        CPU_SET(0, &one);
        sched_setaffinity(0, sizeof(one), &one);
    }
    ~OneCore() { sched_setaffinity(0, sizeof(m_before), &m_before); }
    OneCore(const OneCore&) = delete;
    OneCore& operator=(const OneCore&) = delete;

private:
    cpu_set_t m_before = {};
};

void BM_SlowestOperation(benchmark::State& state)
{
    const OneCore core;
    const auto rate = static_cast<int>(state.range(0));
    const Bytes image = WavImage(MakeTicks(rate, 2, std::int64_t{rate} * 30));
    auto& output = *new HandOutput;
    StudioEngine engine{std::unique_ptr<AudioOutput>(&output)};
    engine.EngineInit();
    std::jthread eater([&](const std::stop_token& stop) {
        while (!stop.stop_requested()) {
            output.TakeWhatIsThere(100'000);
            std::this_thread::sleep_for(1ms);
        }
    });
    const std::vector<std::function<void()>> operations = {
        [&] { engine.StartSound(); },         [&] { engine.GetSoundPosition(); },
        [&] { engine.SetEngineVolume(80); },  [&] { engine.SetEngineTempo(7); },
        [&] { engine.SeekSound(9000); },      [&] { engine.PauseSound(); },
        [&] { engine.SetEnginePitch(-3); },   [&] { engine.StartSound(); },
        [&] { engine.GetSoundStatus(); },     [&] { engine.StopSound(); },
        [&] { engine.SetEngineBalance(10); }, [&] { engine.StartSound(); },
        [&] { engine.CloseSound(); }};
    double slowest = 0.0;
    for (auto _ : state) {
        engine.LoadMemory(image); // which reads, and may take longer
        engine.SetEnginePitch(static_cast<int>(state.range(1)));
        engine.SetEngineTempo(static_cast<float>(state.range(2)));
        for (const auto& operation : operations) {
            const Moment asked = Clock::now();
            operation();
            slowest = std::max(slowest, Milliseconds(Clock::now() - asked));
            std::this_thread::sleep_for(60ms);
        }
    }
    state.counters["slowest_ms"] = slowest;
}
BENCHMARK(BM_SlowestOperation)
    ->ArgNames({"rate", "key", "tempo"})
    ->Args({44100, 0, 0})
    ->Args({44100, 3, 0})
    ->Args({192000, 3, 0})
    ->Args({192000, 3, -20})
    ->Iterations(5)
    ->Unit(benchmark::kMillisecond);

} // namespace
} // namespace lantern::test

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
