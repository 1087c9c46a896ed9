// SPDX-License-Identifier: GPL-3.0-or-later
// What assistive tools know of a slider, and when they are told of its value.
#include "ToldToTools.h"
#include "ctlSlide.h"

#include <QAccessible>
#include <QTest>

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace lantern {
namespace {

using Values = std::vector<int>;

class SlideAccessibility : public ::testing::Test {
protected:
    SlideAccessibility()
    {
        slide.SetValues(0, 240000, 0);
        told.Forget();
    }

    QAccessibleInterface& Known() { return *QAccessible::queryAccessibleInterface(&slide); }
    QAccessibleValueInterface& Value() { return *Known().valueInterface(); }

    ctlSlide slide{nullptr};
    ToldToTools told;
};

TEST_F(SlideAccessibility, ItIsASliderNamedByItsHostOrItsToolTip)
{
    slide.setToolTip(QStringLiteral("Volume"));
    EXPECT_EQ(Known().role(), QAccessible::Slider);
    EXPECT_EQ(Known().text(QAccessible::Name), QStringLiteral("Volume"));
    slide.setAccessibleName(QStringLiteral("Loudness"));
    EXPECT_EQ(Known().text(QAccessible::Name), QStringLiteral("Loudness"));
}

TEST_F(SlideAccessibility, ItTellsItsValueAndRange)
{
    slide.SetValues(-50, 60, 30);
    EXPECT_EQ(Known().text(QAccessible::Value), QStringLiteral("30"));
    EXPECT_EQ(Value().currentValue().toInt(), 30);
    EXPECT_EQ(Value().minimumValue().toInt(), -50);
    EXPECT_EQ(Value().maximumValue().toInt(), 60);
}

TEST_F(SlideAccessibility, AStepIsAHundredthOfTheRangeButAtLeastOne)
{
    const auto step = [this](std::int32_t min, std::int32_t max) {
        slide.SetValues(min, max, min);
        return Value().minimumStepSize().toInt();
    };
    EXPECT_EQ(step(0, 240000), 2400);
    EXPECT_EQ(step(-100, 199), 2);
    EXPECT_EQ(step(0, 100), 1);
    EXPECT_EQ(step(-10, 10), 1);
    EXPECT_EQ(step(0, 0), 1);
    EXPECT_EQ(step(100, 0), 1);
}

TEST_F(SlideAccessibility, AValueThatAToolSetsIsOneThatTheUserScrollsTo)
{
    std::vector<std::string> log;
    slide.Change = [&] { log.push_back("Change " + std::to_string(slide.Value())); };
    slide.Scroll = [&] { log.push_back("Scroll " + std::to_string(slide.Value())); };
    Value().setCurrentValue(40000);
    EXPECT_EQ(log, (std::vector<std::string>{"Change 40000", "Scroll 40000"}));
}

TEST_F(SlideAccessibility, DisabledItTakesNoValue)
{
    EXPECT_FALSE(Known().state().disabled);
    slide.SetEnabled(false);
    EXPECT_TRUE(Known().state().disabled);
    Value().setCurrentValue(40000);
    EXPECT_EQ(slide.Value(), 0);
}

TEST_F(SlideAccessibility, ThatItIsDisabledOrEnabledIsToldOnce)
{
    slide.SetEnabled(true);
    EXPECT_TRUE(told.Events().empty());
    slide.SetEnabled(false);
    slide.SetEnabled(false);
    ASSERT_EQ(told.Types(), std::vector{QAccessible::StateChanged});
    EXPECT_TRUE(told.Events()[0].changed.disabled);
    EXPECT_EQ(told.Events()[0].object, &slide);
}

TEST_F(SlideAccessibility, AValueThatDoesNotMoveByItselfIsToldAtOnce)
{
    for (const int value : {1, 2, 3, 2})
        slide.SetValue(value);
    EXPECT_EQ(told.Values(), (Values{1, 2, 3, 2}));
    EXPECT_EQ(told.Events()[0].object, &slide);
    slide.SetValue(2);
    EXPECT_EQ(told.Values().size(), 4U);
}

TEST_F(SlideAccessibility, AGlidingValueIsToldOnceASecond)
{
    slide.SetGlide(1000);
    for (int value = 10; value <= 300; value += 10)
        slide.SetValue(value);
    EXPECT_EQ(told.Values(), Values{10});
    QTest::qWait(500);
    slide.SetValue(310);
    EXPECT_EQ(told.Values(), Values{10});
    EXPECT_TRUE(QTest::qWaitFor([this] { return told.Values().size() > 1; }, 2000));
    slide.SetValue(320);
    EXPECT_EQ(told.Values(), (Values{10, 310}));
}

TEST_F(SlideAccessibility, TheLastValueOfAGlideIsToldToo)
{
    slide.SetGlide(1000);
    slide.SetValue(10);
    slide.SetValue(20);
    EXPECT_TRUE(QTest::qWaitFor([this] { return told.Values() == Values{10, 20}; }, 2500));
    QTest::qWait(2200); // nothing is left to be told
    EXPECT_EQ(told.Values(), (Values{10, 20}));
    slide.SetValue(30); // and the next one is the first again
    EXPECT_EQ(told.Values(), (Values{10, 20, 30}));
}

TEST_F(SlideAccessibility, AJumpIsToldAtOnce)
{
    slide.SetGlide(1000);
    slide.SetValue(10);
    told.Forget();
    slide.SetValue(1010); // a second's glide
    EXPECT_EQ(told.Values(), Values{});
    slide.SetValue(2011);
    EXPECT_EQ(told.Values(), Values{2011});
    slide.SetValue(2010);
    EXPECT_EQ(told.Values(), (Values{2011, 2010}));
    slide.SetValues(0, 1000, 0);
    EXPECT_EQ(told.Values(), (Values{2011, 2010, 0}));
}

TEST_F(SlideAccessibility, AfterAJumpTheGlideRestsForASecond)
{
    slide.SetGlide(1000);
    slide.SetValue(10);
    slide.SetValue(20);
    slide.SetValue(50000);
    told.Forget();
    QTest::qWait(400);
    slide.SetValue(50010);
    EXPECT_EQ(told.Values(), Values{});
}

TEST_F(SlideAccessibility, WhatTheUserDoesIsToldAtOnce)
{
    slide.SetGlide(1000);
    slide.SetValue(10);
    told.Forget();
    slide.ScrollTo(20);
    slide.ScrollTo(30);
    EXPECT_EQ(told.Values(), (Values{20, 30}));
}

TEST_F(SlideAccessibility, FarEndsOfTheNumbersAreAJump)
{
    slide.SetValues(std::numeric_limits<std::int32_t>::min(),
                    std::numeric_limits<std::int32_t>::max(),
                    std::numeric_limits<std::int32_t>::min());
    slide.SetGlide(1000);
    slide.SetValue(std::numeric_limits<std::int32_t>::min() + 1);
    told.Forget();
    slide.SetValue(std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(told.Values(), Values{std::numeric_limits<std::int32_t>::max()});
}

} // namespace
} // namespace lantern
