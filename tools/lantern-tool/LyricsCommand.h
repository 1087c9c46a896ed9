// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CommandTable.h"

namespace lantern::tool {

// lantern-tool lyrics: the words of tracks, with their times.
ParsedCommand ParseLyrics(const QCommandLineParser& parser, const SharedOptions& shared);

} // namespace lantern::tool
