// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Twips.h"

#include <QRect>

namespace lantern {

// Both of the primary screen.
TwipsPerPixel ScreenTwips();
QRect DesktopRect(); // in pixels

// Whether the program can know where its windows are on the screen, how they lie upon each other,
// and where the pointer is outside of them. Under Wayland it can't, and only places within a window
// mean something.
bool KnowsWindowPlaces();

} // namespace lantern
