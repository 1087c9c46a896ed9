// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Track.h"

namespace lantern {

inline constexpr int kTicksOfTrack = 30;

// A track to set the sound's delay by: a click, and with it a flash of the whole picture, so many
// milliseconds after each other, the first after the first of them. Distances are taken as the
// nearest multiple of 10, where a packet begins together with a frame of the sound.
Track MakeTickTrack(int msBetween);

} // namespace lantern
