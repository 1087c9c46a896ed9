// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "modPlayer.h"

#include <QWidget>

#include <functional>
#include <memory>

namespace lantern {

// Makes the main window, runs its load step and shows it. None if the load ended the program,
// which has then told the user why. The state outlives the window.
//
// When it is closed, the window's unload calls ReleaseInstance first, writes the settings into
// state.Settings later, and ends the event loop.
using MainWindowFactory = std::function<std::unique_ptr<QWidget>(ProgramState& state)>;

// What a later instance does instead of handing its command line over. False if it came to nothing.
using LaterStart = std::function<bool()>;

// The whole life of the process: all that main does. A later instance returns within the time of
// its hand-over, and all that it tells the window system is that its start is complete. The result
// is the process's exit code.
int RunPlayer(int argc, char** argv, const MainWindowFactory& makeMainWindow,
              const LaterStart& laterStart = {});

} // namespace lantern
