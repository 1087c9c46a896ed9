// SPDX-License-Identifier: GPL-3.0-or-later
#include "Packets.h"
#include "PictureFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace lantern {

namespace {

using namespace packets;
using testing::Each;

constexpr std::array<std::uint8_t, 12> kSolid = {63, 63, 63, 63, 63, 63, 63, 63, 63, 63, 63, 63};

// Numbers that are no multiple of the pace, so that nothing is painted by chance.
constexpr PacketIndex kQuiet = 2;

class PacketInterpreterTest : public testing::Test, public PictureSet {
protected:
    PacketInterpreterTest()
    {
        Interpreter.ClearPicture();
        Painter.Paints = 0;
    }

    // A picture in which every pixel's place can be told from its neighbours'.
    void DrawPattern()
    {
        for (int y = 0; y < kPictureHeight; ++y) {
            for (int x = 0; x < kPictureWidth; ++x) {
                Buffers.FGsetcolor(Pattern(x, y));
                Buffers.FGputpixel(x, y);
            }
        }
    }
    static int Pattern(int x, int y) { return (x / 6 * 7 + y / 12 * 5 + x * 3 + y) % 16; }

    // Whether each pixel is the pattern's at its place moved back, wrapped around.
    bool IsPatternMovedBy(int dx, int dy) const
    {
        for (int y = 0; y < kPictureHeight; ++y) {
            for (int x = 0; x < kPictureWidth; ++x) {
                const int fromX = (x - dx + kPictureWidth) % kPictureWidth;
                const int fromY = (y - dy + kPictureHeight) % kPictureHeight;
                if (Pixel(x, y) != Pattern(fromX, fromY))
                    return false;
            }
        }
        return true;
    }

    bool IsFilled(int minX, int maxX, int minY, int maxY, int colour) const
    {
        for (int y = minY; y <= maxY; ++y) {
            for (int x = minX; x <= maxX; ++x) {
                if (Pixel(x, y) != colour)
                    return false;
            }
        }
        return true;
    }

