// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ReadLine.h"
#include "SongWords.h"
#include "SungLine.h"

namespace lantern {

// Gives a line's words their times.
SongLine TimedLine(const SungLine& line, const ReadLine& words);

} // namespace lantern
