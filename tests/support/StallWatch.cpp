// SPDX-License-Identifier: GPL-3.0-or-later
#include "StallWatch.h"

#include <algorithm>
#include <pthread.h>
#include <sched.h>

namespace lantern::test {
namespace {

// A machine of more processors has one to spare whenever one of them stalls.
constexpr std::size_t kMostWatched = 8;

std::vector<std::size_t> ProcessorsOfThisProcess()
{
    cpu_set_t allowed = {};
    sched_getaffinity(0, sizeof(allowed), &allowed);
    std::vector<std::size_t> processors;
    for (std::size_t i = 0; i < CPU_SETSIZE && processors.size() < kMostWatched; ++i) {
        if (CPU_ISSET(i, &allowed))
            processors.push_back(i);
    }
    return processors;
}

void StayOn(std::size_t processor)
{
    cpu_set_t only = {};
    CPU_SET(processor, &only);
    pthread_setaffinity_np(pthread_self(), sizeof(only), &only);
}

} // namespace

StallWatch::StallWatch()
{
    for (const std::size_t processor : ProcessorsOfThisProcess())
        m_threads.emplace_back([this, processor] { WatchUntilTold(processor); });
}

StallWatch::~StallWatch()
{
    m_isWatching = false;
    for (std::thread& thread : m_threads)
        thread.join();
}

void StallWatch::WatchUntilTold(std::size_t processor)
{
    StayOn(processor);
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

Clock::duration StallWatch::NearStalls(Moment from, Moment to, Clock::duration reach) const
{
    const std::scoped_lock lock(m_mutex);
    std::vector<Stall> inOrder = m_stalls; // each processor told its own
    std::ranges::sort(inOrder, {}, &Stall::from);
    Clock::duration length = {};
    Moment until = from; // what is before is counted
    for (const Stall& stall : inOrder) {
        const Moment begin = std::max(stall.from - reach, until);
        const Moment end = std::min(stall.to + reach, to);
        if (begin < end) {
            length += end - begin;
            until = end;
        }
    }
    return length;
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