    void ExpectIgnored(const CdgPacket& packet)
    {
        DrawPattern();
        Picture.PictureDirty = false;
        const auto before = Pixels();
        Show(kQuiet, packet);
        EXPECT_EQ(Pixels(), before);
        EXPECT_FALSE(Picture.PictureDirty);
        EXPECT_EQ(Picture.ViewLeft, 6);
        EXPECT_EQ(Picture.ViewTop, 12);
        EXPECT_EQ(Picture.BorderColour, 0);
        EXPECT_THAT(Picture.ColourTable, Each(0));
    }
};

TEST_F(PacketInterpreterTest, PacketZeroResetsAndShowsEvenWhileCatchingUp)
{
    Show(kQuiet, MemoryPreset(5));
    Show(kQuiet, BorderPreset(7));
    Show(kQuiet, Colours(true, {0xFFF, 0xFFF, 0xFFF, 0xFFF, 0xFFF, 0xFFF, 0xFFF, 0xFFF}));
    Show(kQuiet, Scroll({.horizontalOffset = 3, .verticalOffset = 4}));
    Painter.Paints = 0;
    Picture.CatchingUp = true;
    Interpreter.ShowCode(0);
    EXPECT_EQ(Painter.Paints, 1);
    EXPECT_THAT(Pixels(), Each(0));
    EXPECT_THAT(Picture.ColourTable, Each(0));
    EXPECT_EQ(Picture.BorderColour, 0);
    EXPECT_EQ(Picture.ViewLeft, 6);
    EXPECT_EQ(Picture.ViewTop, 12);
}

TEST_F(PacketInterpreterTest, PacketZeroReadsNoPacket)
{
    Picture.CurrentPacket = MemoryPreset(5);
    Interpreter.ClearPicture();
    EXPECT_THAT(Pixels(), Each(0));
}

TEST_F(PacketInterpreterTest, PacketOneResetsAndIsInterpreted)
{
    Show(kQuiet, MemoryPreset(5));
    Show(kQuiet, BorderPreset(7));
    Painter.Paints = 0;
    Show(1, Tile({.colour1 = 3, .rows = kSolid}));
    EXPECT_TRUE(IsFilled(0, 5, 0, 11, 3));
    EXPECT_TRUE(IsFilled(6, 299, 0, 215, 0));
    EXPECT_EQ(Picture.BorderColour, 0);
    EXPECT_TRUE(Picture.PictureDirty);
    EXPECT_EQ(Painter.Paints, 0);
}

TEST_F(PacketInterpreterTest, ANegativeNumberResetsAndIsInterpretedWithoutASnapshot)
{
    Show(kQuiet, BorderPreset(7));
    Show(-3000, MemoryPreset(2));
    EXPECT_THAT(Pixels(), Each(2));
    EXPECT_EQ(Picture.BorderColour, 0);
    EXPECT_TRUE(Picture.Snapshots.empty());
}

TEST_F(PacketInterpreterTest, OnlyCommandNineIsGraphics)
{
    for (int command = 0; command < 256; ++command) {
        Interpreter.ClearPicture();
        CdgPacket packet = MemoryPreset(5);
        packet.Command = static_cast<std::uint8_t>(command);
        Show(kQuiet, packet);
        EXPECT_EQ(Pixel(100, 100), command % 64 == 9 ? 5 : 0) << command;
    }
}

TEST_F(PacketInterpreterTest, TheInstructionsTopBitsAreMaskedInPlace)
{
    CdgPacket packet = MemoryPreset(5);
    packet.Instruction |= 0xC0;
    Show(kQuiet, packet);
    EXPECT_EQ(Picture.CurrentPacket.Instruction, 1);
    EXPECT_THAT(Pixels(), Each(5));
}

TEST_F(PacketInterpreterTest, TheInstructionOfAnotherCommandIsLeftAsItIs)
{
    CdgPacket packet = MemoryPreset(5);
    packet.Command = 8;
    packet.Instruction |= 0xC0;
    Show(kQuiet, packet);
    EXPECT_EQ(Picture.CurrentPacket.Instruction, 0xC1);
}

TEST_F(PacketInterpreterTest, UnknownInstructionsAndTransparencyChangeNothing)
{
    for (const int instruction : {0, 3, 4, 5, 7, 19, 21, 23, 25, 28, 29, 32, 37, 39, 63}) {
        SCOPED_TRACE(instruction);
        CdgPacket packet = Graphics(instruction);
        packet.PacketData.fill(0xFF);
        ExpectIgnored(packet);
    }
}

TEST_F(PacketInterpreterTest, TransparencyStillCountsForThePace)
{
    Show(kQuiet, MemoryPreset(1));
    Show(30, Graphics(28));
    EXPECT_EQ(Painter.Paints, 1);
}

TEST_F(PacketInterpreterTest, AMemoryPresetFillsEdgeToEdgeAndRestsTheView)
{
    Show(kQuiet, Scroll({.horizontalOffset = 5, .verticalOffset = 11}));
    Picture.PictureDirty = false;
    Show(kQuiet, MemoryPreset(0xF5));
    EXPECT_THAT(Pixels(), Each(5));
    EXPECT_EQ(Picture.ViewLeft, 6);
    EXPECT_EQ(Picture.ViewTop, 12);
    EXPECT_TRUE(Picture.PictureDirty);
}

TEST_F(PacketInterpreterTest, ARepeatedMemoryPresetClearsAgain)
{
    Show(kQuiet, MemoryPreset(5));
    Show(kQuiet, Tile({.colour1 = 3, .rows = kSolid}));
    Show(kQuiet, MemoryPreset(5, 1));
    EXPECT_THAT(Pixels(), Each(5));
}

TEST_F(PacketInterpreterTest, AMemoryPresetLeavesTheBorderColour)
{
    Show(kQuiet, BorderPreset(0x4C));
    Show(kQuiet, MemoryPreset(5));
    EXPECT_EQ(Picture.BorderColour, 12);
    EXPECT_THAT(Pixels(), Each(5));
}

TEST_F(PacketInterpreterTest, ABorderPresetDrawsNothingAndPaintsAtOnce)
{
    DrawPattern();
    Picture.PictureDirty = false;
    Show(31, BorderPreset(3));
    EXPECT_TRUE(IsPatternMovedBy(0, 0));
    EXPECT_EQ(Picture.BorderColour, 3);
    EXPECT_EQ(Painter.Paints, 1);
    EXPECT_FALSE(Picture.PictureDirty);
}

TEST_F(PacketInterpreterTest, ATilesBitsRunFromTheLeftmostDown)
{
    const std::array<std::uint8_t, 12> rows = {32, 16, 8,        4,        2, 1,
                                               0,  63, 0b101010, 0b110000, 7, 33};
    Show(kQuiet, Tile({.colour0 = 2, .colour1 = 9, .row = 3, .column = 7, .rows = rows}));
    for (int y = 0; y < 12; ++y) {
        for (int x = 0; x < 6; ++x) {
            const bool set = (rows[static_cast<std::size_t>(y)] >> (5 - x) & 1) != 0;
            EXPECT_EQ(Pixel(42 + x, 36 + y), set ? 9 : 2) << x << "," << y;
        }
    }
    EXPECT_EQ(std::ranges::count(Pixels(), 0), kPictureWidth * kPictureHeight - 72);
    EXPECT_TRUE(Picture.PictureDirty);
}

TEST_F(PacketInterpreterTest, ATilesUnusedBitsAreIgnored)
{
    CdgPacket packet = Tile({.colour0 = 2, .colour1 = 9, .row = 17, .column = 49, .rows = {1}});
    packet.PacketData[0] |= 0xC0;
    packet.PacketData[1] |= 0xC0;
    packet.PacketData[2] |= 0xE0;
    packet.PacketData[3] |= 0xC0;
    for (std::size_t i = 4; i < 16; ++i)
        packet.PacketData[i] |= 0xC0;
    Show(kQuiet, packet);
    EXPECT_TRUE(IsFilled(294, 298, 204, 215, 2));
    EXPECT_EQ(Pixel(299, 204), 9);
    EXPECT_TRUE(IsFilled(299, 299, 205, 215, 2));
}

TEST_F(PacketInterpreterTest, TilesReachEveryCornerOfThePicture)
{
    Show(kQuiet, Tile({.colour1 = 1, .row = 0, .column = 0, .rows = kSolid}));
    Show(kQuiet, Tile({.colour1 = 2, .row = 0, .column = 49, .rows = kSolid}));
    Show(kQuiet, Tile({.colour1 = 3, .row = 17, .column = 0, .rows = kSolid}));
    Show(kQuiet, Tile({.colour1 = 4, .row = 17, .column = 49, .rows = kSolid}));
    EXPECT_TRUE(IsFilled(0, 5, 0, 11, 1));
    EXPECT_TRUE(IsFilled(294, 299, 0, 11, 2));
    EXPECT_TRUE(IsFilled(0, 5, 204, 215, 3));
    EXPECT_TRUE(IsFilled(294, 299, 204, 215, 4));
}

TEST_F(PacketInterpreterTest, TilesOffThePictureAreIgnored)
{
    for (std::uint8_t row = 18; row < 32; ++row)
        ExpectIgnored(Tile({.colour1 = 3, .row = row, .rows = kSolid}));
    for (std::uint8_t column = 50; column < 64; ++column) {
        ExpectIgnored(Tile({.colour1 = 3, .column = column, .rows = kSolid}));
        ExpectIgnored(Tile({.colour1 = 3, .column = column, .exclusive = true, .rows = kSolid}));
    }
}

TEST_F(PacketInterpreterTest, OnlyTheFirstTwoChannelsAreShown)
{
    Show(kQuiet, Tile({.colour1 = 3, .channel = 1, .rows = kSolid}));
    EXPECT_TRUE(IsFilled(0, 5, 0, 11, 3));
    for (std::uint8_t channel = 2; channel < 16; ++channel) {
        ExpectIgnored(Tile({.colour1 = 4, .channel = channel, .rows = kSolid}));
        ExpectIgnored(Tile({.colour1 = 4, .channel = channel, .exclusive = true, .rows = kSolid}));
    }
}

TEST_F(PacketInterpreterTest, AnExclusiveTileCombinesWithTheOldIndexes)
{
    Show(kQuiet, MemoryPreset(5));
    Show(kQuiet, Tile({.colour0 = 3, .exclusive = true}));
    EXPECT_TRUE(IsFilled(0, 5, 0, 11, 6));
    EXPECT_TRUE(IsFilled(6, 11, 0, 11, 5));
    Show(kQuiet, Tile({.colour0 = 3}));
    EXPECT_TRUE(IsFilled(0, 5, 0, 11, 3));
}

TEST_F(PacketInterpreterTest, AnExclusiveTileTwiceIsNone)
{
    DrawPattern();
    const CdgPacket tile = Tile({.colour0 = 12,
                                 .colour1 = 7,
                                 .row = 4,
                                 .column = 9,
                                 .exclusive = true,
                                 .rows = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}});
    Show(kQuiet, tile);
    EXPECT_FALSE(IsPatternMovedBy(0, 0));
    Show(kQuiet, tile);
    EXPECT_TRUE(IsPatternMovedBy(0, 0));
}

