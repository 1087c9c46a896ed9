// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Track.h"

#include <cstdint>
#include <span>

namespace lantern {

// How many packets have right, wrong and no parity. One that holds nothing counts as none of them.
struct ParityCount {
    PacketIndex right = 0;
    PacketIndex wrong = 0;
    PacketIndex absent = 0;

    bool operator==(const ParityCount&) const = default;
};

// What a stream of packets is made of.
struct PacketCensus {
    PacketIndex packets = 0;
    PacketIndex graphics = 0;            // of the command that changes the picture
    PacketIndex otherCommands = 0;       // neither that nor empty
    PacketIndex unknownInstructions = 0; // of graphics: they change nothing
    PacketIndex firstDrawing = 0;        // the first that draws; 0 for none
    PacketIndex lastDrawing = 0;
    ParityCount q;
    ParityCount p;
    std::uint16_t drawnColours = 0;   // a bit for each entry that something is drawn in
    std::uint16_t definedColours = 0; // and for each that is defined, at any time

    // A picture is drawn in them, and nobody said how they look. What is mixed out of two colours
    // by exclusive or doesn't count.
    std::uint16_t UndefinedColours() const
    {
        return static_cast<std::uint16_t>(drawnColours & ~definedColours);
    }
};

PacketCensus CountPackets(std::span<const CdgPacket> packets);

} // namespace lantern
