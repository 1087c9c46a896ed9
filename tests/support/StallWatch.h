// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Moment.h"

#include <atomic>
#include <mutex>
#include <thread>
#include <vector>

namespace lantern::test {

// Notices when the machine keeps a program that asks for a millisecond's sleep waiting far longer:
// then a late flash says nothing about the player.
class StallWatch {
public:
    static constexpr Clock::duration kStall = 10ms;

    StallWatch() : m_thread([this] { WatchUntilTold(); }) {}
    ~StallWatch()
    {
        m_isWatching = false;
        m_thread.join();
    }
    StallWatch(const StallWatch&) = delete;
    StallWatch& operator=(const StallWatch&) = delete;

    bool StalledBetween(Moment from, Moment to) const;
    std::size_t StallCount() const;
    Clock::duration LongestStall() const;

private:
    struct Stall {
        Moment from;
        Moment to;
    };
    void WatchUntilTold();

    mutable std::mutex m_mutex;
    std::vector<Stall> m_stalls; // guarded by m_mutex
    std::atomic<bool> m_isWatching = true;
    std::thread m_thread; // last: it uses the others
};

} // namespace lantern::test
