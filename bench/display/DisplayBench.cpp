// SPDX-License-Identifier: GPL-3.0-or-later
#include "VirtualBuffers.h"

#include <QImage>
#include <QPainter>

#include <array>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdint>
#include <ctime>
#include <random>

// What showing the picture costs. The yardstick is QPainter's own smooth scaling of the same
// picture, which gets it in true colours already, while ours starts from indexes.
namespace lantern {
namespace {

constexpr int kViewWidth = 288;
constexpr int kViewHeight = 192;

class ImageSurface : public ScaleSurface {
public:
    ImageSurface(int width, int height) : m_image(width, height, QImage::Format_RGB32) {}

    SurfaceImage Image() override
    {
        return {reinterpret_cast<std::uint32_t*>(m_image.bits()),
                m_image.width(),
                m_image.height(),
                static_cast<int>(m_image.bytesPerLine()) / 4,
                1.0,
                m_generation};
    }
    void Changed(const DeviceRect& rect) override { benchmark::DoNotOptimize(rect.left); }

    void Lose() { ++m_generation; }
    QImage& Retained() { return m_image; }

private:
    QImage m_image;
    std::uint64_t m_generation = 1;
};

class ImageClip : public ClipSink {
public:
    void SetImage(const ClipImage& clip) override
    {
        image = QImage(reinterpret_cast<const uchar*>(clip.pixels.data()), clip.width, clip.height,
                       QImage::Format_RGB32)
                    .copy();
    }
    QImage image;
};

// A picture of busy tiles in sixteen colours, and a surface of the size to measure.
class Scene {
public:
    explicit Scene(const benchmark::State& state)
        : surface(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)))
    {
        buffers.FGvbinit();
        buffers.FGvbopen(buffers.FGvballoc(300, 216));
        buffers.FGsetdc(&surface);
        std::mt19937 random(1);
        std::array<std::uint8_t, 48> colours{};
        for (std::uint8_t& component : colours)
            component = static_cast<std::uint8_t>(random() % 16 * 17);
        buffers.FGsetdacs(0, 16, colours);
        for (int y = 0; y < 216; y += 12) {
            for (int x = 0; x < 300; x += 6) {
                std::array<std::uint8_t, 12> rows{};
                for (std::uint8_t& row : rows)
                    row = static_cast<std::uint8_t>(random() % 64);
                buffers.DrawTile(x, y, rows, static_cast<std::uint8_t>(random() % 16),
                                 static_cast<std::uint8_t>(random() % 16), false);
            }
        }
        ImageClip clip;
        buffers.FGvb2clip(6, 293, 12, 203, clip);
        source = clip.image;
    }

    void Show()
    {
        buffers.FGvbscale(6, 5 + kViewWidth, 12, 11 + kViewHeight, 0, surface.Retained().width(), 0,
                          surface.Retained().height());
    }
    void ShowAll()
    {
        surface.Lose();
        Show();
    }
    void PaintAll()
    {
        QPainter painter(&surface.Retained());
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(surface.Retained().rect(), source);
    }

    VirtualBuffers buffers;
    ImageSurface surface;
    QImage source;
};

void CountPixels(benchmark::State& state)
{
    state.SetItemsProcessed(state.iterations() * state.range(0) * state.range(1));
}

void FullRedrawOurs(benchmark::State& state)
{
    Scene scene(state);
    for (auto _ : state)
        scene.ShowAll();
    CountPixels(state);
}

void FullRedrawQPainterSmooth(benchmark::State& state)
{
    Scene scene(state);
    for (auto _ : state)
        scene.PaintAll();
    CountPixels(state);
}

struct Spent {
    std::chrono::steady_clock::duration wall{};
    std::clock_t processor = 0;

    template <class Action>
    void Add(Action action)
    {
        const auto wallBegin = std::chrono::steady_clock::now();
        const std::clock_t processorBegin = std::clock();
        action();
        processor += std::clock() - processorBegin;
        wall += std::chrono::steady_clock::now() - wallBegin;
    }
};

