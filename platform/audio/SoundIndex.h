// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SampleConverter.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace lantern {

// What a decode of a sound from its start met, about each second: which frame has which stamp, and
// a check of the frames from there to the next such place. By it the decoding is taken up anywhere,
// and proves to be the same.
class SoundIndex {
public:
    SoundIndex(SampleKind kind, int sampleRate);

    // The frames that follow, and the stamp of the first one, if it has one.
    void Note(std::span<const std::byte> block, std::optional<std::int64_t> stamp);
    // There are no more.
    void Finish();

    std::int64_t Frames() const { return m_frames; } // so far

    // A piece is what lies between two places. Those before this number are known.
    std::size_t KnownPieces() const { return m_places.size() - 1; }
    std::size_t PieceAt(std::int64_t frame) const; // known or not
    std::int64_t FirstFrame(std::size_t piece) const { return m_places[piece].frame; }
    std::optional<std::int64_t> Stamp(std::size_t piece) const { return m_places[piece].stamp; }
    bool Proves(std::size_t piece, std::span<const std::byte> frames) const;

    SampleKind Kind() const { return m_kind; }
    int SampleRate() const { return m_sampleRate; }

private:
    struct Place {
        std::int64_t frame = 0;
        std::optional<std::int64_t> stamp;
        std::uint32_t check = 0; // of what follows
    };

    const SampleKind m_kind;
    const int m_sampleRate;
    std::vector<Place> m_places = {Place{}}; // the last one begins the piece that still grows
    std::int64_t m_frames = 0;
};

} // namespace lantern
