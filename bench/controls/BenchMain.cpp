// SPDX-License-Identifier: GPL-3.0-or-later
// The controls drawn as on a screen of twice the usual resolution, without a window system unless
// QT_QPA_PLATFORM names one.
#include "ProgramFonts.h"

#include <QApplication>

#include <benchmark/benchmark.h>

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (qEnvironmentVariableIsEmpty("QT_SCALE_FACTOR"))
        qputenv("QT_SCALE_FACTOR", "2");
    const QApplication application(argc, argv);
    lantern::LoadProgramFonts();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
