// SPDX-License-Identifier: GPL-3.0-or-later
#include "ControlStates.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bitset>
#include <initializer_list>
#include <limits>
#include <vector>

namespace lantern {
namespace {

// Numbers of buttons.
class Buttons {
public:
    void Insert(std::int16_t number) { m_bits.set(static_cast<std::size_t>(number)); }
    void Insert(std::initializer_list<std::int16_t> numbers)
    {
        for (const std::int16_t number : numbers)
            Insert(number);
    }
    bool Has(std::int16_t number) const { return m_bits.test(static_cast<std::size_t>(number)); }
    bool operator==(const Buttons&) const = default;

private:
    std::bitset<64> m_bits;
};

// What a user expects of the buttons, told in another way than by the rules: from the states.
struct Expected {
    Buttons down;       // on the toolbar
    Buttons optionDown; // on the options
    Buttons disabled;
    Buttons hidden;
};

Expected ExpectedFor(const PlayerState& now)
{
    Expected expected;
    if (now.balance != 0)
        expected.optionDown.Insert(5);
    if (now.keyPitch != 0)
        expected.optionDown.Insert(6);
    if (now.speed != 0 && !now.isTempoHeld) {
        expected.down.Insert(6);
        expected.optionDown.Insert(7);
    }
    if (now.volume == 0) {
        expected.down.Insert(26);
        expected.optionDown.Insert(8);
    }
    if (now.isDeviceSaved) {
        expected.down.Insert(1);
        expected.optionDown.Insert(4);
    }
    if (now.areOptionsVisible)
        expected.down.Insert(14);
    if (now.wheelType >= 1 && now.wheelType <= 5)
        expected.down.Insert(static_cast<std::int16_t>(30 + now.wheelType));

    if (now.isPlaying) {
        expected.hidden.Insert(1);
        expected.disabled.Insert(1);
    } else {
        expected.hidden.Insert(2);
        expected.disabled.Insert({2, 6});
        if (!now.hasMedia)
            expected.disabled.Insert(1);
        if (now.positionMs <= 0)
            expected.disabled.Insert(3);
    }
    if (now.clipCount == 0)
        expected.disabled.Insert({4, 5, 24, 25});
    expected.hidden.Insert(now.isMaximised ? 10 : 20);
    return expected;
}

Expected ByTheRules(const PlayerState& now)
{
    Expected result;
    for (const CheckRule& rule : kCheckRules) {
        if (!Applies(rule, now) || !rule.isDown(now))
            continue;
        if (rule.toolbarIndex != kNoButton)
            result.down.Insert(rule.toolbarIndex);
        if (rule.optionIndex != kNoButton)
            result.optionDown.Insert(rule.optionIndex);
    }
    for (const ButtonRule& rule : kButtonRules) {
        if (!rule.isEnabled(now))
            result.disabled.Insert(rule.index);
        if (rule.isVisible && !rule.isVisible(now))
            result.hidden.Insert(rule.index);
    }
    return result;
}

constexpr std::array kBooleans = {false, true};

// Calls with every combination of what the buttons depend on.
template <typename Visit>
void ForEachState(const Visit& visit)
{
    constexpr std::array<std::int32_t, 3> kSigned = {-1, 0, 1};
    constexpr std::array<std::int32_t, 3> kVolumes = {0, 1, 100};
    constexpr std::array<std::int32_t, 4> kPositions = {-1, 0, 1,
                                                        std::numeric_limits<std::int32_t>::max()};
    constexpr std::array<std::int32_t, 3> kClips = {0, 1, 9};
    std::vector<PlayerState> states(1);
    const auto vary = [&states](auto member, const auto& values) {
        std::vector<PlayerState> varied;
        for (const PlayerState& state : states) {
            for (const auto value : values) {
                varied.push_back(state);
                varied.back().*member = value;
            }
        }
        states = std::move(varied);
    };
    vary(&PlayerState::balance, kSigned);
    vary(&PlayerState::keyPitch, kSigned);
    vary(&PlayerState::speed, kSigned);
    vary(&PlayerState::volume, kVolumes);
    vary(&PlayerState::isTempoHeld, kBooleans);
    vary(&PlayerState::isDeviceSaved, kBooleans);
    vary(&PlayerState::areOptionsVisible, kBooleans);
    vary(&PlayerState::hasMedia, kBooleans);
    vary(&PlayerState::isPlaying, kBooleans);
    vary(&PlayerState::positionMs, kPositions);
    vary(&PlayerState::clipCount, kClips);
    vary(&PlayerState::isMaximised, kBooleans);
    for (PlayerState& state : states) {
        for (std::int16_t wheelType = -1; wheelType <= 6; ++wheelType) {
            state.wheelType = wheelType;
            visit(state);
        }
    }
}

TEST(ControlStates, EveryButtonIsAsExpectedInEveryState)
{
    int states = 0;
    ForEachState([&states](const PlayerState& now) {
        const Expected expected = ExpectedFor(now);
        const Expected actual = ByTheRules(now);
        ASSERT_TRUE(actual.down == expected.down);
        ASSERT_TRUE(actual.optionDown == expected.optionDown);
        ASSERT_TRUE(actual.disabled == expected.disabled);
        ASSERT_TRUE(actual.hidden == expected.hidden);
        ++states;
    });
    EXPECT_EQ(states, 81 * 64 * 12 * 8);
}

TEST(ControlStates, ExactlyOneOfEachPairIsVisible)
{
    ForEachState([](const PlayerState& now) {
        const Expected actual = ByTheRules(now);
        ASSERT_NE(actual.hidden.Has(1), actual.hidden.Has(2));
        ASSERT_NE(actual.hidden.Has(10), actual.hidden.Has(20));
    });
}

TEST(ControlStates, AHeldTempoLeavesTheSpeedsButtonsAlone)
{
    PlayerState now;
    now.isTempoHeld = true;
    const auto left = std::ranges::count_if(
        kCheckRules, [&](const CheckRule& rule) { return !Applies(rule, now); });
    EXPECT_EQ(left, 1);
    now.isTempoHeld = false;
    EXPECT_TRUE(std::ranges::all_of(kCheckRules,
                                    [&](const CheckRule& rule) { return Applies(rule, now); }));
}

TEST(ControlStates, TheRulesKeepTheOrderOfTheirWrites)
{
    std::vector<std::int16_t> checks;
    for (const CheckRule& rule : kCheckRules)
        checks.push_back(rule.toolbarIndex != kNoButton ? rule.toolbarIndex : rule.optionIndex);
    EXPECT_EQ(checks, (std::vector<std::int16_t>{5, 6, 6, 26, 1, 14, 31, 32, 33, 34, 35}));
    std::vector<std::int16_t> buttons;
    for (const ButtonRule& rule : kButtonRules)
        buttons.push_back(rule.index);
    EXPECT_EQ(buttons, (std::vector<std::int16_t>{1, 2, 3, 4, 5, 6, 10, 20, 24, 25}));
}

TEST(ControlStates, EachValueIsItsOwn)
{
    const PlayerState now = {.balance = 1, .keyPitch = 2, .speed = 3, .volume = 4};
    EXPECT_EQ(ValueIn(now, AudioValue::Balance), 1);
    EXPECT_EQ(ValueIn(now, AudioValue::KeyPitch), 2);
    EXPECT_EQ(ValueIn(now, AudioValue::Speed), 3);
    EXPECT_EQ(ValueIn(now, AudioValue::Volume), 4);
}

} // namespace
} // namespace lantern
