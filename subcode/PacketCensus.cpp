// SPDX-License-Identifier: GPL-3.0-or-later
#include "PacketCensus.h"

#include "PacketParity.h"

namespace lantern {
namespace {

constexpr std::uint8_t kColour = 0x0F;
constexpr std::uint16_t kLowEntries = 0x00FF;
constexpr std::uint16_t kHighEntries = 0xFF00;
constexpr std::size_t kFirstTileRow = 4;

void Note(Parity parity, ParityCount& count)
{
    switch (parity) {
    case Parity::Right:
        ++count.right;
        break;
    case Parity::Wrong:
        ++count.wrong;
        break;
    case Parity::Absent:
        ++count.absent;
        break;
    case Parity::Empty:
        break;
    }
}

std::uint16_t BitOf(std::uint8_t colour)
{
    return static_cast<std::uint16_t>(1U << (colour & kColour));
}

// Of a block only those that some pixel of it has.
std::uint16_t ColoursOfTile(const CdgPacket& packet)
{
    std::uint8_t set = 0;
    std::uint8_t clear = 0;
    for (std::size_t i = kFirstTileRow; i < packet.PacketData.size(); ++i) {
        set |= packet.PacketData[i];
        clear |= static_cast<std::uint8_t>(~packet.PacketData[i]);
    }
    std::uint16_t colours = 0;
    if ((clear & kSymbolMask) != 0)
        colours |= BitOf(packet.PacketData[0]);
    if ((set & kSymbolMask) != 0)
        colours |= BitOf(packet.PacketData[1]);
    return colours;
}

// Otherwise it only moves the view, and nothing comes in from the side.
bool Scrolls(const CdgPacket& packet)
{
    constexpr std::uint8_t kDirection = 0x30;
    return ((packet.PacketData[1] | packet.PacketData[2]) & kDirection) != 0;
}

// What the instruction does; false for one that the disc standard doesn't know.
bool NoteGraphics(const CdgPacket& packet, PacketCensus& census, bool& draws)
{
    switch (static_cast<CdgInstruction>(packet.Instruction & kSymbolMask)) {
    case CdgInstruction::MemoryPreset:
    case CdgInstruction::BorderPreset:
        census.drawnColours |= BitOf(packet.PacketData[0]);
        return true;
    case CdgInstruction::TileBlock:
        census.drawnColours |= ColoursOfTile(packet);
        draws = true;
        return true;
    case CdgInstruction::TileBlockXor:
        draws = true;
        return true;
    case CdgInstruction::LoadColourTableLow:
        census.definedColours |= kLowEntries;
        return true;
    case CdgInstruction::LoadColourTableHigh:
        census.definedColours |= kHighEntries;
        return true;
    case CdgInstruction::ScrollPreset:
        if (Scrolls(packet))
            census.drawnColours |= BitOf(packet.PacketData[0]);
        return true;
    case CdgInstruction::ScrollCopy:
    case CdgInstruction::DefineTransparentColour:
        return true;
    }
    return false;
}

} // namespace

PacketCensus CountPackets(std::span<const CdgPacket> packets)
{
    PacketCensus census;
    for (const CdgPacket& packet : packets) {
        ++census.packets;
        Note(QParity(packet), census.q);
        Note(PParity(packet), census.p);
        const std::uint8_t command = packet.Command & kSymbolMask;
        if (command != kGraphicsCommand) {
            census.otherCommands += command != 0 ? 1 : 0;
            continue;
        }
        ++census.graphics;
        bool draws = false;
        if (!NoteGraphics(packet, census, draws))
            ++census.unknownInstructions;
        if (!draws)
            continue;
        census.lastDrawing = census.packets;
        if (census.firstDrawing == 0)
            census.firstDrawing = census.packets;
    }
    return census;
}

} // namespace lantern