TEST_F(PacketInterpreterTest, AScrollCopyWrapsInEachDirection)
{
    constexpr std::array<int, 4> kStep = {0, 1, -1, 0};
    for (int horizontal = 0; horizontal < 4; ++horizontal) {
        for (int vertical = 0; vertical < 4; ++vertical) {
            DrawPattern();
            Show(kQuiet,
                 Scroll(
                     {.copy = true, .colour = 5, .horizontal = horizontal, .vertical = vertical}));
            EXPECT_TRUE(IsPatternMovedBy(6 * kStep[static_cast<std::size_t>(horizontal)],
                                         12 * kStep[static_cast<std::size_t>(vertical)]))
                << horizontal << "," << vertical;
        }
    }
}

TEST_F(PacketInterpreterTest, AScrollPresetFillsTheStripThatComesIn)
{
    struct Case {
        int horizontal, vertical;
        std::array<int, 4> strip;
    };
    for (const Case& c : {Case{1, 0, {0, 5, 0, 215}}, Case{2, 3, {294, 299, 0, 215}},
                          Case{0, 1, {0, 299, 0, 11}}, Case{3, 2, {0, 299, 204, 215}}}) {
        DrawPattern();
        Show(kQuiet, Scroll({.colour = 5, .horizontal = c.horizontal, .vertical = c.vertical}));
        EXPECT_TRUE(IsFilled(c.strip[0], c.strip[1], c.strip[2], c.strip[3], 5))
            << c.horizontal << "," << c.vertical;
    }
}

