// SPDX-License-Identifier: GPL-3.0-or-later
#include "DistanceTable.h"

#include "PatternClasses.h"

namespace lantern {

namespace {

// The distances of the first patterns of the seed; what is left of it is for the next ones.
std::vector<std::int8_t> TakeDistances(const PatternClasses& classes,
                                       std::span<const std::int8_t>& seed)
{
    std::vector<std::int8_t> distances(classes.PatternCount());
    for (unsigned pattern = 0; pattern < distances.size(); ++pattern) {
        const std::int8_t distance = seed[classes.ClassOf(pattern)];
        distances[pattern] =
            classes.IsInverted(pattern) ? static_cast<std::int8_t>(-distance) : distance;
    }
    seed = seed.subspan(classes.Count());
    return distances;
}

} // namespace

DistanceTable::DistanceTable(std::span<const std::int8_t> seed)
{
    const std::vector<std::int8_t> corners =
        TakeDistances(PatternClasses(kCornerSide, kCornerSide), seed);
    // A row of the window has a fourth pixel, which a corner doesn't look at.
    for (unsigned mask = 0; mask < m_corners.size(); ++mask)
        m_corners[mask] = corners[(mask & 7U) | (mask >> 1 & 070U) | (mask >> 2 & 0700U)];
    const std::vector<std::int8_t> sides =
        TakeDistances(PatternClasses(kSideColumns, kSideRows), seed);
    std::copy(sides.begin(), sides.end(), m_sides.begin());
    m_middles = TakeDistances(PatternClasses(kMiddleSide, kMiddleSide), seed);
}

} // namespace lantern