// Both in turn, so that whatever else the machine does slows both alike. Above 1 ours is faster,
// on the wall and by the processor time of all threads.
void FullRedrawRatio(benchmark::State& state)
{
    Scene scene(state);
    Spent ours;
    Spent theirs;
    for (auto _ : state) {
        ours.Add([&] { scene.ShowAll(); });
        theirs.Add([&] { scene.PaintAll(); });
    }
    state.counters["qpainter_wall_over_ours"] =
        static_cast<double>(theirs.wall.count()) / static_cast<double>(ours.wall.count());
    state.counters["qpainter_processor_over_ours"] =
        static_cast<double>(theirs.processor) / static_cast<double>(ours.processor);
}

// One line of lyrics changes its colour: a strip of tiles as wide as the view.
void DirtyStrip(benchmark::State& state)
{
    Scene scene(state);
    std::array<std::uint8_t, 12> rows{};
    scene.Show();
    for (auto _ : state) {
        for (int x = 6; x < 294; x += 6)
            scene.buffers.DrawTile(x, 96, rows, 5, 0, true);
        scene.Show();
    }
}

void OneColourChanged(benchmark::State& state)
{
    Scene scene(state);
    std::array<std::uint8_t, 3> colour{};
    scene.Show();
    for (auto _ : state) {
        ++colour[0];
        scene.buffers.FGsetdacs(3, 1, colour);
        scene.Show();
    }
}

void TouchedButUnchanged(benchmark::State& state)
{
    Scene scene(state);
    scene.Show();
    for (auto _ : state) {
        scene.buffers.FGsetcolor(scene.buffers.FGgetpixel(50, 50));
        scene.buffers.FGputpixel(50, 50);
        scene.Show();
    }
}

void Unchanged(benchmark::State& state)
{
    Scene scene(state);
    scene.Show();
    for (auto _ : state)
        scene.Show();
}

void DrawTiles(benchmark::State& state)
{
    Scene scene(state);
    const std::array<std::uint8_t, 12> rows = {1, 2, 4, 8, 16, 32, 63, 31, 15, 7, 3, 0};
    const bool exclusive = state.range(2) != 0;
    int tile = 0;
    for (auto _ : state) {
        scene.buffers.DrawTile(tile % 50 * 6, tile / 50 * 12, rows, 3, 12, exclusive);
        tile = tile == 899 ? 0 : tile + 1;
    }
    state.SetItemsProcessed(state.iterations());
}

// QPainter scales on several threads: what counts is the time on the wall, and the processor time
// of the whole process.
void UsualSizes(benchmark::internal::Benchmark* bench)
{
    bench->ArgNames({"w", "h"})->UseRealTime()->MeasureProcessCPUTime();
    bench->Args({576, 384})->Args({1440, 960})->Args({3240, 2160});
}

// With sizes that are no multiple of the picture, one of them smaller than it.
void ManySizes(benchmark::internal::Benchmark* bench)
{
    UsualSizes(bench);
    bench->Args({200, 133})->Args({430, 287})->Args({1000, 667});
}

BENCHMARK(FullRedrawOurs)->Apply(ManySizes);
BENCHMARK(FullRedrawQPainterSmooth)->Apply(ManySizes);
BENCHMARK(FullRedrawRatio)->Apply(ManySizes);
BENCHMARK(DirtyStrip)->Apply(UsualSizes);
BENCHMARK(OneColourChanged)->Apply(UsualSizes);
BENCHMARK(TouchedButUnchanged)->Apply(UsualSizes);
BENCHMARK(Unchanged)->Apply(UsualSizes);
BENCHMARK(DrawTiles)->ArgNames({"w", "h", "exclusive"})->Args({576, 384, 0})->Args({576, 384, 1});

} // namespace
} // namespace lantern
