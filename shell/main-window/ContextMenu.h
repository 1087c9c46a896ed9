// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "MenuEntry.h"

#include <vector>

// What the context menu offers.
namespace lantern {

// What of the player decides about the items: which buttons can be used, and the window's state.
struct ContextMenuState {
    bool canPlay = false;
    bool canPause = false;
    bool canStop = false;
    bool canSkip = false;
    bool isMaximised = false;
};

// Shows the options, never hides them, unlike the command of their button.
inline const QString kOptionsKey = QStringLiteral("OPTIONS");

std::vector<MenuEntry> ContextMenuItems(const ContextMenuState& state);

} // namespace lantern
