// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Track.h"

#include <cstdint>

// The parity of the disc standard, by which a drive mends packets: two Reed-Solomon codes over the
// field of 64 elements that x^6 + x + 1 generates. Q guards command and instruction by two symbols,
// P all of the packet by four. The first symbol of a packet is the highest power of its polynomial.
// The upper two bits of a byte belong to other channels and don't count.
namespace lantern {

enum class Parity : std::uint8_t {
    Right,
    Wrong,
    Absent, // zeros, where there should be others: it was dropped, as by most programs
    Empty,  // what it would guard is zeros, too, and tells nothing
};

Parity QParity(const CdgPacket& packet);
Parity PParity(const CdgPacket& packet);

// The packet with both as they should be, and no bits of other channels.
CdgPacket WithParity(CdgPacket packet);

} // namespace lantern
