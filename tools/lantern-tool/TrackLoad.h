// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Track.h"

namespace lantern::tool {

// Loads the track as the player would, without playing it. The result is an error message, empty
// on success.
[[nodiscard]] QString LoadTrack(const QString& path, Track& track);

} // namespace lantern::tool
