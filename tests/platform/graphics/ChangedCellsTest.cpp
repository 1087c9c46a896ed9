// SPDX-License-Identifier: GPL-3.0-or-later
#include "ChangedCells.h"

#include <gmock/gmock.h>
#include <vector>

namespace lantern {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using Block = ChangedCells::Block;

// A picture of 30 by 36 pixels, that is five by three cells.
class Cells : public testing::Test {
protected:
    Cells() { cells.Reset(kWidth, 36); }

    void Change(int x, int y)
    {
        std::vector<std::uint8_t> after = before;
        after[static_cast<std::size_t>(x)] = 1;
        cells.CompareRow(y, before, after);
    }

    static constexpr int kWidth = 30;
    std::vector<std::uint8_t> before = std::vector<std::uint8_t>(kWidth);
    ChangedCells cells;
};

TEST_F(Cells, NothingComparedIsNothingChanged)
{
    EXPECT_THAT(cells.Blocks(), IsEmpty());
}

TEST_F(Cells, OnePixelChangesItsCell)
{
    Change(13, 12);
    EXPECT_THAT(cells.Blocks(), ElementsAre(Block{{12, 18}, {12, 24}}));
}

TEST_F(Cells, NeighboursInABandMakeOneBlock)
{
    Change(5, 3);
    Change(6, 4);
    Change(29, 0);
    EXPECT_THAT(cells.Blocks(),
                UnorderedElementsAre(Block{{0, 12}, {0, 12}}, Block{{24, 30}, {0, 12}}));
}

TEST_F(Cells, EqualRunsBelowEachOtherMakeOneBlock)
{
    Change(7, 0);
    Change(8, 12);
    Change(9, 24);
    EXPECT_THAT(cells.Blocks(), ElementsAre(Block{{6, 12}, {0, 36}}));
}

TEST_F(Cells, EqualRunsWithAGapBetweenStayApart)
{
    Change(7, 0);
    Change(9, 24);
    EXPECT_THAT(cells.Blocks(),
                UnorderedElementsAre(Block{{6, 12}, {0, 12}}, Block{{6, 12}, {24, 36}}));
}

TEST_F(Cells, ACellThatIsCutOffEndsWithThePicture)
{
    cells.Reset(7, 13);
    const std::vector<std::uint8_t> old(7);
    const std::vector<std::uint8_t> now = {0, 0, 0, 0, 0, 0, 1};
    cells.CompareRow(12, old, now);
    EXPECT_THAT(cells.Blocks(), ElementsAre(Block{{6, 7}, {12, 13}}));
}

TEST_F(Cells, AResetForgetsAllThatWasChanged)
{
    for (const int height : {36, 25, 24, 37, 1}) {
        for (int y = 0; y < 36; ++y)
            Change(7, y);
        cells.Reset(kWidth, height);
        EXPECT_THAT(cells.Blocks(), IsEmpty()) << height;
        cells.Reset(kWidth, 36);
    }
}

TEST_F(Cells, EveryOtherCellOfALargePictureIsABlockOfItsOwn)
{
    constexpr int cellsAcross = 2000;
    constexpr int cellsDown = 100;
    const std::vector<std::uint8_t> old(cellsAcross * 6);
    std::vector<std::uint8_t> now(old);
    cells.Reset(cellsAcross * 6, cellsDown * 12);
    for (int row = 0; row < cellsDown; ++row) {
        for (std::size_t cell = 0; cell < cellsAcross; ++cell)
            now[cell * 6] = static_cast<std::uint8_t>((cell + static_cast<std::size_t>(row)) % 2);
        cells.CompareRow(row * 12, old, now);
    }
    EXPECT_EQ(cells.Blocks().size(), cellsAcross * cellsDown / 2);
}

TEST_F(Cells, WithColoursOnlyWhatLooksDifferentCounts)
{
    ColourWords first{};
    ColourWords second{};
    first[1] = second[2] = 0xFF123456;
    second[3] = 0xFFFFFFFF;
    std::vector<std::uint8_t> old(kWidth);
    std::vector<std::uint8_t> now(kWidth);
    old[0] = 1;
    now[0] = 2;
    old[12] = now[12] = 3;
    cells.CompareRow(0, old, first, now, second);
    EXPECT_THAT(cells.Blocks(), ElementsAre(Block{{12, 18}, {0, 12}}));
}

} // namespace
} // namespace lantern
