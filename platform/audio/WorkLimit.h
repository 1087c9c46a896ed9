// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <chrono>

namespace lantern {

// Ends work that runs inside a library: asked between packets and at every read of bytes. Stop may
// be called from any thread.
class WorkLimit {
public:
    using Clock = std::chrono::steady_clock;

    WorkLimit() = default;
    explicit WorkLimit(std::chrono::milliseconds allowed) : m_deadline(Clock::now() + allowed) {}

    // While no other thread is at work with it.
    void AllowUntil(Clock::time_point deadline) { m_deadline = deadline; }
    void Stop() { m_stopped.store(true, std::memory_order_relaxed); }
    bool Reached() const
    {
        return m_stopped.load(std::memory_order_relaxed) ||
               (m_deadline != Clock::time_point::max() && Clock::now() >= m_deadline);
    }

private:
    std::atomic<bool> m_stopped = false;
    Clock::time_point m_deadline = Clock::time_point::max();
};

} // namespace lantern
