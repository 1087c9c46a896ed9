// SPDX-License-Identifier: GPL-3.0-or-later
#include "PacketSheet.h"

#include "Process.h"

#include <gtest/gtest.h>

namespace lantern::test {
namespace {

TEST(PacketSheet, PacketsLieWhereTheirNumbersSay)
{
    PacketSheet sheet(0.01);
    sheet.Put(2, Packet::BorderPreset(11));
    const ScratchFolder folder;
    sheet.Write(folder / "track.cdg");
    std::string wanted(3 * 24, '\0');
    wanted[24] = 9;
    wanted[25] = 2;
    wanted[28] = 11;
    EXPECT_EQ(ReadFile(folder / "track.cdg"), wanted);
}

TEST(PacketSheet, ColoursHaveFourBitsOfEachComponent)
{
    Packet::Colours colours = {};
    colours[1] = qRgb(17 * 0xA, 17 * 0x6, 17 * 0x3);
    const Packet packet = Packet::LoadColoursHigh(colours);
    EXPECT_EQ(packet.instruction, 31);
    EXPECT_EQ(packet.data[2], 0b101001);
    EXPECT_EQ(packet.data[3], 0b100011);
}

TEST(PacketSheet, ANumberIsTakenOnceAndLiesInTheTrack)
{
    PacketSheet sheet(0.01);
    sheet.Put(1, Packet::MemoryPreset(1));
    EXPECT_THROW(sheet.Put(1, Packet::MemoryPreset(2)), std::logic_error);
    EXPECT_THROW(sheet.Put(4, Packet::MemoryPreset(2)), std::out_of_range);
    EXPECT_THROW(sheet.Put(0, Packet::MemoryPreset(2)), std::out_of_range);
}

} // namespace
} // namespace lantern::test
