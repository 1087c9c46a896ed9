// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <atomic>

namespace lantern {

// One number for each of the two channels.
struct StereoLevel {
    float left = 1.0F;
    float right = 1.0F;
    bool operator==(const StereoLevel&) const = default;
};

// Two numbers that may be set to others at any moment, and go there on a ramp of 10 milliseconds
// without a corner. A change on the way begins where the ramp is.
class StereoRamp {
public:
    explicit StereoRamp(StereoLevel level = {})
        : m_target(level), m_from(level), m_to(level), m_now(level)
    {
    }

    void SetTarget(StereoLevel target) { m_target = target; } // any thread

    // At the target from the next frame on. Not while the rest may run.
    void Restart(int sampleRate)
    {
        m_rampFrames = std::max(sampleRate / 100, 1);
        m_rampDone = m_rampFrames;
        m_now = m_from = m_to = m_target;
    }
    // To be called before the frames of each stretch.
    void LookForTarget()
    {
        if (const StereoLevel target = m_target; target != m_to) {
            m_from = m_now;
            m_to = target;
            m_rampDone = 0;
        }
    }
    bool IsOnTheWay() const { return m_rampDone < m_rampFrames; }
    const StereoLevel& Now() const { return m_now; }
    // One frame on.
    void Step()
    {
        if (!IsOnTheWay())
            return;
        if (++m_rampDone >= m_rampFrames) {
            m_now = m_to;
            return;
        }
        const float t = static_cast<float>(m_rampDone) / static_cast<float>(m_rampFrames);
        const float weight = t * t * (3.0F - 2.0F * t);
        m_now = {m_from.left + (m_to.left - m_from.left) * weight,
                 m_from.right + (m_to.right - m_from.right) * weight};
    }

private:
    std::atomic<StereoLevel> m_target;
    static_assert(std::atomic<StereoLevel>::is_always_lock_free);
    StereoLevel m_from;
    StereoLevel m_to;
    StereoLevel m_now;
    int m_rampFrames = 441;
    int m_rampDone = 441;
};

} // namespace lantern
