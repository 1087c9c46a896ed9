// SPDX-License-Identifier: GPL-3.0-or-later
#include "PacketCensus.h"
#include "PacketParity.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <vector>

namespace lantern {
namespace {

CdgPacket Tile(std::uint8_t first, std::uint8_t second, std::uint8_t pixels)
{
    CdgPacket packet = GraphicsPacket(CdgInstruction::TileBlock);
    packet.PacketData.fill(pixels);
    packet.PacketData[0] = first;
    packet.PacketData[1] = second;
    return packet;
}

CdgPacket Preset(std::uint8_t colour)
{
    CdgPacket packet = GraphicsPacket(CdgInstruction::MemoryPreset);
    packet.PacketData[0] = colour;
    return packet;
}

TEST(PacketCensus, CountsWhatPacketsAre)
{
    CdgPacket other;
    other.Command = 8;
    CdgPacket unknown = GraphicsPacket(CdgInstruction::TileBlock);
    unknown.Instruction = 7;
    CdgPacket marked = GraphicsPacket(CdgInstruction::TileBlockXor);
    marked.Command |= 0xC0; // by channels that aren't ours
    marked.Instruction |= 0x40;
    const std::vector<CdgPacket> packets = {{},      Preset(1), other, Tile(1, 2, 1),
                                            unknown, marked,    {}};
    const PacketCensus census = CountPackets(packets);
    EXPECT_EQ(census.packets, 7);
    EXPECT_EQ(census.graphics, 4);
    EXPECT_EQ(census.otherCommands, 1);
    EXPECT_EQ(census.unknownInstructions, 1);
    EXPECT_EQ(census.firstDrawing, 4);
    EXPECT_EQ(census.lastDrawing, 6);
    EXPECT_EQ(CountPackets({}).firstDrawing, 0);
}

TEST(PacketCensus, KnowsAllInstructionsOfTheDiscStandard)
{
    for (int instruction = 0; instruction < 64; ++instruction) {
        CdgPacket packet = GraphicsPacket(CdgInstruction::TileBlock);
        packet.Instruction = static_cast<std::uint8_t>(instruction);
        const std::vector<int> known = {1, 2, 6, 20, 24, 28, 30, 31, 38};
        const bool isKnown = std::ranges::find(known, instruction) != known.end();
        EXPECT_EQ(CountPackets(std::vector{packet}).unknownInstructions, isKnown ? 0 : 1)
            << instruction;
    }
}

TEST(PacketCensus, AScrollDrawsItsColourWhereItMovesThePicture)
{
    CdgPacket packet = GraphicsPacket(CdgInstruction::ScrollPreset);
    packet.PacketData[0] = 5;
    packet.PacketData[1] = 7;
    packet.PacketData[2] = 11;
    EXPECT_EQ(CountPackets(std::vector{packet}).drawnColours, 0U);
    for (const std::size_t place : {1U, 2U}) {
        CdgPacket moved = packet;
        moved.PacketData[place] |= 0x20;
        EXPECT_EQ(CountPackets(std::vector{moved}).drawnColours, 1U << 5U);
        moved.Instruction = static_cast<std::uint8_t>(CdgInstruction::ScrollCopy);
        EXPECT_EQ(CountPackets(std::vector{moved}).drawnColours, 0U);
    }
}

TEST(PacketCensus, CountsParity)
{
    CdgPacket wrong = WithParity(Preset(3));
    wrong.PacketData[9] = 1;
    const std::vector<CdgPacket> packets = {
        {}, WithParity(Preset(1)), WithParity(Preset(2)), wrong, Preset(4)};
    const PacketCensus census = CountPackets(packets);
    EXPECT_EQ(census.p, (ParityCount{.right = 2, .wrong = 1, .absent = 1}));
    EXPECT_EQ(census.q, (ParityCount{.right = 3, .wrong = 0, .absent = 1}));
}

TEST(PacketCensus, KnowsColoursThatAreDrawnAndNeverDefined)
{
    CdgPacket mixed = Tile(14, 15, 0x3F);
    mixed.Instruction = static_cast<std::uint8_t>(CdgInstruction::TileBlockXor);
    std::vector<CdgPacket> packets = {Preset(0x19), Tile(2, 10, 0x3F), Tile(3, 11, 0), mixed};
    EXPECT_EQ(CountPackets(packets).UndefinedColours(), 1U << 9U | 1U << 10U | 1U << 3U);
    packets.push_back(GraphicsPacket(CdgInstruction::LoadColourTableLow));
    EXPECT_EQ(CountPackets(packets).UndefinedColours(), 1U << 9U | 1U << 10U);
    packets.push_back(GraphicsPacket(CdgInstruction::LoadColourTableHigh));
    EXPECT_EQ(CountPackets(packets).UndefinedColours(), 0U);
    // Both colours of a block, if it has pixels of both.
    EXPECT_EQ(CountPackets(std::vector{Tile(4, 5, 1)}).UndefinedColours(), 1U << 4U | 1U << 5U);
}

} // namespace
} // namespace lantern
