// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Twips.h"

#include <QRect>

namespace lantern {

// Both of the primary screen.
TwipsPerPixel ScreenTwips();
QRect DesktopRect(); // in pixels

} // namespace lantern
