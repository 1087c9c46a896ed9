// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "MappedMemory.h"
#include "SampleConverter.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>

namespace lantern {

struct PcmLimits {
    std::size_t memorySize = std::size_t{64} << 20;
    // Where a sound without an end is cut off: after twelve hours of CD sound.
    std::size_t largestSize = std::size_t{8} << 30;
    // What others may want of the disk that holds the rest.
    std::uint64_t bytesToLeaveFree = std::uint64_t{512} << 20;
};

// Keeps the frames of a sound while one thread appends and another reads what has been published.
// The first 64 MB (six minutes of CD sound) stay in memory; the rest goes to an unlinked temporary
// file, so that a track of hours costs no memory.
class PcmStore {
public:
    // In frames; and no sound lasts more than a day.
    static std::int64_t LongestSound(SampleKind kind, int sampleRate, const PcmLimits& limits = {});

    PcmStore(SampleKind kind, int sampleRate, const PcmLimits& limits = {});
    ~PcmStore();
    PcmStore(const PcmStore&) = delete;
    PcmStore& operator=(const PcmStore&) = delete;

    // The writer's. Appends whole frames and publishes them. False if not all of them fit: the
    // sound is as long as a sound may get, or there is no room left on the disk.
    bool Append(std::span<const std::byte> frames);

    // The system's code for what did not let all of it in: EFBIG or ENOSPC; 0 as long as it all
    // did.
    int Trouble() const { return m_trouble.load(std::memory_order_relaxed); }

    std::int64_t PublishedFrames() const { return m_published.load(std::memory_order_acquire); }
    // The reader's. Copies frames that have been published, as stereo floats; returns how many.
    // Never locks or allocates, and waits for the disk at most, far into a long track.
    int Read(std::int64_t firstFrame, std::span<float> stereo) const;

private:
    std::size_t MemoryFrom(std::size_t offset) const;
    bool AppendToFile(std::span<const std::byte> bytes);
    bool CopyBytes(std::size_t offset, std::span<std::byte> out) const;

    static constexpr int kNoFile = -1;

    const SampleKind m_kind;
    const std::size_t m_largestSize;
    const std::uint64_t m_bytesToLeaveFree;
    // The whole range is reserved at once, so that a reader never meets a table that grows.
    const MappedMemory m_memory;
    std::size_t m_size = 0; // the writer's count of bytes
    int m_file = kNoFile;   // made before the first frame in it is published
    std::atomic<std::int64_t> m_published = 0;
    std::atomic<int> m_trouble = 0;
};

} // namespace lantern
