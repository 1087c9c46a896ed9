// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <cstdint>
#include <span>
#include <vector>

namespace lantern {

// A queue of interleaved stereo frames between one writing and one reading thread. Neither ever
// waits for the other. What has not been read yet can be taken back, so the queue may be deep and
// a change of what is in it still soon be heard. Reset is for a moment when neither is at work.
class SoundRing {
public:
    void Reset(int depthFrames);

    // Of the writing thread:
    int RoomFrames() const;
    int HeldFrames() const;                    // or fewer by now
    void Write(std::span<const float> stereo); // at most RoomFrames
    // Takes back all that has not been read but the next so many frames, and copies the first of
    // what it takes to the span. Returns the number of frames taken back.
    int TakeBack(int keptFrames, std::span<float> first);

    // Of the reading thread; the number of frames delivered.
    int Read(std::span<float> stereo);

private:
    // Frames counted modulo 2^32. What lies before read is claimed by the reading thread, though
    // it may not have copied it yet; then it tells by m_released.
    struct Ends {
        std::uint32_t read = 0;
        std::uint32_t written = 0;
    };
    static_assert(std::atomic<Ends>::is_always_lock_free);

    void CopyOut(std::uint32_t frame, std::span<float> stereo) const;
    std::size_t IndexOf(std::uint32_t frame) const;

    std::vector<float> m_samples; // a power of two of frames, so that the count may wrap
    std::uint32_t m_depth = 0;
    std::atomic<Ends> m_ends = Ends{};
    std::atomic<std::uint32_t> m_released = 0;
};

} // namespace lantern
