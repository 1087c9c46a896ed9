// SPDX-License-Identifier: GPL-3.0-or-later
#include "SoundTap.h"

#include <algorithm>

namespace lantern {

void SoundTap::Listen(bool on)
{
    if (on && !m_slots)
        m_slots = std::make_unique<Slot[]>(kDepthFrames);
    m_listening.store(on, std::memory_order_release);
}

void SoundTap::Restart()
{
    m_firstKept = 0;
    m_claimed = 0;
    m_passed = 0;
}

SoundTap::Slot& SoundTap::SlotOf(std::int64_t frame) const
{
    static_assert((kDepthFrames & (kDepthFrames - 1)) == 0);
    return m_slots[static_cast<std::size_t>(frame & (kDepthFrames - 1))];
}

void SoundTap::Note(std::span<const float> stereo)
{
    const std::int64_t first = m_passed.load(std::memory_order_relaxed);
    const std::int64_t end = first + static_cast<std::int64_t>(stereo.size() / 2);
    if (m_listening.load(std::memory_order_acquire)) {
        // The claim comes before the frames for whoever sees one of them.
        m_claimed.store(end, std::memory_order_relaxed);
        for (std::int64_t frame = first; frame < end; ++frame) {
            const auto at = static_cast<std::size_t>(frame - first) * 2;
            SlotOf(frame).store({stereo[at], stereo[at + 1]}, std::memory_order_release);
        }
    } else {
        m_firstKept.store(end, std::memory_order_relaxed);
    }
    m_passed.store(end, std::memory_order_release);
}

void SoundTap::CopyOut(std::int64_t firstFrame, std::span<float> stereo) const
{
    std::ranges::fill(stereo, 0.0F);
    const std::int64_t passed = PassedFrames();
    const std::int64_t first =
        std::max({firstFrame, m_firstKept.load(std::memory_order_relaxed), passed - kDepthFrames});
    const std::int64_t end =
        std::min(firstFrame + static_cast<std::int64_t>(stereo.size() / 2), passed);
    if (!m_slots)
        return;
    for (std::int64_t frame = first; frame < end; ++frame) {
        const Frame copied = SlotOf(frame).load(std::memory_order_acquire);
        const auto at = static_cast<std::size_t>(frame - firstFrame) * 2;
        stereo[at] = copied.left;
        stereo[at + 1] = copied.right;
    }
    // Whatever was overwritten meanwhile was claimed before.
    const std::int64_t lost = m_claimed.load(std::memory_order_relaxed) - kDepthFrames;
    for (std::int64_t frame = first; frame < std::min(end, lost); ++frame) {
        const auto at = static_cast<std::size_t>(frame - firstFrame) * 2;
        stereo[at] = stereo[at + 1] = 0.0F;
    }
}

} // namespace lantern
