// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "MappedMemory.h"
#include "SampleConverter.h"

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <span>

namespace lantern {

// The frames of a sound around the place where it is read: so many at most, one upon the other.
// One thread writes and another reads.
class PcmWindow {
public:
    PcmWindow(SampleKind kind, std::int64_t capacityFrames);

    // The writer's. It forgets all and goes on at this frame.
    void Restart(std::int64_t frame);
    // Adds whole frames, no more than it can hold, and forgets the first ones for them.
    void Append(std::span<const std::byte> frames);
    // The sound ends with what is there, or it doesn't.
    void SetEnd(bool ends);

    std::int64_t CapacityFrames() const { return m_capacityFrames; }
    std::int64_t FirstFrame() const { return m_range.first; }
    std::int64_t NextFrame() const { return m_range.next; }
    bool Ends() const { return m_range.ends; }
    bool Holds(std::int64_t frame) const { return frame >= m_range.first && frame < m_range.next; }

    // The reader's. Copies what is there from the frame on, as stereo floats. It never waits, and
    // finds nothing in the moment when the writer changes what is there.
    struct Part {
        int frames = 0;
        bool atEnd = false; // the sound ends with them
    };
    Part Read(std::int64_t firstFrame, std::span<float> stereo) const;

private:
    struct Range {
        std::int64_t first = 0;
        std::int64_t next = 0;
        bool ends = false;
    };

    void Publish(const Range& range);
    void CopyIn(std::int64_t frame, std::span<const std::byte> frames);

    const SampleKind m_kind;
    const std::size_t m_frameSize;
    const MappedMemory m_memory;
    const std::int64_t m_capacityFrames;
    mutable std::mutex m_mutex; // held to change the range, and while what is in it is read
    Range m_range;              // written under the mutex, by the writer only
};

} // namespace lantern
