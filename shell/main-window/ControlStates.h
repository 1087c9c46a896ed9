// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AudioDecisions.h"

#include <array>
#include <cstdint>
#include <optional>

// What the buttons of both windows are to show, from what the player is doing.
namespace lantern {

// All that the controls tell of. The audio values are whole, as the sliders show them.
struct PlayerState {
    std::int32_t balance = 0;
    std::int32_t keyPitch = 0;
    std::int32_t speed = 0;
    std::int32_t volume = 100;
    bool isTempoHeld = false; // the speed is not what the user chose, for a moment
    bool isDeviceSaved = false;
    bool areOptionsVisible = false;
    std::int16_t wheelType = static_cast<std::int16_t>(WheelMode::Volume);
    bool hasMedia = false; // a path is known; its track may be closed
    bool isPlaying = false;
    std::int32_t positionMs = 0;
    std::int32_t clipCount = 0;
    bool isMaximised = false;
};

constexpr std::int32_t ValueIn(const PlayerState& now, AudioValue value)
{
    switch (value) {
    case AudioValue::Balance:
        return now.balance;
    case AudioValue::KeyPitch:
        return now.keyPitch;
    case AudioValue::Speed:
        return now.speed;
    case AudioValue::Volume:
        break;
    }
    return now.volume;
}

using StateTest = bool (*)(const PlayerState& now);

inline constexpr std::int16_t kNoButton = -1;

// A button of the toolbar and one of the options that are down in the same states. An audio value
// is one whose sliders are written just before.
struct CheckRule {
    std::optional<AudioValue> value;
    std::int16_t toolbarIndex;
    std::int16_t optionIndex;
    StateTest isDown;
};

// In the order in which they are written.
inline constexpr std::array kCheckRules = {
    CheckRule{AudioValue::Balance, kNoButton, 5,
              [](const PlayerState& now) { return now.balance != 0; }},
    CheckRule{AudioValue::KeyPitch, kNoButton, 6,
              [](const PlayerState& now) { return now.keyPitch != 0; }},
    CheckRule{AudioValue::Speed, 6, 7, [](const PlayerState& now) { return now.speed != 0; }},
    CheckRule{AudioValue::Volume, 26, 8, [](const PlayerState& now) { return now.volume == 0; }},
    // The play button, which is no check box, carries this value without showing it.
    CheckRule{{}, 1, 4, [](const PlayerState& now) { return now.isDeviceSaved; }},
    CheckRule{{}, 14, kNoButton, [](const PlayerState& now) { return now.areOptionsVisible; }},
    CheckRule{{}, 31, kNoButton, [](const PlayerState& now) { return now.wheelType == 1; }},
    CheckRule{{}, 32, kNoButton, [](const PlayerState& now) { return now.wheelType == 2; }},
    CheckRule{{}, 33, kNoButton, [](const PlayerState& now) { return now.wheelType == 3; }},
    CheckRule{{}, 34, kNoButton, [](const PlayerState& now) { return now.wheelType == 4; }},
    CheckRule{{}, 35, kNoButton, [](const PlayerState& now) { return now.wheelType == 5; }},
};

// A held tempo says nothing about the speed.
constexpr bool Applies(const CheckRule& rule, const PlayerState& now)
{
    return rule.value != AudioValue::Speed || !now.isTempoHeld;
}

// When a button of the toolbar is enabled and visible; none leaves its visibility alone.
struct ButtonRule {
    std::int16_t index;
    StateTest isEnabled;
    StateTest isVisible;
};

inline constexpr StateTest kAlways = [](const PlayerState&) { return true; };
inline constexpr StateTest kIsPlaying = [](const PlayerState& now) { return now.isPlaying; };
inline constexpr StateTest kIsNotPlaying = [](const PlayerState& now) { return !now.isPlaying; };
inline constexpr StateTest kHasClips = [](const PlayerState& now) { return now.clipCount > 0; };
inline constexpr StateTest kIsMaximised = [](const PlayerState& now) { return now.isMaximised; };
inline constexpr StateTest kIsWindow = [](const PlayerState& now) { return !now.isMaximised; };

inline constexpr std::array kButtonRules = {
    ButtonRule{1, [](const PlayerState& now) { return now.hasMedia && !now.isPlaying; },
               kIsNotPlaying},
    ButtonRule{2, kIsPlaying, kIsPlaying},
    ButtonRule{3, [](const PlayerState& now) { return now.positionMs > 0 || now.isPlaying; }, {}},
    ButtonRule{4, kHasClips, {}},
    ButtonRule{5, kHasClips, {}},
    ButtonRule{6, kIsPlaying, {}},
    ButtonRule{10, kAlways, kIsWindow},
    ButtonRule{20, kAlways, kIsMaximised},
    ButtonRule{24, kHasClips, {}},
    ButtonRule{25, kHasClips, {}},
};

} // namespace lantern
