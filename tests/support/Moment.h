// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <thread>

// The one clock of the end-to-end tests. On Linux it is CLOCK_MONOTONIC, which every process of
// the machine shares: what the ears hear and what the eyes see can be compared.
namespace lantern::test {

using Clock = std::chrono::steady_clock;
using Moment = Clock::time_point;
using namespace std::chrono_literals;

inline double Milliseconds(Clock::duration duration)
{
    return std::chrono::duration<double, std::milli>(duration).count();
}

inline Clock::duration FromSeconds(double seconds)
{
    return std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds));
}

// Asks until the answer is yes; false if it never was within the time.
template <typename Predicate>
bool Eventually(Predicate&& predicate, Clock::duration atMost = 5s, Clock::duration pause = 5ms)
{
    const Moment deadline = Clock::now() + atMost;
    while (!predicate()) {
        if (Clock::now() > deadline)
            return false;
        std::this_thread::sleep_for(pause);
    }
    return true;
}

} // namespace lantern::test
