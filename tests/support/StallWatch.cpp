// SPDX-License-Identifier: GPL-3.0-or-later
#include "StallWatch.h"

#include <algorithm>

namespace lantern::test {

void StallWatch::WatchUntilTold()
{
    while (m_isWatching) {
        const Moment before = Clock::now();
        std::this_thread::sleep_for(1ms);
        const Moment after = Clock::now();
        if (after - before < kStall)
            continue;
        const std::scoped_lock lock(m_mutex);
        m_stalls.push_back({before, after});
    }
}

bool StallWatch::StalledBetween(Moment from, Moment to) const
{
    const std::scoped_lock lock(m_mutex);
    return std::ranges::any_of(
        m_stalls, [&](const Stall& stall) { return stall.from < to && stall.to > from; });
}

std::size_t StallWatch::StallCount() const
{
    const std::scoped_lock lock(m_mutex);
    return m_stalls.size();
}

Clock::duration StallWatch::LongestStall() const
{
    const std::scoped_lock lock(m_mutex);
    Clock::duration longest = {};
    for (const Stall& stall : m_stalls)
        longest = std::max(longest, stall.to - stall.from);
    return longest;
}

} // namespace lantern::test
