// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Twips.h"

class QWidget;

// The small windows that stand before the player: the options, the stage window.
namespace lantern {

// In the middle of the screen, whose size is that of the design.
void CentreOnScreen(QWidget& window, TwipSize size, TwipsPerPixel twips);

// Being topmost is not enough where the player fills the screen. Each of the two windows may be
// another one than last time: a window that was closed is made anew.
void StandBeforePlayer(QWidget& window, QWidget& mainWindow);

// Shows the window before the player, or hides it and gives the keyboard that it had back to the
// player.
void ShowBeforePlayer(QWidget& window, QWidget& mainWindow, bool isShown);

} // namespace lantern
