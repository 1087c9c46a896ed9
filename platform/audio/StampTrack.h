// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AvPointers.h"

#include <cstdint>

namespace lantern {

// Follows the time stamps of a stream's packets, to tell where they end and to judge a length that
// the header claims.
class StampTrack {
public:
    explicit StampTrack(AVRational timeBase) : m_timeBase(timeBase) {}

    void Note(const AVPacket& packet);
    // Packets are left out here: the next one need not follow upon the last.
    void Leap() { m_leaps = true; }

    // The stamps follow upon each other, and the last packet ends a second before the claimed
    // length or later. Frames are counted at the rate, from the sound's start.
    bool Reaches(std::int64_t claimedFrames, int sampleRate) const;
    // They reach the claimed length, and don't refute it.
    bool BearsOut(std::int64_t claimedFrames, int sampleRate) const;
    // Packets begin more than a second behind the claimed end.
    bool Refutes(std::int64_t claimedFrames, int sampleRate) const;

private:
    std::int64_t FramesFromStart(std::int64_t stamp, int sampleRate) const;

    AVRational m_timeBase;
    bool m_any = false;
    bool m_leaps = false;
    bool m_broken = false;
    std::int64_t m_first = 0;
    std::int64_t m_last = 0;
    std::int64_t m_length = 0; // of the last packet
};

} // namespace lantern
