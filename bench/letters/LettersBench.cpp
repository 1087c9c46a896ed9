// SPDX-License-Identifier: GPL-3.0-or-later
#include "LetterScenes.h"
#include "Likeness.h"

#include <QGuiApplication>

#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

// How much the looks of the picture look like type: text of six typefaces in the picture's pixels,
// beside the same text drawn large.
namespace lantern {
namespace {

const std::vector<std::unique_ptr<LetterScene>>& Scenes()
{
    static const auto scenes = [] {
        std::vector<std::unique_ptr<LetterScene>> all;
        for (std::size_t number = 0; number < kSceneCount; ++number)
            all.push_back(std::make_unique<LetterScene>(number));
        return all;
    }();
    return scenes;
}

using Show = QImage (*)(const LetterScene& scene, QSize size);

Likeness MeanLikeness(QSize size, Show show)
{
    Likeness sum;
    double pixels = 0;
    for (const auto& scene : Scenes())
        sum +=
            SummedLikeness(show(*scene, size), scene->Truth(size), scene->TextBoxes(size), pixels);
    return {sum.structure / pixels, sum.error / pixels};
}

QImage Sharp(const LetterScene& scene, QSize size)
{
    return scene.Shown(size, PictureLook::Sharp);
}
QImage Smooth(const LetterScene& scene, QSize size)
{
    return scene.Shown(size, PictureLook::Smooth);
}
QImage Bilinear(const LetterScene& scene, QSize size)
{
    return scene.ShownBilinear(size);
}
QImage Epx(const LetterScene& scene, QSize size)
{
    return scene.ShownByEpx(size);
}

void LettersLikeType(benchmark::State& state, Show show, const char* look)
{
    const QSize size(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
    Likeness ours;
    for (auto _ : state)
        ours = MeanLikeness(size, show);
    state.counters["ssim"] = ours.structure;
    state.counters["error_percent"] = 100 * ours.error;
    if (const QByteArray folder = qgetenv("LANTERN_LETTERS_FOLDER"); !folder.isEmpty()) {
        for (std::size_t number = 0; number < Scenes().size(); ++number) {
            const QString name = QString::fromLocal8Bit(folder) + QStringLiteral("/%1-%2-%3.png");
            const LetterScene& scene = *Scenes()[number];
            show(scene, size)
                .save(name.arg(number).arg(size.width()).arg(QString::fromLatin1(look)));
            scene.Truth(size).save(name.arg(number).arg(size.width()).arg(QStringLiteral("Truth")));
        }
    }
}

void Sizes(benchmark::internal::Benchmark* bench)
{
    bench->ArgNames({"w", "h"})->Iterations(1)->Unit(benchmark::kMillisecond);
    bench->Args({3168, 2112})->Args({1440, 960})->Args({1377, 918});
}

BENCHMARK_CAPTURE(LettersLikeType, Sharp, Sharp, "Sharp")->Apply(Sizes);
BENCHMARK_CAPTURE(LettersLikeType, Bilinear, Bilinear, "Bilinear")->Apply(Sizes);
BENCHMARK_CAPTURE(LettersLikeType, Epx, Epx, "Epx")->Apply(Sizes);
BENCHMARK_CAPTURE(LettersLikeType, Smooth, Smooth, "Smooth")->Apply(Sizes);

} // namespace
} // namespace lantern

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