TEST_F(PacketInterpreterTest, AScrollPresetMovesTheRestLikeACopy)
{
    DrawPattern();
    Show(kQuiet, Scroll({.colour = 5, .horizontal = 1, .vertical = 2}));
    EXPECT_TRUE(IsFilled(0, 5, 0, 215, 5));
    EXPECT_TRUE(IsFilled(0, 299, 204, 215, 5));
    for (int y = 0; y < 204; ++y) {
        for (int x = 6; x < 300; ++x)
            ASSERT_EQ(Pixel(x, y), Pattern(x - 6, y + 12)) << x << "," << y;
    }
}

TEST_F(PacketInterpreterTest, ScrollOffsetsAloneMoveOnlyTheView)
{
    for (const int command : {0, 3}) {
        DrawPattern();
        Picture.PictureDirty = false;
        Show(kQuiet, Scroll({.colour = 5,
                             .horizontal = command,
                             .horizontalOffset = 4,
                             .vertical = command,
                             .verticalOffset = 9}));
        EXPECT_TRUE(IsPatternMovedBy(0, 0));
        EXPECT_EQ(Picture.ViewLeft, 10);
        EXPECT_EQ(Picture.ViewTop, 21);
        EXPECT_TRUE(Picture.PictureDirty);
    }
}

TEST_F(PacketInterpreterTest, ScrollOffsetsAreNotClamped)
{
    CdgPacket packet = Scroll({.horizontalOffset = 7, .verticalOffset = 15});
    packet.PacketData[1] |= 0xC8;
    packet.PacketData[2] |= 0xC0;
    Show(kQuiet, packet);
    EXPECT_EQ(Picture.ViewLeft, 13);
    EXPECT_EQ(Picture.ViewTop, 27);
    Show(kQuiet, Scroll({.copy = true}));
    EXPECT_EQ(Picture.ViewLeft, 6);
    EXPECT_EQ(Picture.ViewTop, 12);
}

TEST_F(PacketInterpreterTest, ColourLoadsSpreadFourBitsOverEachComponent)
{
    Show(kQuiet, Colours(false, {0x000, 0xF00, 0x0F0, 0x00F, 0x123, 0x456, 0x789, 0xABC}));
    const ColourBytes low = {0,      0,      0,      255,    0,      0,       0,       255,
                             0,      0,      0,      255,    17,     2 * 17,  3 * 17,  4 * 17,
                             5 * 17, 6 * 17, 7 * 17, 8 * 17, 9 * 17, 10 * 17, 11 * 17, 12 * 17};
    EXPECT_EQ(Picture.ColourTable, low);
    Show(kQuiet, Colours(true, {0xFFF, 0, 0, 0, 0, 0, 0, 0xEDC}));
    EXPECT_TRUE(std::equal(low.begin(), low.begin() + 24, Picture.ColourTable.begin()));
    EXPECT_EQ(Picture.ColourTable[24], 255);
    EXPECT_EQ(Picture.ColourTable[45], 14 * 17);
    EXPECT_EQ(Picture.ColourTable[46], 13 * 17);
    EXPECT_EQ(Picture.ColourTable[47], 12 * 17);
}

