// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace lantern {

// What a decode of a whole sound finds of damage.
struct SoundHealth {
    bool isSound = false;    // something of it decodes
    bool isComplete = false; // it was decoded to its end
    std::int32_t lengthMs = 0;
    // What its header tells, where headers tell the truth; 0 where they don't.
    std::int32_t claimedMs = 0;
    std::int64_t damagedPackets = 0; // that didn't decode, or not as they were encoded
    std::int32_t firstDamageMs = 0;  // where the first of them is
    // The end is missing: there is less than its header tells, or nothing says that it ends there.
    bool isCutOff = false;
};

} // namespace lantern
