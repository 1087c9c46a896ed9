// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "DecodedStream.h"
#include "PcmStore.h"

#include <atomic>
#include <cstdint>
#include <limits>
#include <memory>
#include <mutex>
#include <span>

namespace lantern {

// Decodes a sound where it is being read, as long as the decode from its start is not that far: a
// stretch of it, from a little before the place on.
//
// One thread decodes, by Work, and another reads; neither waits for the other.
class AdvanceDecoder {
public:
    // The references must outlive it.
    AdvanceDecoder(const ByteSource& bytes, const WorkLimit& limit, SampleKind kind, int sampleRate)
        : m_bytes(bytes), m_limit(limit), m_kind(kind), m_sampleRate(sampleRate)
    {
    }

    // The reader's. Frames that the stretch holds from this one on; none while it is exchanged.
    struct Part {
        int frames = 0;
        bool atEnd = false; // the sound ends with them
    };
    Part Read(std::int64_t firstFrame, std::span<float> stereo);
    // Where it reads now, whatever it gets there.
    void Follow(std::int64_t frame) { m_readFrame.store(frame, std::memory_order_relaxed); }

    // The decoding thread's, again and again: sees to it that what is read next is there, unless
    // the decode from the start, which has come this far, has or soon will have it.
    void Work(std::int64_t decodedFrames);
    // All is decoded from the start: there is nothing to be ahead of.
    void Finish() { Exchange(nullptr); }

private:
    struct Stretch {
        std::int64_t firstFrame = 0;
        std::unique_ptr<DecodedStream> stream;
        PcmStore store;
        bool ended = false; // the decoding thread's
        std::atomic<std::int64_t> endFrame = -1;

        Stretch(SampleKind kind, int sampleRate) : store(kind, sampleRate) {}
        std::int64_t NextFrame() const { return firstFrame + store.PublishedFrames(); }
        void DecodeBlock();
    };

    bool Begin(std::int64_t frame);
    void Exchange(std::unique_ptr<Stretch> stretch);
    std::int64_t FramesIn(int milliseconds) const
    {
        return std::int64_t{milliseconds} * m_sampleRate / 1000;
    }

    const ByteSource& m_bytes;
    const WorkLimit& m_limit;
    const SampleKind m_kind;
    const int m_sampleRate;
    std::atomic<std::int64_t> m_readFrame = 0;
    std::int64_t m_impossibleFrom =
        std::numeric_limits<std::int64_t>::max(); // the decoding thread's
    std::mutex m_mutex; // held to exchange the stretch, and while it is read
    std::unique_ptr<Stretch> m_stretch;
};

} // namespace lantern
