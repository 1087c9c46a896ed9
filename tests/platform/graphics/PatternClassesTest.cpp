// SPDX-License-Identifier: GPL-3.0-or-later
#include "PatternClasses.h"

#include "DistanceTable.h"
#include "LetterSeed.h"

#include <gtest/gtest.h>

namespace lantern {
namespace {

TEST(PatternClasses, ASeedHasADistanceForEachClass)
{
    EXPECT_EQ(PatternClasses(3, 3).Count() + PatternClasses(4, 3).Count() +
                  PatternClasses(4, 4).Count(),
              kLetterSeedSize);
}

TEST(PatternClasses, MirroredTurnedAndInvertedPatternsAreOfOneClass)
{
    const PatternClasses square(3, 3);
    const unsigned corner = 0b000'000'011;
    for (const unsigned other : {0b000'000'110U, 0b000'001'001U, 0b110'000'000U, 0b100'100'000U}) {
        EXPECT_EQ(square.ClassOf(other), square.ClassOf(corner)) << other;
        EXPECT_EQ(square.ClassOf(other ^ 0777U), square.ClassOf(corner)) << other;
        EXPECT_EQ(square.IsInverted(other), square.IsInverted(corner)) << other;
        EXPECT_NE(square.IsInverted(other ^ 0777U), square.IsInverted(corner)) << other;
    }
    EXPECT_NE(square.ClassOf(0b000'000'101), square.ClassOf(corner));
}

TEST(PatternClasses, AWindowThatIsNoSquareKeepsItsAxes)
{
    const PatternClasses wide(4, 3);
    const unsigned level = 0b0000'0000'0110;
    EXPECT_EQ(wide.ClassOf(0b0110'0000'0000), wide.ClassOf(level));
    EXPECT_EQ(wide.ClassOf(0b0000'0000'0011), wide.ClassOf(0b1100'0000'0000));
    EXPECT_NE(wide.ClassOf(0b0000'0010'0010), wide.ClassOf(level));
}

TEST(PatternClasses, AStraightEdgeThroughTheMiddleIsItsOwnInverse)
{
    const PatternClasses square(4, 4);
    EXPECT_TRUE(square.IsOwnInverse(square.ClassOf(0x00FF)));
    EXPECT_TRUE(square.IsOwnInverse(square.ClassOf(0xCCCC)));
    EXPECT_FALSE(square.IsOwnInverse(square.ClassOf(0x0FFF)));
}

// Each node as the header tells it, read pixel by pixel.
class Distances : public testing::Test {
protected:
    static bool Pixel(unsigned mask, int column, int row)
    {
        return (mask >> (row * 4 + column) & 1U) != 0;
    }
    DistanceTable::Distances Of(unsigned mask) const
    {
        DistanceTable::Distances distances{};
        table.Read(static_cast<WindowMask>(mask), distances);
        return distances;
    }
    static unsigned MirroredColumns(unsigned mask)
    {
        unsigned mirrored = 0;
        for (int pixel = 0; pixel < 16; ++pixel)
            mirrored |= unsigned{Pixel(mask, 3 - pixel % 4, pixel / 4)} << pixel;
        return mirrored;
    }
    static unsigned Transposed(unsigned mask)
    {
        unsigned transposed = 0;
        for (int pixel = 0; pixel < 16; ++pixel)
            transposed |= unsigned{Pixel(mask, pixel / 4, pixel % 4)} << pixel;
        return transposed;
    }

    DistanceTable table{kLetterSeed};
};

TEST_F(Distances, APixelsOwnMiddleIsOnItsSide)
{
    for (unsigned mask = 0; mask <= 0xFFFF; ++mask) {
        const auto distances = Of(mask);
        EXPECT_EQ(distances[0] > 0, Pixel(mask, 1, 1)) << mask;
        EXPECT_EQ(distances[2] > 0, Pixel(mask, 2, 1)) << mask;
        EXPECT_EQ(distances[6] > 0, Pixel(mask, 1, 2)) << mask;
        EXPECT_EQ(distances[8] > 0, Pixel(mask, 2, 2)) << mask;
    }
}

TEST_F(Distances, WhatIsInsideOfOneIsOutsideOfTheOther)
{
    for (unsigned mask = 0; mask <= 0xFFFF; ++mask) {
        const auto distances = Of(mask);
        const auto inverted = Of(mask ^ 0xFFFF);
        for (std::size_t node = 0; node < distances.size(); ++node)
            ASSERT_EQ(inverted[node], -distances[node]) << mask << " at " << node;
    }
}

TEST_F(Distances, AMirroredWindowHasMirroredDistances)
{
    for (unsigned mask = 0; mask <= 0xFFFF; ++mask) {
        const auto distances = Of(mask);
        const auto mirrored = Of(MirroredColumns(mask));
        const auto transposed = Of(Transposed(mask));
        for (std::size_t row = 0; row < 3; ++row) {
            for (std::size_t column = 0; column < 3; ++column) {
                ASSERT_EQ(mirrored[row * 3 + 2 - column], distances[row * 3 + column]) << mask;
                ASSERT_EQ(transposed[column * 3 + row], distances[row * 3 + column]) << mask;
            }
        }
    }
}

// Two cells beside each other see three columns in common, and read the same where they meet.
TEST_F(Distances, NeighboursAgreeWhereTheyMeet)
{
    for (unsigned left = 0; left <= 0xFFFF; ++left) {
        for (unsigned column = 0; column < 16; column += 5) {
            unsigned right = left >> 1 & 0x7777;
            for (unsigned row = 0; row < 4; ++row)
                right |= (column >> row & 1U) << (row * 4 + 3);
            const auto before = Of(left);
            const auto behind = Of(right);
            for (std::size_t row = 0; row < 3; ++row)
                ASSERT_EQ(before[row * 3 + 2], behind[row * 3]) << left << ' ' << right;
        }
    }
}

TEST_F(Distances, AllOrNothingIsDeepInside)
{
    EXPECT_EQ(Of(0xFFFF), (DistanceTable::Distances{127, 127, 127, 127, 127, 127, 127, 127, 127}));
}

} // namespace
} // namespace lantern
