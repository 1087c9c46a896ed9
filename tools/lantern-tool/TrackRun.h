// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "TrackCommand.h"

#include <QStringList>

namespace lantern::tool {

// Does the tracks that the words name (ListTracks), several at a time, and prints what comes of
// them in their order. The result is the exit code: the highest of all.
int RunTracks(TrackCommand& command, const QStringList& words, const SharedOptions& options);

} // namespace lantern::tool
