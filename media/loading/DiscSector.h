// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Track.h"
#include "WavHeader.h"

#include <cstddef>
#include <cstdint>
#include <limits>

namespace lantern {

// A raw sector by the disc standard: a 75th of a second of audio, then its packets.
struct DiscSector {
    static constexpr std::size_t kPerSecond = 75;
    static constexpr std::size_t kAudioBytes = kDiscBytesPerSecond / kPerSecond;
    static constexpr std::size_t kPackets = kPacketsPerSecond / kPerSecond;
    static constexpr std::size_t kPacketBytes = kPackets * kPacketSize;
    static constexpr std::size_t kBytes = kAudioBytes + kPacketBytes;
};
static_assert(DiscSector::kAudioBytes == 2352 && DiscSector::kPacketBytes == 96 &&
              DiscSector::kBytes == 2448);

// The last sector that a disc's clock can name is number 74 of the second 99:59.
inline constexpr std::size_t kLongestDiscSectors = (99 * 60 + 59) * DiscSector::kPerSecond + 74 + 1;
inline constexpr std::int64_t kLongestDiscBytes =
    static_cast<std::int64_t>(kLongestDiscSectors * DiscSector::kBytes);
static_assert(kLongestDiscSectors == 450'000 && kLongestDiscBytes == 1'101'600'000);
// Its bytes are counted in 32-bit numbers, as all that is rounded.
static_assert(kLongestDiscBytes < std::numeric_limits<std::int32_t>::max());

} // namespace lantern
