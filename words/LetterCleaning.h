// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ReadLine.h"

#include <vector>

namespace lantern {

// Mends what a reader of single lines gets wrong, by what all lines of a song tell. The lines are
// those that were read, in the same order.
void CleanLetters(const std::vector<SungLine>& lines, std::vector<ReadLine>& read);

} // namespace lantern
