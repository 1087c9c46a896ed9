// SPDX-License-Identifier: GPL-3.0-or-later
#include "ctlSkinner.h"

#include <QCoreApplication>

#include <benchmark/benchmark.h>

namespace lantern {
namespace {

// All of the options window's chrome, to an image of the screen's ratio.
void SkinRedraw(benchmark::State& state)
{
    ctlSkinner skin(nullptr);
    skin.resize(412, 220);
    skin.SetCaption(QStringLiteral(" Options"));
    skin.show();
    QCoreApplication::processEvents();
    QImage image(skin.size() * skin.devicePixelRatioF(), QImage::Format_RGB32);
    image.setDevicePixelRatio(skin.devicePixelRatioF());
    for (auto _ : state)
        skin.render(&image);
}

void SkinSetUnchanged(benchmark::State& state)
{
    ctlSkinner skin(nullptr);
    skin.resize(412, 220);
    skin.show();
    const QString caption = QStringLiteral(" Options");
    for (auto _ : state) {
        skin.SetCaption(caption);
        skin.SetBackColor(0);
    }
    state.SetItemsProcessed(state.iterations() * 2);
}

BENCHMARK(SkinRedraw);
BENCHMARK(SkinSetUnchanged);

} // namespace
} // namespace lantern
