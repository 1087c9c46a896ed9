// SPDX-License-Identifier: GPL-3.0-or-later
#include "FlashVerdict.h"

#include <gtest/gtest.h>

namespace lantern::test {
namespace {

constexpr int kFlashes = 20;

class JudgingFlashes : public ::testing::Test {
protected:
    JudgingFlashes()
    {
        for (int i = 0; i < kFlashes; ++i)
            comparison.errors.push_back({start + i * 1s, 5.0});
    }
    FlashVerdict Result() const { return Judge(comparison, {{start, start + kFlashes * 1s}}); }

    const Moment start = Clock::now();
    Comparison comparison;
};

TEST_F(JudgingFlashes, SmallAndSteadyErrorsAreGood)
{
    EXPECT_TRUE(Result().IsGood());
}

TEST_F(JudgingFlashes, OneFlashFarOffIsBadOnEitherSide)
{
    comparison.errors[7].pictureLateMs = 41.0;
    EXPECT_EQ(Result().complaints.size(), 1U);
    comparison.errors[7].pictureLateMs = -41.0;
    EXPECT_EQ(Result().complaints.size(), 1U);
    comparison.errors[7].pictureLateMs = 39.0;
    EXPECT_TRUE(Result().IsGood());
}

TEST_F(JudgingFlashes, AStallExcusesItsOwnFlashOnly)
{
    comparison.errors[7].pictureLateMs = 200.0;
    comparison.errors[7].isDoubtful = true;
    EXPECT_TRUE(Result().IsGood());
    comparison.errors[8].pictureLateMs = 200.0;
    EXPECT_FALSE(Result().IsGood());
}

TEST_F(JudgingFlashes, ASteadyLatenessIsBad)
{
    for (FlashError& error : comparison.errors)
        error.pictureLateMs = 16.0;
    EXPECT_FALSE(Result().IsGood());
}

TEST_F(JudgingFlashes, ADriftIsBad)
{
    for (std::size_t i = 0; i < comparison.errors.size(); ++i)
        comparison.errors[i].pictureLateMs = static_cast<double>(i) - 10.0;
    EXPECT_EQ(Result().complaints.size(), 1U);
}

TEST_F(JudgingFlashes, AContradictionIsBadUnlessTheMachineStalled)
{
    comparison.contradictions.push_back({"a tone without a flash", true});
    EXPECT_TRUE(Result().IsGood());
    comparison.contradictions.push_back({"a tone without a flash", false});
    EXPECT_FALSE(Result().IsGood());
}

TEST_F(JudgingFlashes, NothingSeenIsBad)
{
    comparison.errors.clear();
    EXPECT_FALSE(Result().complaints.empty());
}

TEST_F(JudgingFlashes, AsManyAreMissedAsTheTimeOfTheStallsExcuses)
{
    comparison.errors.resize(8);
    comparison.stalled = 9s;
    EXPECT_TRUE(Result().complaints.empty());
    comparison.stalled = 8s;
    EXPECT_FALSE(Result().complaints.empty());
}

TEST_F(JudgingFlashes, NoDriftIsToldFromAFewFlashes)
{
    for (std::size_t i = 0; i < comparison.errors.size(); ++i) {
        comparison.errors[i].pictureLateMs = i < 10 ? -10.0 : 10.0;
        comparison.errors[i].isDoubtful = i % 2 != 0;
    }
    EXPECT_TRUE(Result().complaints.empty());
    EXPECT_FALSE(Result().isMeasured);
    comparison.errors[1].isDoubtful = false;
    comparison.errors[19].isDoubtful = false;
    EXPECT_FALSE(Result().complaints.empty());
}

TEST_F(JudgingFlashes, TooManyStallsProveNothing)
{
    for (std::size_t i = 0; i < comparison.errors.size(); ++i)
        comparison.errors[i].isDoubtful = i % 4 != 0;
    EXPECT_TRUE(Result().complaints.empty());
    EXPECT_FALSE(Result().isMeasured);
    EXPECT_FALSE(Result().IsGood());
}

} // namespace
} // namespace lantern::test
