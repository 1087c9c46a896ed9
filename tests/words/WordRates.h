// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SongWords.h"
#include "SungTrack.h"

#include <vector>

namespace lantern::test {

// How what was read of a track compares with what is known of it.
struct WordRates {
    int letters = 0; // that are known, spaces among them
    int wrong = 0;   // edits that make of the one text the other
    int lines = 0;
    int linesFound = 0; // more than half of its letters were read
    int invented = 0;   // lines that are told of and were not sung
    int inBreak = 0;    // words that are told of where there are none
    int interpolated = 0;
    std::vector<double> offsMs; // of the words that were read and are not interpolated
};

WordRates RatesOf(const SungTrack& track, const std::vector<SongLine>& read);

} // namespace lantern::test
