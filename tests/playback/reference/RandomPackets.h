// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Track.h"

#include <cstdint>
#include <random>

namespace lantern {

// How often a random packet is of each kind, relative to the others.
struct PacketMix {
    double preset = 1;     // memory and border
    double tile = 60;      // anywhere, some of them off the picture or on a hidden channel
    double tileXor = 60;   //
    double scroll = 1;     // with and without fill
    double colours = 4;    // either half
    double unknown = 5;    // graphics packets of no known instruction
    double noGraphics = 5; // packets of another command
    double noise = 5;      // 24 bytes of anything
};

// Mostly text, as a lyric disc is.
inline constexpr PacketMix kTileMix = {.scroll = 0.2};
inline constexpr PacketMix kScrollMix = {.tile = 20, .tileXor = 20, .scroll = 40};
inline constexpr PacketMix kDenseTiles = {.preset = 0,
                                          .tile = 1,
                                          .tileXor = 1,
                                          .scroll = 0,
                                          .colours = 0,
                                          .unknown = 0,
                                          .noGraphics = 0,
                                          .noise = 0};

// The same packets for the same seed, on every machine.
class RandomPackets {
public:
    RandomPackets(std::uint32_t seed, const PacketMix& mix);

    CdgPacket Next();
    OneBasedArray<CdgPacket> Stream(PacketIndex count);

private:
    // The standard's distributions differ from library to library; its generators don't.
    std::uint32_t Word() { return static_cast<std::uint32_t>(m_generator()); }
    std::uint32_t Below(std::uint32_t limit) { return Word() % limit; }
    std::uint8_t Symbol(std::uint32_t limit);
    CdgPacket Bytes();

    std::mt19937 m_generator;
    PacketMix m_mix;
};

} // namespace lantern
