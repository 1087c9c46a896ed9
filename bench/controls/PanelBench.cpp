// SPDX-License-Identifier: GPL-3.0-or-later
#include "ctlFrame.h"
#include "ctlSlide.h"
#include "ctlTicker.h"

#include <QCoreApplication>

#include <benchmark/benchmark.h>

namespace lantern {
namespace {

// A control of a size as in the program's window, on the screen.
template <typename Control>
class Shown {
public:
    Shown(int width, int height) : control(nullptr)
    {
        control.resize(width, height);
        control.show();
        QCoreApplication::processEvents();
    }

    Control control;
};

void SlideRedraw(benchmark::State& state)
{
    Shown<ctlSlide> shown(380, 12);
    shown.control.SetCenterLine(true);
    std::int32_t value = 0;
    for (auto _ : state) {
        value = value == 100 ? 0 : value + 1;
        shown.control.SetValue(value);
    }
}

void SlideSetUnchanged(benchmark::State& state)
{
    Shown<ctlSlide> shown(380, 12);
    for (auto _ : state) {
        shown.control.SetValue(0);
        shown.control.SetMax(100);
        shown.control.SetSliderColor(shown.control.SliderColor());
    }
    state.SetItemsProcessed(state.iterations() * 3);
}

// All four digits change.
void TickerRedraw(benchmark::State& state)
{
    Shown<ctlTicker> shown(kTickerWidth, kTickerHeight);
    std::int32_t seconds = 0;
    for (auto _ : state) {
        seconds = (seconds + 671) % 6000;
        shown.control.SetTicker(std::int32_t{seconds}, true);
    }
}

void TickerCoverAndUncover(benchmark::State& state)
{
    Shown<ctlTicker> shown(kTickerWidth, kTickerHeight);
    for (auto _ : state) {
        shown.control.SetTicker(-1, false);
        shown.control.SetTicker(0, true);
    }
}

void TickerSetUnchanged(benchmark::State& state)
{
    Shown<ctlTicker> shown(kTickerWidth, kTickerHeight);
    for (auto _ : state)
        shown.control.SetTicker(754, true);
}

void FrameRedraw(benchmark::State& state)
{
    Shown<ctlFrame> shown(547, 48);
    shown.control.SetFrameBorder(static_cast<std::int32_t>(state.range(0)));
    shown.control.SetCaption(QStringLiteral("Remember Audio Device"));
    ColourValue colour = 0;
    for (auto _ : state)
        shown.control.SetForeColor(++colour & 0xFFFFFF);
}

void FrameSetUnchanged(benchmark::State& state)
{
    Shown<ctlFrame> shown(547, 48);
    const QString caption = QStringLiteral("Remember Audio Device");
    shown.control.SetCaption(caption);
    for (auto _ : state)
        shown.control.SetCaption(caption);
}

void TickerFirstShown(benchmark::State& state)
{
    for (auto _ : state) {
        Shown<ctlTicker> shown(kTickerWidth, kTickerHeight);
        benchmark::DoNotOptimize(shown.control.SurfaceImage().bits());
    }
}

BENCHMARK(SlideRedraw);
BENCHMARK(SlideSetUnchanged);
BENCHMARK(TickerRedraw);
BENCHMARK(TickerCoverAndUncover);
BENCHMARK(TickerSetUnchanged);
BENCHMARK(TickerFirstShown);
BENCHMARK(FrameRedraw)->ArgName("border")->Arg(0)->Arg(5)->Arg(7);
BENCHMARK(FrameSetUnchanged);

} // namespace
} // namespace lantern
