// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <span>

namespace lantern {

// The length that a Musepack stream of version 8 states in its first packet. FFmpeg tells it only
// in whole blocks of up to 1.7 s.
struct MusepackHeader {
    std::int64_t frameCount = 0;   // frames from the first to be heard to the last
    std::int64_t silentFrames = 0; // frames to drop at the start, beside the decoder's delay
};

// Nothing if the bytes, the first of a file, are no such stream.
std::optional<MusepackHeader> ParseMusepackHeader(std::span<const std::uint8_t> bytes);

} // namespace lantern
