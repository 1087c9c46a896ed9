// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CommandTable.h"

namespace lantern::tool {

// What a collector wants to know of each track: whether it plays, here and elsewhere.
ParsedCommand ParseCheck(const QCommandLineParser& parser, const SharedOptions& shared);

} // namespace lantern::tool
