// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CommandTable.h"

namespace lantern::tool {

// What is in each track, as JSON.
ParsedCommand ParseInfo(const QCommandLineParser& parser, const SharedOptions& shared);

} // namespace lantern::tool
