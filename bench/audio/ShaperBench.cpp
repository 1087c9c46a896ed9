// SPDX-License-Identifier: GPL-3.0-or-later
// What playing costs between the decoder and the output: one second of what is heard.
#include "SoundShaper.h"
#include "StereoGain.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace lantern {
namespace {

constexpr int kRate = 44100;
constexpr int kBlockFrames = 256;

// A chord that never ends.
class Chord final : public SoundDecoder {
public:
    explicit Chord(int rate = kRate) : m_rate(rate), m_second(2 * static_cast<std::size_t>(rate))
    {
        for (std::size_t i = 0; i < m_second.size(); ++i) {
            const double turns = static_cast<double>(i / 2) * 6.283185307179586 / rate;
            m_second[i] = static_cast<float>(
                0.2 * (std::sin(220 * turns) + std::sin(277 * turns) + std::sin(330 * turns)));
        }
    }

    int SampleRate() const override { return m_rate; }
    std::int64_t FrameCount() const override { return std::int64_t{1} << 40; }
    bool DecodedToEnd() const override { return true; }
    Chunk Read(std::int64_t firstFrame, std::span<float> stereo) override
    {
        const auto first = static_cast<std::size_t>(firstFrame % m_rate) * 2;
        const std::size_t before = std::min(stereo.size(), m_second.size() - first);
        std::copy_n(m_second.data() + first, before, stereo.data());
        std::copy_n(m_second.data(), stereo.size() - before, stereo.data() + before);
        return {static_cast<int>(stereo.size() / 2), false, false};
    }

private:
    int m_rate;
    std::vector<float> m_second;
};

void RenderSecond(SoundShaper& shaper, int rate = kRate)
{
    std::array<float, std::size_t{2}* kBlockFrames> block = {};
    for (int frames = 0; frames < rate;) {
        frames += shaper.Render(block).frames;
        benchmark::DoNotOptimize(block);
    }
}

void BM_OneSecond(benchmark::State& state)
{
    Chord chord;
    SoundShaper shaper;
    shaper.Start(chord, kRate,
                 ShapeFor(static_cast<int>(state.range(0)), static_cast<float>(state.range(1))));
    for (auto _ : state) {
        RenderSecond(shaper);
    }
    state.counters["times_real_time"] =
        benchmark::Counter(static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}
BENCHMARK(BM_OneSecond)
    ->ArgNames({"key", "tempo"})
    ->Args({0, 0})
    ->Args({3, 0})
    ->Args({0, -20})
    ->Args({3, -20})
    ->Args({-10, 0})
    ->Args({10, 50})
    ->Args({0, 90})
    ->Args({0, -90})
    ->Unit(benchmark::kMillisecond);

// To be compared with the same shape above: the stretcher works at an ordinary rate.
void BM_OneSecondOfAHighRate(benchmark::State& state)
{
    const auto rate = static_cast<int>(state.range(0));
    Chord chord(rate);
    SoundShaper shaper;
    shaper.Start(chord, rate,
                 ShapeFor(static_cast<int>(state.range(1)), static_cast<float>(state.range(2))));
    for (auto _ : state)
        RenderSecond(shaper, rate);
}
BENCHMARK(BM_OneSecondOfAHighRate)
    ->ArgNames({"rate", "key", "tempo"})
    ->Args({96000, 3, -20})
    ->Args({176400, 3, -20})
    ->Args({192000, 3, -20})
    ->Args({192000, 10, 50})
    ->Args({192000, 0, 0})
    ->Unit(benchmark::kMillisecond);

// Before each second the thread's vector registers are left as a new thread may find them: wide. To
// be compared with the same shape above.
void BM_OneSecondInAWideThread(benchmark::State& state)
{
#if defined(__x86_64__) && defined(__GNUC__)
    if (__builtin_cpu_supports("avx") != 0) {
        Chord chord;
        SoundShaper shaper;
        shaper.Start(chord, kRate, ShapeFor(3, -20.0F));
        for (auto _ : state) {
            asm volatile("vorps %%ymm0, %%ymm0, %%ymm0" ::: "memory");
            RenderSecond(shaper);
        }
        return;
    }
#endif
    state.SkipWithError("this processor has no wide registers");
}
BENCHMARK(BM_OneSecondInAWideThread)->Unit(benchmark::kMillisecond);

// From a change of key to its first frame: what a turn of the wheel costs.
void BM_Change(benchmark::State& state)
{
    Chord chord;
    SoundShaper shaper;
    shaper.Start(chord, kRate, {});
    std::array<float, 2> frame = {};
    int semitones = 0;
    for (auto _ : state) {
        semitones = semitones % 10 + 1;
        shaper.Change(kRate, {semitones, 1.0}, {});
        shaper.Render(frame);
        benchmark::DoNotOptimize(frame);
    }
}
BENCHMARK(BM_Change)->Unit(benchmark::kMillisecond);

void BM_GainOfOneSecond(benchmark::State& state)
{
    StereoGain gain;
    gain.SetTarget(LevelFor(static_cast<float>(state.range(0)), 0.0F));
    gain.Restart(kRate);
    std::vector<float> second(2 * kRate, 0.25F);
    for (auto _ : state) {
        gain.Apply(second);
        benchmark::DoNotOptimize(second.data());
    }
}
BENCHMARK(BM_GainOfOneSecond)->ArgName("volume")->Arg(100)->Arg(99)->Unit(benchmark::kMillisecond);

void BM_LimiterOfOneSecond(benchmark::State& state)
{
    PeakLimiter limiter(kRate);
    std::vector<float> noise(kRate);
    for (std::size_t i = 0; i < noise.size(); ++i) {
        noise[i] = static_cast<float>(i * 7919 % 2000) / 1000.0F - 1.0F;
        noise[i] *= static_cast<float>(state.range(0)) / 100.0F;
    }
    for (auto _ : state) {
        std::vector<float> left = noise;
        std::vector<float> right = noise;
        limiter.Apply(left, right);
        benchmark::DoNotOptimize(left.data());
    }
}
BENCHMARK(BM_LimiterOfOneSecond)->ArgName("peak")->Arg(90)->Arg(150)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace lantern
