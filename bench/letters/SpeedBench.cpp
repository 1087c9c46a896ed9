// SPDX-License-Identifier: GPL-3.0-or-later
#include "ImageSurface.h"
#include "LetterScenes.h"

#include <array>
#include <benchmark/benchmark.h>
#include <ctime>
#include <functional>
#include <random>

// What the smooth look of the picture costs, beside the sharp one: both in turn, so that whatever
// else the machine does slows both alike.
namespace lantern {
namespace {

using Draw = std::function<void(VirtualBuffers& buffers)>;

// One picture, shown in one look.
class ShownPicture {
public:
    ShownPicture(const benchmark::State& state, PictureLook look, const Draw& draw)
        : m_size(static_cast<int>(state.range(0)), static_cast<int>(state.range(1))),
          m_surface(m_size, look)
    {
        m_buffers.FGvbinit();
        m_buffers.FGvbopen(m_buffers.FGvballoc(kPictureSize.width(), kPictureSize.height()));
        m_buffers.FGsetdc(&m_surface);
        draw(m_buffers);
    }

    void Show()
    {
        m_buffers.FGvbscale(0, kPictureSize.width() - 1, 0, kPictureSize.height() - 1, 0,
                            m_size.width(), 0, m_size.height());
    }
    void ShowAll()
    {
        m_surface.Lose();
        Show();
    }
    // A line of tiles changes its colour, and back.
    void ShowEighteenth()
    {
        constexpr std::array<std::uint8_t, 12> rows{};
        for (int x = 0; x < kPictureSize.width(); x += 6)
            m_buffers.DrawTile(x, 24, rows, 1, 0, true);
        Show();
    }

private:
    QSize m_size;
    ImageSurface m_surface;
    VirtualBuffers m_buffers;
};

void DrawLyrics(VirtualBuffers& buffers)
{
    static const LetterScene scene(0);
    buffers.FGsetdacs(0, LetterScene::kColours, scene.PictureColours());
    for (int y = 0; y < kPictureSize.height(); ++y) {
        for (int x = 0; x < kPictureSize.width(); ++x) {
            buffers.FGsetcolor(scene.Indexes().constScanLine(y)[x]);
            buffers.FGputpixel(x, y);
        }
    }
}

void DrawNoise(VirtualBuffers& buffers)
{
    std::mt19937 random(1);
    std::array<std::uint8_t, 48> colours{};
    for (std::uint8_t& component : colours)
        component = static_cast<std::uint8_t>(random() % 16 * 17);
    buffers.FGsetdacs(0, 16, colours);
    for (int y = 0; y < kPictureSize.height(); ++y) {
        for (int x = 0; x < kPictureSize.width(); ++x) {
            buffers.FGsetcolor(static_cast<int>(random() % 16));
            buffers.FGputpixel(x, y);
        }
    }
}

// Of the processor's time, in seconds.
template <class Action>
double Spent(Action action)
{
    const std::clock_t begin = std::clock();
    action();
    return static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
}

void Compare(benchmark::State& state, const Draw& draw, void (ShownPicture::*show)())
{
    ShownPicture sharp(state, PictureLook::Sharp, draw);
    ShownPicture smooth(state, PictureLook::Smooth, draw);
    sharp.Show();
    smooth.Show();
    double sharpTime = 0;
    double smoothTime = 0;
    for (auto _ : state) {
        sharpTime += Spent([&] { (sharp.*show)(); });
        smoothTime += Spent([&] { (smooth.*show)(); });
    }
    const auto turns = static_cast<double>(state.iterations());
    state.counters["sharp_ms"] = 1000 * sharpTime / turns;
    state.counters["smooth_ms"] = 1000 * smoothTime / turns;
    state.counters["smooth_over_sharp"] = smoothTime / sharpTime;
}

void WholeLyrics(benchmark::State& state)
{
    Compare(state, DrawLyrics, &ShownPicture::ShowAll);
}

void WholeNoise(benchmark::State& state)
{
    Compare(state, DrawNoise, &ShownPicture::ShowAll);
}

void EighteenthOfLyrics(benchmark::State& state)
{
    Compare(state, DrawLyrics, &ShownPicture::ShowEighteenth);
}

void Sizes(benchmark::internal::Benchmark* bench)
{
    bench->ArgNames({"w", "h"})->UseRealTime();
    bench->Args({576, 384})->Args({1440, 960})->Args({3240, 2160});
}

BENCHMARK(WholeLyrics)->Apply(Sizes);
BENCHMARK(WholeNoise)->Apply(Sizes);
BENCHMARK(EighteenthOfLyrics)->Apply(Sizes);

} // namespace
} // namespace lantern
