// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace lantern {

// What DistanceTable is made from. It was learned from random strokes by the program letter-table,
// which prints its source file:
//     letter-table >platform/graphics/LetterSeed.cpp
inline constexpr std::size_t kLetterSeedSize = 4951;
extern const std::array<std::int8_t, kLetterSeedSize> kLetterSeed;

} // namespace lantern
