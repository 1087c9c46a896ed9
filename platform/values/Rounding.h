// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

namespace lantern {

// To the nearest whole number, ties to the even neighbour, as the processor rounds by default.
// What a 32-bit number can't hold becomes the nearest one that it can; what is no number, 0.
inline std::int32_t RoundToEven(double value)
{
    if (std::isnan(value))
        return 0;
    const double rounded = std::nearbyint(value);
    if (rounded >= static_cast<double>(std::numeric_limits<std::int32_t>::max()))
        return std::numeric_limits<std::int32_t>::max();
    if (rounded <= static_cast<double>(std::numeric_limits<std::int32_t>::min()))
        return std::numeric_limits<std::int32_t>::min();
    return static_cast<std::int32_t>(rounded);
}

} // namespace lantern
