// SPDX-License-Identifier: GPL-3.0-or-later
#include "Packets.h"
#include "PictureFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lantern {

namespace {

using namespace packets;
using testing::Each;

class PictureMemoryTest : public testing::Test, public PictureSet {
protected:
    // Runs the packets of no graphics up to a number.
    void Idle(PacketIndex first, PacketIndex last)
    {
        for (PacketIndex packetNo = first; packetNo <= last; ++packetNo)
            Show(packetNo, CdgPacket{});
    }
};

TEST(PictureMemory, SetupMakesBothBuffersAndLeavesThePictureActive)
{
    VirtualBuffers buffers;
    PictureMemory picture(buffers);
    picture.SetupGraphics(true);
    EXPECT_EQ(buffers.AllocatedCount(), 2);
    EXPECT_EQ(buffers.Pixels(picture.PictureBuffer).size(), 300u * 216u);
    EXPECT_EQ(buffers.Pixels(picture.WrapBuffer).size(), 600u * 432u);
    buffers.FGsetcolor(3);
    buffers.FGfillpage();
    EXPECT_THAT(buffers.Pixels(picture.PictureBuffer), Each(3));
    EXPECT_THAT(buffers.Pixels(picture.WrapBuffer), Each(0));
    picture.SetupGraphics(false);
    EXPECT_EQ(buffers.AllocatedCount(), 0);
}

TEST(PictureMemory, TearingDownFreesTheSnapshotsToo)
{
    VirtualBuffers buffers;
    PictureMemory picture(buffers);
    picture.SetupGraphics(true);
    picture.TakeSnapshot(3000);
    picture.TakeSnapshot(6000);
    EXPECT_EQ(buffers.AllocatedCount(), 4);
    picture.SetupGraphics(false);
    EXPECT_EQ(buffers.AllocatedCount(), 0);
    EXPECT_TRUE(picture.Snapshots.empty());
}

TEST(PictureMemory, CanBeSetUpAgain)
{
    VirtualBuffers buffers;
    PictureMemory picture(buffers);
    for (int round = 0; round < 3; ++round) {
        picture.SetupGraphics(true);
        EXPECT_EQ(buffers.AllocatedCount(), 2);
        picture.SetupGraphics(false);
    }
    EXPECT_EQ(buffers.AllocatedCount(), 0);
}

TEST_F(PictureMemoryTest, AResetKeepsThePalette)
{
    const int palette = Picture.PaletteHandle;
    Interpreter.ClearPicture();
    Show(1, Colours(true, {0xFFF}));
    EXPECT_EQ(Picture.PaletteHandle, palette);
    Picture.RealizePalette();
    EXPECT_EQ(Picture.PaletteHandle, palette);
}

TEST_F(PictureMemoryTest, ASnapshotHoldsAllThatIsShown)
{
    Show(1, MemoryPreset(4));
    Show(2, BorderPreset(9));
    Show(3, Colours(true, {0x123, 0x456}));
    Show(4, Scroll({.horizontalOffset = 3, .verticalOffset = 7}));
    Picture.TakeSnapshot(3000);
    ASSERT_EQ(Picture.Snapshots.size(), 2u);
    const PictureSnapshot& snapshot = Picture.Snapshots[1];
    EXPECT_EQ(snapshot.ViewLeft, 9);
    EXPECT_EQ(snapshot.ViewTop, 19);
    EXPECT_EQ(snapshot.BorderColour, 9);
    EXPECT_EQ(snapshot.Colours, Picture.ColourTable);
    EXPECT_THAT(Buffers.Pixels(snapshot.SnapshotBuffer), Each(4));
}

TEST_F(PictureMemoryTest, ARestoreBringsItAllBack)
{
    Show(1, MemoryPreset(4));
    Show(2, BorderPreset(9));
    Show(3, Colours(true, {0x123, 0x456}));
    Show(4, Scroll({.horizontalOffset = 3, .verticalOffset = 7}));
    const ColourBytes colours = Picture.ColourTable;
    Picture.TakeSnapshot(3000);
    Interpreter.ClearPicture();
    Picture.PictureDirty = false;
    Picture.RestoreSnapshot(1);
    EXPECT_THAT(Pixels(), Each(4));
    EXPECT_EQ(Picture.ViewLeft, 9);
    EXPECT_EQ(Picture.ViewTop, 19);
    EXPECT_EQ(Picture.BorderColour, 9);
    EXPECT_EQ(Picture.ColourTable, colours);
    EXPECT_EQ(Picture.PlayedPacket, 3000);
    EXPECT_TRUE(Picture.PictureDirty);
}

TEST_F(PictureMemoryTest, ARestoredPictureShowsInItsOwnColours)
{
    Show(1, Colours(false, {0xA5C}));
    EXPECT_EQ(ShownColour(), 0xFFAA55CCu);
    Picture.TakeSnapshot(3000);
    Show(2, Colours(false, {0x123}));
    Picture.RestoreSnapshot(1);
    EXPECT_EQ(ShownColour(), 0xFFAA55CCu);
}

TEST_F(PictureMemoryTest, AfterAResetIndexZeroShowsBlack)
{
    Show(1, Colours(false, {0xA5C}));
    Picture.Reset();
    EXPECT_EQ(ShownColour(), 0xFF000000u);
}

TEST_F(PictureMemoryTest, ASnapshotIsAPictureOfItsOwn)
{
    Show(1, MemoryPreset(4));
    Picture.TakeSnapshot(3000);
    Show(2, MemoryPreset(5));
    EXPECT_THAT(Buffers.Pixels(Picture.Snapshots[1].SnapshotBuffer), Each(4));
    Picture.RestoreSnapshot(1);
    Show(3001, MemoryPreset(6));
    EXPECT_THAT(Buffers.Pixels(Picture.Snapshots[1].SnapshotBuffer), Each(4));
}

TEST_F(PictureMemoryTest, ASnapshotThatExistsStandsAsItIs)
{
    Show(1, MemoryPreset(4));
    Picture.TakeSnapshot(3000);
    const int buffer = Picture.Snapshots[1].SnapshotBuffer;
    Show(2, MemoryPreset(5));
    Show(2, BorderPreset(5));
    Picture.TakeSnapshot(3000);
    EXPECT_EQ(Picture.Snapshots.size(), 2u);
    EXPECT_EQ(Picture.Snapshots[1].SnapshotBuffer, buffer);
    EXPECT_EQ(Picture.Snapshots[1].BorderColour, 0);
    EXPECT_THAT(Buffers.Pixels(buffer), Each(4));
    EXPECT_EQ(Buffers.AllocatedCount(), 3);
}

TEST_F(PictureMemoryTest, ThereAreNoSnapshotsBeforeTheFirstInterval)
{
    Idle(1, 2999);
    EXPECT_TRUE(Picture.Snapshots.empty());
    Picture.FreeSnapshots();
    EXPECT_EQ(Buffers.AllocatedCount(), 2);
    Idle(3000, 3000);
    EXPECT_EQ(Picture.Snapshots.size(), 2u);
    EXPECT_EQ(Buffers.AllocatedCount(), 3);
}

TEST_F(PictureMemoryTest, ANewTrackStartsAgainAtSnapshotOne)
{
    Idle(1, 9000);
    EXPECT_EQ(Buffers.AllocatedCount(), 5);
    Picture.FreeSnapshots();
    Interpreter.ClearPicture();
    EXPECT_EQ(Buffers.AllocatedCount(), 2);
    EXPECT_TRUE(Picture.Snapshots.empty());
    Idle(1, 3000);
    EXPECT_EQ(Picture.Snapshots.size(), 2u);
    EXPECT_NE(Picture.Snapshots[1].SnapshotBuffer, 0);
}

TEST_F(PictureMemoryTest, TheNearestSnapshotIsNeverBeyondTheTarget)
{
    EXPECT_EQ(Picture.NearestSnapshot(100000), 0);
    Idle(1, 9000);
    EXPECT_EQ(Picture.NearestSnapshot(0), 0);
    EXPECT_EQ(Picture.NearestSnapshot(2999), 0);
    EXPECT_EQ(Picture.NearestSnapshot(3000), 1);
    EXPECT_EQ(Picture.NearestSnapshot(5999), 1);
    EXPECT_EQ(Picture.NearestSnapshot(6000), 2);
    EXPECT_EQ(Picture.NearestSnapshot(9000), 3);
    EXPECT_EQ(Picture.NearestSnapshot(100000), 3);
}

TEST_F(PictureMemoryTest, ASnapshotWithoutABufferIsPassedOver)
{
    Idle(1, 9000);
    Buffers.FGvbfree(Picture.Snapshots[3].SnapshotBuffer);
    Buffers.FGvbfree(Picture.Snapshots[2].SnapshotBuffer);
    Picture.Snapshots[3].SnapshotBuffer = Picture.Snapshots[2].SnapshotBuffer = 0;
    EXPECT_EQ(Picture.NearestSnapshot(9500), 1);
    Picture.FreeSnapshots();
    EXPECT_EQ(Buffers.AllocatedCount(), 2);
}

} // namespace

} // namespace lantern
