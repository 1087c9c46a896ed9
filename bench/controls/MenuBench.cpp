// SPDX-License-Identifier: GPL-3.0-or-later
#include "ProgramFont.h"
#include "frmMenus.h"

#include <QWidget>

#include <benchmark/benchmark.h>

namespace lantern {
namespace {

// A menu as long as the player's, with the side picture's band and a bar.
struct OpenMenu {
    OpenMenu()
    {
        for (int i = 0; i < 17; ++i) {
            const bool isSeparator = i % 4 == 3;
            state.items.push_back({.key = {},
                                   .caption = isSeparator ? QStringLiteral("-")
                                                          : QStringLiteral("Forward 10 seconds"),
                                   .enabled = !isSeparator,
                                   .foreColor = 0xFFFFFF,
                                   .hotBackColor = 0x08ABFF});
        }
        state.useLeftImage = true;
        state.backColor = 0;
        menu.setFont(ProgramFont(QStringLiteral("Arial"), 11));
        menu.DrawMenu(true, true, true);
    }

    QWidget owner;
    MenuState state;
    frmMenus menu{owner, state};
};

void RedrawMenu(benchmark::State& state)
{
    OpenMenu open;
    for (auto _ : state)
        open.menu.DrawMenu(true, false, true);
}

void MoveMenuBar(benchmark::State& state)
{
    OpenMenu open;
    open.state.hotItem = 1;
    for (auto _ : state) {
        open.state.previousHotItem = open.state.hotItem;
        open.state.hotItem = open.state.hotItem == 1 ? 2 : 1;
        open.menu.DrawMenu(false, false, false);
    }
}

BENCHMARK(RedrawMenu)->Unit(benchmark::kMicrosecond);
BENCHMARK(MoveMenuBar)->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace lantern
