// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Track.h"

#include <vector>

namespace lantern::demo {

// Every packet of the demo disc's picture, for the whole song. Needs a QGuiApplication for its
// letters. Throws std::runtime_error if a line can't be drawn before it is sung.
std::vector<CdgPacket> DrawSong();

} // namespace lantern::demo
