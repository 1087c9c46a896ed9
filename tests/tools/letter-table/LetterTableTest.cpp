// SPDX-License-Identifier: GPL-3.0-or-later
#include "LetterTable.h"

#include "LetterSeed.h"
#include "Shapes.h"

#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

namespace lantern::letters {
namespace {

TEST(LetterTable, TheProgramMakesExactlyTheSeedOfTheTree)
{
    std::ifstream file(LETTER_SEED);
    const std::string kept{std::istreambuf_iterator<char>(file), {}};
    const std::vector<std::int8_t> made = LearnDistances(kScenes);
    ASSERT_EQ(made.size(), kLetterSeed.size());
    EXPECT_TRUE(std::ranges::equal(made, kLetterSeed));
    EXPECT_EQ(SourceOf(made), kept);
}

TEST(LetterTable, FewerScenesMakeAnotherSeedAndTheSameEachTime)
{
    const std::vector<std::int8_t> few = LearnDistances(20);
    EXPECT_EQ(LearnDistances(20), few);
    EXPECT_FALSE(std::ranges::equal(few, kLetterSeed));
}

TEST(LetterTable, ChanceStaysWithinItsBounds)
{
    Chance chance(1);
    for (int i = 0; i < 10000; ++i) {
        const double between = chance.Between(-0.5, 2);
        EXPECT_GE(between, -0.5);
        EXPECT_LT(between, 2);
        const Point direction = chance.Direction();
        EXPECT_NEAR(direction.x * direction.x + direction.y * direction.y, 1, 1e-12);
    }
}

} // namespace
} // namespace lantern::letters
