// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CommandTable.h"

namespace lantern::tool {

// Each track as a film.
ParsedCommand ParseVideo(const QCommandLineParser& parser, const SharedOptions& shared);

} // namespace lantern::tool
