// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <span>

namespace lantern {

// The latest sound that went to the output, at hand for whoever wants to look at it: frames are
// found by their number in the output's count.
//
// One thread notes frames as they pass, and never waits nor allocates; another copies them out.
// While nobody listens, noting only counts, and there is no memory for frames before somebody
// does for the first time.
class SoundTap {
public:
    // Deep enough for an output that runs a second ahead at the usual rates.
    static constexpr std::int64_t kDepthFrames = 65536;

    // Of the reading thread. What passes while nobody listens is not kept.
    void Listen(bool on);
    // Copies the frames from that number on, which may be negative. What is not at hand is 0: what
    // lies before the first kept frame, has not passed yet, or has been overwritten.
    void CopyOut(std::int64_t firstFrame, std::span<float> stereo) const;
    // Frames that have passed since the restart.
    std::int64_t PassedFrames() const { return m_passed.load(std::memory_order_acquire); }

    // The count begins anew. Not while another operation may run.
    void Restart();
    // Of the noting thread.
    void Note(std::span<const float> stereo);

private:
    struct Frame {
        float left = 0.0F;
        float right = 0.0F;
    };
    // Each is written on its own, as the reader may look at it in that moment: it finds out
    // afterwards which ones it should not have looked at.
    using Slot = std::atomic<Frame>;
    static_assert(Slot::is_always_lock_free);

    Slot& SlotOf(std::int64_t frame) const;

    std::unique_ptr<Slot[]> m_slots; // never replaced: the noting thread uses it when m_listening
    std::atomic<bool> m_listening = false;
    std::atomic<std::int64_t> m_firstKept = 0;
    std::atomic<std::int64_t> m_claimed = 0; // up to here frames may be being written
    std::atomic<std::int64_t> m_passed = 0;
};

} // namespace lantern
