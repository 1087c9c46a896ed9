// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ByteSource.h"
#include "WorkLimit.h"

#include <cstdint>

namespace lantern {

// The length of a sound, without decoding it where the packets alone tell.
struct SoundLength {
    std::int64_t frames = 0; // at the rate asked for
    bool exact = false;      // what a decode to the end yields; otherwise an estimate
};

// The rate is that of the decoded sound. Once halted, an estimate by what has been seen.
SoundLength MeasureSound(const ByteSource& bytes, int sampleRate, const WorkLimit& limit);

} // namespace lantern
