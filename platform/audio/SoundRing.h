// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <cstdint>
#include <span>
#include <vector>

namespace lantern {

// A queue of interleaved stereo frames between one writing and one reading thread. Neither ever
// waits for the other. Reset is for a moment when neither is at work.
class SoundRing {
public:
    void Reset(int capacityFrames);

    int RoomFrames() const;                    // writing thread
    void Write(std::span<const float> stereo); // writing thread; at most RoomFrames
    int Read(std::span<float> stereo);         // reading thread; the number of frames delivered

private:
    std::size_t IndexOf(std::uint64_t frame) const;

    std::vector<float> m_samples;
    std::uint64_t m_capacity = 0;
    std::atomic<std::uint64_t> m_written = 0;
    std::atomic<std::uint64_t> m_read = 0;
};

} // namespace lantern
