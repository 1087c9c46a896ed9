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

    // The end of the last packet in frames at the rate, counted from the sound's start. What lies
    // before time 0 is the encoder's delay and not part of the sound.
    std::int64_t EndFrame(int sampleRate) const;
    // The stamps begin at the start and follow upon each other, so that EndFrame is the length.
    bool Unbroken() const { return !m_broken && m_first <= 0; }

    // The claimed length lies within the last packet or up to a second from it.
    bool BearsOut(std::int64_t claimedFrames, int sampleRate) const;
    // Packets begin more than a second behind the claimed end.
    bool Refutes(std::int64_t claimedFrames, int sampleRate) const;

private:
    std::int64_t FramesFromStart(std::int64_t stamp, int sampleRate) const;

    AVRational m_timeBase;
    bool m_any = false;
    bool m_broken = false;
    std::int64_t m_first = 0;
    std::int64_t m_last = 0;
    std::int64_t m_length = 0; // of the last packet
};

} // namespace lantern
