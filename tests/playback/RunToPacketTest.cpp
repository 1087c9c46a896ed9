// SPDX-License-Identifier: GPL-3.0-or-later
#include "RunToPacket.h"
#include "Packets.h"
#include "PictureFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace lantern {

namespace {

using namespace packets;
using testing::Each;

// A stream whose every packet paints, so that the paints count the packets decoded with painting
// on, and the last one's colour tells the packet that the picture stands at.
class RunToPacketTest : public testing::Test, public PictureSet {
protected:
    static constexpr PacketIndex kCount = 10000;

    RunToPacketTest()
    {
        for (PacketIndex packetNo = 1; packetNo <= kCount; ++packetNo)
            m_packets.Add(BorderPreset(static_cast<std::uint8_t>(packetNo % 16)));
    }

    bool Run(PacketIndex target)
    {
        Painter.Paints = 0;
        return RunToPacket(Picture, Interpreter, m_packets, target);
    }

    void ExpectAt(PacketIndex packetNo)
    {
        EXPECT_EQ(Picture.PlayedPacket, packetNo);
        EXPECT_EQ(Picture.BorderColour, packetNo % 16);
        EXPECT_FALSE(Picture.CatchingUp);
    }

    OneBasedArray<CdgPacket> m_packets;
};

TEST_F(RunToPacketTest, TheSameTargetDoesNothing)
{
    EXPECT_FALSE(Run(0));
    EXPECT_TRUE(Run(7));
    EXPECT_FALSE(Run(7));
    EXPECT_EQ(Painter.Paints, 0);
    ExpectAt(7);
}

TEST_F(RunToPacketTest, GoesOnFromWhereThePictureStands)
{
    Run(100);
    Run(103);
    EXPECT_EQ(Painter.Paints, 3);
    ExpectAt(103);
}

TEST_F(RunToPacketTest, AStepBackStartsAgainFromPacketOne)
{
    Run(200);
    Run(199);
    EXPECT_EQ(Painter.Paints, 199);
    ExpectAt(199);
}

TEST_F(RunToPacketTest, TargetZeroLeavesThePictureAsItWas)
{
    Run(500);
    EXPECT_TRUE(Run(0));
    EXPECT_EQ(Picture.PlayedPacket, 0);
    EXPECT_EQ(Picture.BorderColour, 500 % 16);
    EXPECT_EQ(Painter.Paints, 0);
}

TEST_F(RunToPacketTest, ANegativeTargetIsTheStart)
{
    Run(500);
    EXPECT_TRUE(Run(-5));
    EXPECT_EQ(Picture.PlayedPacket, 0);
    Run(20);
    ExpectAt(20);
}

TEST_F(RunToPacketTest, ATargetBeyondTheStreamEndsAtItsEnd)
{
    Run(kCount + 1000);
    ExpectAt(kCount);
    EXPECT_TRUE(Run(std::numeric_limits<PacketIndex>::max()));
    EXPECT_EQ(Painter.Paints, 0);
    ExpectAt(kCount);
}

TEST_F(RunToPacketTest, WithoutPacketsNothingCanMove)
{
    const OneBasedArray<CdgPacket> none;
    EXPECT_TRUE(RunToPacket(Picture, Interpreter, none, 30));
    EXPECT_EQ(Picture.PlayedPacket, 0);
}

TEST_F(RunToPacketTest, ASecondOfPacketsIsShownAndMoreIsNot)
{
    Run(300);
    EXPECT_EQ(Painter.Paints, 300);
    Run(601);
    EXPECT_EQ(Painter.Paints, 0);
    Run(901);
    EXPECT_EQ(Painter.Paints, 300);
    EXPECT_FALSE(Painter.PaintedWhileCatchingUp);
}

TEST_F(RunToPacketTest, AStepBackToMoreThanASecondIsNotShown)
{
    Run(400);
    Run(399);
    EXPECT_EQ(Painter.Paints, 0);
    Run(300);
    EXPECT_EQ(Painter.Paints, 300);
}

TEST_F(RunToPacketTest, AStepBackNearASnapshotIsNotShownEither)
{
    Run(3010);
    Run(3005);
    EXPECT_EQ(Painter.Paints, 0);
    ExpectAt(3005);
}

// Spoils the packets that a run has no business to decode.
TEST_F(RunToPacketTest, ASnapshotsOwnPacketIsReachedWithoutDecoding)
{
    Run(9000);
    for (PacketIndex packetNo = 1; packetNo <= kCount; ++packetNo)
        m_packets[packetNo] = MemoryPreset(9);
    Run(3000);
    ExpectAt(3000);
    EXPECT_THAT(Pixels(), Each(0));
    EXPECT_TRUE(Picture.PictureDirty);
}

TEST_F(RunToPacketTest, BeforeTheFirstSnapshotTheRunStartsAtPacketOne)
{
    Run(9000);
    m_packets[1] = MemoryPreset(9);
    Run(2999);
    EXPECT_THAT(Pixels(), Each(9));
    ExpectAt(2999);
}

TEST_F(RunToPacketTest, ARunStartsAtTheLastSnapshotBeforeItsTarget)
{
    Run(9000);
    Run(100);
    m_packets[6000] = MemoryPreset(9);
    m_packets[6001] = MemoryPreset(8);
    Run(8999);
    EXPECT_THAT(Pixels(), Each(8));
    ExpectAt(8999);
}

TEST_F(RunToPacketTest, ForwardOverSnapshotsItJumpsToo)
{
    Run(9000);
    Run(10);
    m_packets[11] = MemoryPreset(9);
    Run(6001);
    EXPECT_THAT(Pixels(), Each(0));
    ExpectAt(6001);
}

TEST_F(RunToPacketTest, BeyondTheLastSnapshotItStartsFromThat)
{
    Run(3100);
    Run(10);
    Run(9500);
    ExpectAt(9500);
    EXPECT_EQ(Picture.Snapshots.size(), 4u);
}

TEST_F(RunToPacketTest, PastTheNearestSnapshotItGoesOnWithoutARestore)
{
    Run(9000);
    Run(6500);
    Show(6500, MemoryPreset(9));
    Run(6600);
    EXPECT_THAT(Pixels(), Each(9));
}

TEST_F(RunToPacketTest, TheFirstRunOverGroundLeavesItsSnapshots)
{
    Run(kCount);
    ASSERT_EQ(Picture.Snapshots.size(), 4u);
    EXPECT_EQ(Picture.Snapshots[3].BorderColour, 9000 % 16);
}

TEST_F(RunToPacketTest, AMissingSnapshotCostsOnlyTime)
{
    Run(9000);
    Buffers.FGvbfree(Picture.Snapshots[2].SnapshotBuffer);
    Picture.Snapshots[2].SnapshotBuffer = 0;
    Run(6100);
    ExpectAt(6100);
}

} // namespace

} // namespace lantern
