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

// Buttons by the numbers of their commands, or by their indices on the options.
class Buttons {
public:
    void Insert(std::size_t number) { m_bits.set(number); }
    void Insert(CommandId command) { Insert(static_cast<std::size_t>(NumberOf(command))); }
    void Insert(std::initializer_list<CommandId> commands)
    {
        for (const CommandId command : commands)
            Insert(command);
    }
    bool Has(CommandId command) const
    {
        return m_bits.test(static_cast<std::size_t>(NumberOf(command)));
    }
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
        expected.optionDown.Insert(std::size_t{5});
    if (now.keyPitch != 0)
        expected.optionDown.Insert(std::size_t{6});
    if (now.speed != 0 && !now.isTempoHeld) {
        expected.down.Insert(CommandId::QuickPlay);
        expected.optionDown.Insert(std::size_t{7});
    }
    if (now.volume == 0) {
        expected.down.Insert(CommandId::Mute);
        expected.optionDown.Insert(std::size_t{8});
    }
    if (now.isDeviceSaved) {
        expected.down.Insert(CommandId::Play);
        expected.optionDown.Insert(std::size_t{4});
    }
    if (now.areOptionsVisible)
        expected.down.Insert(CommandId::Options);
    switch (now.wheelType) {
    case WheelMode::Balance:
        expected.down.Insert(CommandId::WheelBalance);
        break;
    case WheelMode::KeyPitch:
        expected.down.Insert(CommandId::WheelKey);
        break;
    case WheelMode::TrackPosition:
        expected.down.Insert(CommandId::WheelTrack);
        break;
    case WheelMode::Volume:
        expected.down.Insert(CommandId::WheelVolume);
        break;
    case WheelMode::Speed:
        expected.down.Insert(CommandId::WheelSpeed);
        break;
    }

    if (now.isPlaying) {
        expected.hidden.Insert(CommandId::Play);
        expected.disabled.Insert(CommandId::Play);
    } else {
        expected.hidden.Insert(CommandId::Pause);
        expected.disabled.Insert({CommandId::Pause, CommandId::QuickPlay});
        if (!now.hasMedia)
            expected.disabled.Insert(CommandId::Play);
        if (now.positionMs <= 0)
            expected.disabled.Insert(CommandId::Stop);
    }
    if (now.clipCount == 0)
        expected.disabled.Insert({CommandId::Forward10Seconds, CommandId::Forward60Seconds,
                                  CommandId::Back10Seconds, CommandId::Back60Seconds});
    expected.hidden.Insert(now.isMaximised ? CommandId::FullScreen : CommandId::RestoreScreen);
    return expected;
}

Expected ByTheRules(const PlayerState& now)
{
    Expected result;
    for (const CheckRule& rule : kCheckRules) {
        if (!Applies(rule, now) || !rule.isDown(now))
            continue;
        if (rule.toolbarButton)
            result.down.Insert(*rule.toolbarButton);
        if (rule.optionIndex)
            result.optionDown.Insert(*rule.optionIndex);
    }
    for (const ButtonRule& rule : kButtonRules) {
        if (!rule.isEnabled(now))
            result.disabled.Insert(rule.button);
        if (rule.isVisible && !rule.isVisible(now))
            result.hidden.Insert(rule.button);
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
            state.wheelType = WheelMode{wheelType};
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
        ASSERT_NE(actual.hidden.Has(CommandId::Play), actual.hidden.Has(CommandId::Pause));
        ASSERT_NE(actual.hidden.Has(CommandId::FullScreen),
                  actual.hidden.Has(CommandId::RestoreScreen));
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
    std::vector<std::optional<CommandId>> checks;
    for (const CheckRule& rule : kCheckRules)
        checks.push_back(rule.toolbarButton);
    EXPECT_EQ(checks,
              (std::vector<std::optional<CommandId>>{
                  std::nullopt, std::nullopt, CommandId::QuickPlay, CommandId::Mute,
                  CommandId::Play, CommandId::Options, CommandId::WheelBalance, CommandId::WheelKey,
                  CommandId::WheelTrack, CommandId::WheelVolume, CommandId::WheelSpeed}));
    std::vector<std::size_t> options;
    for (const CheckRule& rule : kCheckRules) {
        if (rule.optionIndex)
            options.push_back(*rule.optionIndex);
    }
    EXPECT_EQ(options, (std::vector<std::size_t>{5, 6, 7, 8, 4}));
    std::vector<CommandId> buttons;
    for (const ButtonRule& rule : kButtonRules)
        buttons.push_back(rule.button);
    EXPECT_EQ(buttons,
              (std::vector<CommandId>{
                  CommandId::Play, CommandId::Pause, CommandId::Stop, CommandId::Forward10Seconds,
                  CommandId::Forward60Seconds, CommandId::QuickPlay, CommandId::FullScreen,
                  CommandId::RestoreScreen, CommandId::Back10Seconds, CommandId::Back60Seconds}));
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
