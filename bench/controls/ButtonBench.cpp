// SPDX-License-Identifier: GPL-3.0-or-later
#include "ProgramFont.h"
#include "ctlBtn.h"
#include "ctlPicBtn.h"

#include <QCoreApplication>
#include <QCursor>
#include <QEventLoop>
#include <QTimer>

#include <benchmark/benchmark.h>

#include <ctime>

namespace lantern {
namespace {

PictureReference SomePicture()
{
    static const PictureReference picture = Picture::FromSvg(
        R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 24 24">
           <circle cx="12" cy="12" r="10" fill="#ffab08"/></svg>)",
        QSize(24, 24));
    return picture;
}

template <typename Button>
struct Scene {
    Scene() : button(&window, {.font = ProgramFont(QStringLiteral("Arial"), 11), .displayName = {}})
    {
        window.setGeometry(0, 0, 300, 200);
        button.setGeometry(40, 30, 149, 24);
        button.SetCaption(QStringLiteral("Remember Audio Device"));
        button.SetPicture(SomePicture());
        window.show();
        QCoreApplication::processEvents();
    }

    QWidget window;
    Button button;
};

// Every call draws all of the button.
template <typename Button>
void Redraw(benchmark::State& state, bool isEnabled)
{
    Scene<Button> scene;
    scene.button.SetEnabled(isEnabled);
    for (auto _ : state)
        scene.button.Refresh();
}

template <typename Button>
void RedrawNormal(benchmark::State& state)
{
    Redraw<Button>(state, true);
}

template <typename Button>
void RedrawDisabled(benchmark::State& state)
{
    Redraw<Button>(state, false);
}

template <typename Button>
void SetUnchangedCaption(benchmark::State& state)
{
    Scene<Button> scene;
    const QString caption = scene.button.Caption();
    for (auto _ : state)
        scene.button.SetCaption(caption);
}

template <typename Button>
void SetUnchangedPicture(benchmark::State& state)
{
    Scene<Button> scene;
    for (auto _ : state)
        scene.button.SetPicture(SomePicture());
}

double ProcessorSeconds()
{
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

void RunEventLoop(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

// The share of a core that a second of the event loop takes, as a percentage.
void SpendASecond(benchmark::State& state)
{
    double spent = 0;
    for (auto _ : state) {
        const double before = ProcessorSeconds();
        RunEventLoop(1000);
        spent += ProcessorSeconds() - before;
    }
    state.counters["core_percent"] = spent * 100 / static_cast<double>(state.iterations());
}

class Alarm : public QObject {
public:
    explicit Alarm(int intervalMs) { startTimer(intervalMs, Qt::PreciseTimer); }
};

// What any timer of the interval costs, and so the least that hovering can cost.
void IdleTimer(benchmark::State& state)
{
    const Alarm timer(static_cast<int>(state.range(0)));
    SpendASecond(state);
}

template <typename Button>
void PointerOver(benchmark::State& state)
{
    Scene<Button> scene;
    bool isOver = false;
    scene.button.MouseOver = [&isOver] { isOver = true; };
    scene.button.MouseOut = [&isOver] { isOver = false; };
    // The window may take a moment to come up.
    for (int i = 0; i < 50 && !isOver; ++i) {
        QCursor::setPos(scene.button.mapToGlobal(QPoint(20 + i % 2, 10)));
        RunEventLoop(20);
    }
    SpendASecond(state);
    if (!isOver)
        state.SkipWithError("the pointer was not over the button");
}

template <typename Button>
void PointerAway(benchmark::State& state)
{
    const Scene<Button> scene;
    QCursor::setPos(scene.window.mapToGlobal(QPoint(5, 5)));
    SpendASecond(state);
}

BENCHMARK(RedrawNormal<ctlPicBtn>);
BENCHMARK(RedrawDisabled<ctlPicBtn>);
BENCHMARK(SetUnchangedCaption<ctlPicBtn>);
BENCHMARK(SetUnchangedPicture<ctlPicBtn>);
BENCHMARK(RedrawNormal<ctlBtn>);
BENCHMARK(RedrawDisabled<ctlBtn>);
BENCHMARK(SetUnchangedCaption<ctlBtn>);
BENCHMARK(SetUnchangedPicture<ctlBtn>);
BENCHMARK(IdleTimer)->ArgName("ms")->Arg(3)->Iterations(3)->UseRealTime();
BENCHMARK(PointerOver<ctlPicBtn>)->Iterations(3)->UseRealTime();
BENCHMARK(PointerOver<ctlBtn>)->Iterations(3)->UseRealTime();
BENCHMARK(PointerAway<ctlPicBtn>)->Iterations(3)->UseRealTime();

} // namespace
} // namespace lantern
