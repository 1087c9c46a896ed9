// SPDX-License-Identifier: GPL-3.0-or-later
#include "SlideScale.h"

#include <gtest/gtest.h>

#include <limits>

namespace lantern {
namespace {

constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();

TEST(SlideScale, AValueIsKeptBetweenTheEnds)
{
    const SlideScale scale = {-10, 10, 200};
    EXPECT_EQ(scale.Clamp(-11), -10);
    EXPECT_EQ(scale.Clamp(-10), -10);
    EXPECT_EQ(scale.Clamp(3), 3);
    EXPECT_EQ(scale.Clamp(10), 10);
    EXPECT_EQ(scale.Clamp(11), 10);
}

TEST(SlideScale, WhereMinExceedsMaxItIsMaxThatHolds)
{
    const SlideScale scale = {10, -10, 200};
    for (const std::int32_t value : {kLeast, -20, -10, 0, 10, 20, kMost})
        EXPECT_EQ(scale.Clamp(value), -10) << value;
    EXPECT_EQ(scale.Range(), -20);
}

TEST(SlideScale, TheRangeIsTakenIn32Bits)
{
    EXPECT_EQ((SlideScale{0, 100, 200}.Range()), 100);
    EXPECT_EQ((SlideScale{kLeast, kMost, 200}.Range()), -1);
    EXPECT_EQ((SlideScale{-1, kMost, 200}.Range()), kLeast);
}

TEST(SlideScale, TheKnobGoesFromTheFirstToTheLastPixel)
{
    const SlideScale scale = {-50, 50, 204};
    EXPECT_EQ(scale.KnobLeft(-50), 0);
    EXPECT_EQ(scale.KnobLeft(0), 100);
    EXPECT_EQ(scale.KnobLeft(50), 200);
}

TEST(SlideScale, TheKnobStandsOnTheNearestPixelTiesToTheEvenOne)
{
    const SlideScale scale = {0, 4, 10}; // 1.5 pixels a value
    EXPECT_EQ(scale.KnobLeft(1), 2);
    EXPECT_EQ(scale.KnobLeft(2), 3);
    EXPECT_EQ(scale.KnobLeft(3), 4); // 4.5
}

TEST(SlideScale, AValueOutsideHasItsKnobOutside)
{
    const SlideScale scale = {0, 100, 204};
    EXPECT_EQ(scale.KnobLeft(-10), -20);
    EXPECT_EQ(scale.KnobLeft(150), 300);
}

TEST(SlideScale, TheFarthestValuesStayCountable)
{
    const SlideScale scale = {0, 1, 1000};
    EXPECT_GT(scale.KnobLeft(kMost), 100000);
    EXPECT_LT(scale.KnobLeft(kLeast), -100000);
    EXPECT_LT(scale.KnobLeft(kMost), kMost - 1000);
}

TEST(SlideScale, TheKnobsCentreFollowsThePointer)
{
    const SlideScale scale = {0, 200, 204};
    EXPECT_EQ(scale.ValueAt(2), 0);
    EXPECT_EQ(scale.ValueAt(3), 1);
    EXPECT_EQ(scale.ValueAt(102), 100);
    EXPECT_EQ(scale.ValueAt(202), 200);
}

TEST(SlideScale, ThePointerBeyondTheEndsMeansTheEnds)
{
    const SlideScale scale = {-5, 5, 204};
    for (const float x : {-1e9F, -100.0F, 0.0F, 1.0F, 2.0F})
        EXPECT_EQ(scale.ValueAt(x), -5) << x;
    for (const float x : {202.0F, 203.0F, 500.0F, 1e9F})
        EXPECT_EQ(scale.ValueAt(x), 5) << x;
}

TEST(SlideScale, ARangeOfOneGoesToEitherEndAndToTheEvenOneInTheMiddle)
{
    constexpr int kWidth = 304;
    for (int x = 0; x < kWidth; ++x) {
        const bool isRight = x > kWidth / 2;
        EXPECT_EQ((SlideScale{0, 1, kWidth}.ValueAt(static_cast<float>(x))), isRight ? 1 : 0) << x;
    }
    EXPECT_EQ((SlideScale{1, 2, kWidth}.ValueAt(kWidth / 2)), 2);
    EXPECT_EQ((SlideScale{-1, 0, kWidth}.ValueAt(kWidth / 2)), 0);
    EXPECT_EQ((SlideScale{-2, -1, kWidth}.ValueAt(kWidth / 2)), -2);
}

TEST(SlideScale, EveryValueOfAShortScaleIsFoundUnderItsOwnKnob)
{
    for (int width = 25; width < 200; ++width) {
        const SlideScale scale = {-10, 10, width};
        for (std::int32_t value = -10; value <= 10; ++value) {
            const float centre = static_cast<float>(scale.KnobLeft(value) + 2);
            EXPECT_EQ(scale.ValueAt(centre), value) << width;
        }
    }
}

TEST(SlideScale, ALongTrackKeepsEveryMillisecondWithin32Bits)
{
    const SlideScale scale = {0, kMost, 204};
    EXPECT_EQ(scale.ValueAt(202), kMost);
    EXPECT_EQ(scale.ValueAt(102), 1073741824); // 1073741823.5 to the even one
    EXPECT_EQ(scale.KnobLeft(kMost), 200);
}

TEST(SlideScale, ASliderThatIsAllKnobIsAtItsStart)
{
    EXPECT_EQ((SlideScale{7, 9, 4}.ValueAt(3)), 7);
    EXPECT_EQ((SlideScale{7, 9, 4}.ValueAt(0)), 7);
}

TEST(SlideScale, ASliderNarrowerThanItsKnobStillTakesThePointerAtEitherEnd)
{
    for (int width = 0; width < 4; ++width) {
        EXPECT_EQ((SlideScale{7, 9, width}.ValueAt(0)), 7) << width;
        EXPECT_EQ((SlideScale{7, 9, width}.ValueAt(5)), 9) << width;
    }
}

TEST(SlideScale, AScaleInReverseIsStillWithin32Bits)
{
    EXPECT_EQ((SlideScale{kLeast, kMost, 204}.ValueAt(202)), kLeast);
    EXPECT_EQ((SlideScale{10, -10, 204}.ValueAt(2)), 10);
    EXPECT_EQ((SlideScale{10, -10, 204}.ValueAt(202)), -10);
}

} // namespace
} // namespace lantern
