// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "DecodedStream.h"
#include "SoundIndex.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace lantern {

// Decodes a sound from any place on. As far as the index goes it gives bit for bit what the decode
// from the start gave: what does not prove to be the same is decoded from the start.
class SoundFollower {
public:
    // The references must outlive it.
    SoundFollower(const ByteSource& bytes, const WorkLimit& limit, const SoundIndex& index)
        : m_bytes(bytes), m_limit(limit), m_index(index)
    {
    }

    // From this frame on, or from a little before it. False where it can't tell the place.
    bool Begin(std::int64_t frame);
    void Leave() { m_stream.reset(); }
    bool IsUnderWay() const { return m_stream != nullptr; }
    bool IsProven() const { return m_proven; }
    // The first of the frames that come next.
    std::int64_t NextFrame() const;

    enum class Outcome {
        Frames, // here are some
        Busy,   // not yet
        Waits,  // for the index to grow
        End     // the bytes hold no more
    };
    struct Step {
        Outcome outcome = Outcome::Busy;
        std::span<const std::byte> frames; // valid until the next call
    };
    // Works for some milliseconds.
    Step Next();

private:
    Step NextUnproven();
    Step FromStart();
    bool Take(std::span<const std::byte> block);
    bool Adopt(std::unique_ptr<DecodedStream> stream);

    const ByteSource& m_bytes;
    const WorkLimit& m_limit;
    const SoundIndex& m_index;
    std::unique_ptr<DecodedStream> m_stream;
    bool m_proven = false;
    bool m_fromStart = false;
    std::size_t m_piece = 0;      // that comes next
    std::int64_t m_nextFrame = 0; // of the stream
    std::vector<std::byte> m_pcm; // of the piece and a little beyond, from its start on
    std::size_t m_handedOut = 0;  // bytes of that
};

} // namespace lantern
