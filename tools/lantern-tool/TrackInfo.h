// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Track.h"

#include <QByteArray>

namespace lantern::tool {

// The track as one JSON object. A byte of a path that is no text appears as the escape \udc80 to
// \udcff whose low byte it is.
QByteArray TrackInfo(const Track& track);

} // namespace lantern::tool