TEST_F(PacketInterpreterTest, ColourLoadsIgnoreTheTopBits)
{
    CdgPacket packet = Colours(false, {0x123, 0x456, 0x789, 0xABC, 0xDEF, 0xFED, 0xCBA, 0x987});
    Show(kQuiet, packet);
    const ColourBytes expected = Picture.ColourTable;
    for (std::uint8_t& byte : packet.PacketData)
        byte |= 0xC0;
    Interpreter.ClearPicture();
    Show(kQuiet, packet);
    EXPECT_EQ(Picture.ColourTable, expected);
}

TEST_F(PacketInterpreterTest, ColourLoadsReachTheGraphicsAtOnce)
{
    Show(kQuiet, MemoryPreset(7));
    Show(kQuiet, Colours(false, {0, 0, 0, 0, 0, 0, 0, 0xA5C}));
    EXPECT_EQ(ShownColour(), 0xFFAA55CCu);
}

TEST_F(PacketInterpreterTest, ALowColourLoadHoldsBackAPaintThatIsDue)
{
    Show(30, Colours(false, {}));
    EXPECT_EQ(Painter.Paints, 0);
    EXPECT_TRUE(Picture.PictureDirty);
    Show(31, Colours(true, {}));
    EXPECT_EQ(Painter.Paints, 1);
}

TEST_F(PacketInterpreterTest, DrawingIsShownAtTheNextMultipleOfFifteen)
{
    for (PacketIndex packetNo = 16; packetNo < 30; ++packetNo)
        Show(packetNo, Tile({.colour1 = 1, .rows = kSolid}));
    EXPECT_EQ(Painter.Paints, 0);
    Show(30, Tile({.colour1 = 1, .rows = kSolid}));
    EXPECT_EQ(Painter.Paints, 1);
}

TEST_F(PacketInterpreterTest, AnUnchangedPictureIsNotPainted)
{
    Picture.PictureDirty = false;
    Show(30, CdgPacket{});
    EXPECT_EQ(Painter.Paints, 0);
}

TEST_F(PacketInterpreterTest, NoPaintWhileCatchingUp)
{
    Picture.CatchingUp = true;
    Show(30, MemoryPreset(1));
    Show(31, BorderPreset(1));
    Show(32, Colours(true, {}));
    EXPECT_EQ(Painter.Paints, 0);
    EXPECT_TRUE(Picture.PictureDirty);
}

TEST_F(PacketInterpreterTest, APacketOfNoGraphicsBringsAPaintThatIsDue)
{
    Show(29, MemoryPreset(1));
    Show(30, CdgPacket{});
    EXPECT_EQ(Painter.Paints, 1);
}

TEST_F(PacketInterpreterTest, SnapshotsAreMadeOfAnyStreamAndHoldTheStateAfterThePacket)
{
    for (PacketIndex packetNo = 1; packetNo <= 9001; ++packetNo)
        Show(packetNo, packetNo == 6000 ? MemoryPreset(4) : CdgPacket{});
    ASSERT_EQ(Picture.Snapshots.size(), 4u);
    EXPECT_EQ(Picture.Snapshots[0].SnapshotBuffer, 0);
    EXPECT_THAT(Buffers.Pixels(Picture.Snapshots[1].SnapshotBuffer), Each(0));
    EXPECT_THAT(Buffers.Pixels(Picture.Snapshots[2].SnapshotBuffer), Each(4));
    EXPECT_THAT(Buffers.Pixels(Picture.Snapshots[3].SnapshotBuffer), Each(4));
}

TEST_F(PacketInterpreterTest, ASnapshotIsMadeWhileCatchingUpToo)
{
    Picture.CatchingUp = true;
    Show(3000, MemoryPreset(4));
    EXPECT_EQ(Picture.Snapshots.size(), 2u);
}

TEST_F(PacketInterpreterTest, PacketsThatDoNothingStillPace)
{
    Show(kQuiet, MemoryPreset(4));
    CdgPacket packet = MemoryPreset(9);
    packet.Command = 0;
    Show(45, packet);
    EXPECT_EQ(Painter.Paints, 1);
    EXPECT_THAT(Pixels(), Each(4));
}

} // namespace

} // namespace lantern
