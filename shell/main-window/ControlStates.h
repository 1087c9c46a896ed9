// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AudioDecisions.h"
#include "CommandId.h"

#include <array>
#include <cstddef>
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
    WheelMode wheelType = WheelMode::Volume;
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

template <WheelMode mode>
inline constexpr StateTest kWheelChanges =
    [](const PlayerState& now) { return now.wheelType == mode; };

// A button of the toolbar and one of the options, or only one of them, that are down in the same
// states. An audio value
// is one whose sliders are written just before.
struct CheckRule {
    std::optional<AudioValue> value;
    std::optional<CommandId> toolbarButton;
    std::optional<std::size_t> optionIndex;
    StateTest isDown;
};

// In the order in which they are written.
inline constexpr std::array kCheckRules = {
    CheckRule{AudioValue::Balance, {}, 5, [](const PlayerState& now) { return now.balance != 0; }},
    CheckRule{
        AudioValue::KeyPitch, {}, 6, [](const PlayerState& now) { return now.keyPitch != 0; }},
    CheckRule{AudioValue::Speed, CommandId::QuickPlay, 7,
              [](const PlayerState& now) { return now.speed != 0; }},
    CheckRule{AudioValue::Volume, CommandId::Mute, 8,
              [](const PlayerState& now) { return now.volume == 0; }},
    // The play button, which is no check box, carries this value without showing it.
    CheckRule{{}, CommandId::Play, 4, [](const PlayerState& now) { return now.isDeviceSaved; }},
    CheckRule{
        {}, CommandId::Options, {}, [](const PlayerState& now) { return now.areOptionsVisible; }},
    CheckRule{{}, CommandId::WheelBalance, {}, kWheelChanges<WheelMode::Balance>},
    CheckRule{{}, CommandId::WheelKey, {}, kWheelChanges<WheelMode::KeyPitch>},
    CheckRule{{}, CommandId::WheelTrack, {}, kWheelChanges<WheelMode::TrackPosition>},
    CheckRule{{}, CommandId::WheelVolume, {}, kWheelChanges<WheelMode::Volume>},
    CheckRule{{}, CommandId::WheelSpeed, {}, kWheelChanges<WheelMode::Speed>},
};

// A held tempo says nothing about the speed.
constexpr bool Applies(const CheckRule& rule, const PlayerState& now)
{
    return rule.value != AudioValue::Speed || !now.isTempoHeld;
}

// When a button of the toolbar is enabled and visible; none leaves its visibility alone.
struct ButtonRule {
    CommandId button;
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
    ButtonRule{CommandId::Play,
               [](const PlayerState& now) { return now.hasMedia && !now.isPlaying; },
               kIsNotPlaying},
    ButtonRule{CommandId::Pause, kIsPlaying, kIsPlaying},
    ButtonRule{CommandId::Stop,
               [](const PlayerState& now) { return now.positionMs > 0 || now.isPlaying; },
               {}},
    ButtonRule{CommandId::Forward10Seconds, kHasClips, {}},
    ButtonRule{CommandId::Forward60Seconds, kHasClips, {}},
    ButtonRule{CommandId::QuickPlay, kIsPlaying, {}},
    ButtonRule{CommandId::FullScreen, kAlways, kIsWindow},
    ButtonRule{CommandId::RestoreScreen, kAlways, kIsMaximised},
    ButtonRule{CommandId::Back10Seconds, kHasClips, {}},
    ButtonRule{CommandId::Back60Seconds, kHasClips, {}},
};

} // namespace lantern
