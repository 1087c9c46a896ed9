// SPDX-License-Identifier: GPL-3.0-or-later
#include "BuffersFixture.h"

#include <algorithm>
#include <array>
#include <climits>
#include <gmock/gmock.h>
#include <random>
#include <vector>

namespace lantern {
namespace {

using testing::Each;

class Tiles : public Buffers {};

TEST_F(Tiles, ATileDrawsBitFiveLeftmostAndRowsTopToBottom)
{
    Open(300, 216);
    buffers.DrawTile(6, 12, kTileRows, 3, 12, false);
    for (int row = 0; row < 12; ++row) {
        for (int pixel = 0; pixel < 6; ++pixel) {
            const bool set = (kTileRows[static_cast<std::size_t>(row)] >> (5 - pixel) & 1) != 0;
            ASSERT_EQ(buffers.FGgetpixel(6 + pixel, 12 + row), set ? 12 : 3);
        }
    }
}

TEST_F(Tiles, AnExclusiveTileCombinesWithTheOldIndex)
{
    Open(6, 12);
    buffers.FGsetcolor(5);
    buffers.FGfillpage();
    const std::array<std::uint8_t, 12> blank{};
    buffers.DrawTile(0, 0, blank, 3, 0, true);
    EXPECT_EQ(buffers.FGgetpixel(0, 0), 6);
    buffers.DrawTile(0, 0, blank, 3, 0, false);
    EXPECT_EQ(buffers.FGgetpixel(0, 0), 3);
}

TEST_F(Tiles, TheTwoHighBitsOfATileRowDontCount)
{
    const int handle = Open(6, 12);
    std::array<std::uint8_t, 12> rows{};
    rows.fill(0xC0);
    buffers.DrawTile(0, 0, rows, 4, 9, false);
    EXPECT_THAT(buffers.Pixels(handle), Each(4));
}

// Any place, inside or partly or wholly outside, any colours: the same as pixel by pixel, and no
// pixel beside the tile changes.
TEST_F(Tiles, TilesEqualPixelByPixelDrawing)
{
    std::mt19937 random(20);
    const auto below = [&](unsigned limit) { return static_cast<int>(random() % limit); };
    constexpr int width = 32;
    constexpr int height = 40;
    const int fast = buffers.FGvballoc(width, height);
    std::vector<std::uint8_t> expected(width * height);
    buffers.FGvbopen(fast);
    for (int round = 0; round < 20000; ++round) {
        const int left = below(width + 20) - 10;
        const int top = below(height + 30) - 15;
        std::array<std::uint8_t, 12> rows{};
        for (std::uint8_t& row : rows)
            row = static_cast<std::uint8_t>(below(256));
        const auto colour0 = static_cast<std::uint8_t>(below(256));
        const auto colour1 = static_cast<std::uint8_t>(below(256));
        const bool exclusive = below(2) == 1;
        for (int y = 0; y < 12; ++y) {
            for (int x = 0; x < 6; ++x) {
                if (left + x < 0 || left + x >= width || top + y < 0 || top + y >= height)
                    continue;
                std::uint8_t& pixel =
                    expected[static_cast<std::size_t>((top + y) * width + left + x)];
                const bool set = (rows[static_cast<std::size_t>(y)] >> (5 - x) & 1) != 0;
                const int colour = set ? colour1 : colour0;
                pixel = static_cast<std::uint8_t>(colour ^ (exclusive ? pixel : 0));
            }
        }
        buffers.DrawTile(left, top, rows, colour0, colour1, exclusive);
        ASSERT_TRUE(std::ranges::equal(buffers.Pixels(fast), expected)) << "round " << round;
    }
}

TEST_F(Tiles, ATileAtTheEndOfTheIntegersIsDropped)
{
    const int handle = Open(6, 12);
    buffers.DrawTile(INT_MAX, INT_MAX, kTileRows, 1, 1, false);
    buffers.DrawTile(INT_MIN, INT_MIN, kTileRows, 1, 1, false);
    EXPECT_THAT(buffers.Pixels(handle), Each(0));
}

TEST_F(Tiles, ABufferSmallerThanATileTakesThePartThatFits)
{
    const int handle = Open(2, 1);
    buffers.DrawTile(0, 0, kTileRows, 1, 2, false);
    EXPECT_THAT(buffers.Pixels(handle), Each(2));
}

TEST_F(Tiles, FillAfterATileInTheLastCornerFillsAll)
{
    const int handle = Open(12, 12);
    buffers.FGsetcolor(8);
    buffers.FGfillpage();
    buffers.DrawTile(6, 0, kTileRows, 1, 1, true);
    buffers.FGfillpage();
    EXPECT_THAT(buffers.Pixels(handle), Each(8));
}

} // namespace
} // namespace lantern
