// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SettledPicture.h"

#include <bitset>
#include <cstdint>
#include <utility>
#include <vector>

namespace lantern {

// Which colours a track's words have.
struct WordColours {
    using Pair = std::pair<DiscColour, DiscColour>;

    std::bitset<kDiscColours> text;
    std::vector<Pair> wipes; // from, to; sorted, and empty where words aren't recoloured

    bool IsWipe(DiscColour from, DiscColour to) const;
};

WordColours FindWordColours(const OneBasedArray<CdgPacket>& packets);

} // namespace lantern
