// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CommandTable.h"

namespace lantern::tool {

// Pictures of each track, at packets or times.
ParsedCommand ParseFrame(const QCommandLineParser& parser, const SharedOptions& shared);

} // namespace lantern::tool
