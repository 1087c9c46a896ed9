// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CommandTable.h"

namespace lantern::tool {

// A telling picture of each track, in a square.
ParsedCommand ParseThumbnail(const QCommandLineParser& parser, const SharedOptions& shared);

} // namespace lantern::tool
