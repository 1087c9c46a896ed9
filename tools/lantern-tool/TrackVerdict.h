// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "TrackFacts.h"

#include <QString>

#include <vector>

namespace lantern::tool {

enum class Verdict { Good, Faulty, Unreadable };

// One thing that is worth to be told of a track.
struct Finding {
    QString code;         // for scripts: it never changes
    QString text;         // for people
    bool isFault = false; // that makes the track faulty
};

enum class ParityState {
    Absent, // as in most files
    Right,
    Damaged, // right, but for some packets
    Foreign, // something else stands there
};

ParityState ParityStateOf(const ParityCount& count);

std::vector<Finding> FindingsOf(const TrackFacts& facts);

Verdict VerdictOf(const TrackFacts& facts, const std::vector<Finding>& findings);

} // namespace lantern::tool
