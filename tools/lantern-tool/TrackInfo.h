// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "TrackLoad.h"

#include <QByteArray>

namespace lantern::tool {

// The track as one JSON object. A byte of a path or a name that is no text appears as the escape
// \udc80 to \udcff whose low byte it is.
//
// Where it is one of several, its own path comes with it.
QByteArray TrackInfo(const Track& track, const std::vector<SkippedMember>& skipped,
                     const QString& path = {});

} // namespace lantern::tool
