// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Moment.h"

#include <atomic>
#include <mutex>
#include <thread>
#include <vector>

namespace lantern::test {

// Notices when a processor of the machine keeps a program that asks for a millisecond's sleep
// waiting far longer: then a late flash says nothing about the player. Each processor is watched by
// a thread that stays on it, for the player may be on the one that stalls while another is idle.
class StallWatch {
public:
    static constexpr Clock::duration kStall = 10ms;

    StallWatch();
    ~StallWatch();
    StallWatch(const StallWatch&) = delete;
    StallWatch& operator=(const StallWatch&) = delete;

    bool StalledBetween(Moment from, Moment to) const;
    // Of the time from one to the other, what lies within `reach` of a stall.
    Clock::duration NearStalls(Moment from, Moment to, Clock::duration reach) const;
    std::size_t StallCount() const; // one that several processors had counts once for each
    Clock::duration LongestStall() const;

private:
    struct Stall {
        Moment from;
        Moment to;
    };
    void WatchUntilTold(std::size_t processor);

    mutable std::mutex m_mutex;
    std::vector<Stall> m_stalls; // guarded by m_mutex
    std::atomic<bool> m_isWatching = true;
    std::vector<std::thread> m_threads; // last: they use the others
};

} // namespace lantern::test
