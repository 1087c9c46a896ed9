// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "FlashComparison.h"

#include <string>
#include <vector>

namespace lantern::test {

inline constexpr double kMostOffMs = 40.0;
inline constexpr double kMedianOffMs = 15.0;
inline constexpr double kMostDriftMs = 10.0;

// What one play-through says of the player. Flashes at which the machine stalled count neither for
// nor against it.
struct FlashVerdict {
    std::vector<std::string> complaints; // what the player did wrong
    // The machine stalled at so many flashes that the others are a proof of nothing.
    bool isMeasured = true;

    bool IsGood() const { return isMeasured && complaints.empty(); }
};

FlashVerdict Judge(const Comparison& comparison, const std::vector<Stretch>& stretches);

} // namespace lantern::test
