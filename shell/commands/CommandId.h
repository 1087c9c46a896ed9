// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AudioDecisions.h"

#include <cstdint>

namespace lantern {

// What the player can do at a user's wish. A command has one number, which its button, its item in
// the menu and its keys share. From outside (a menu's key) any number may come: one without a name
// here does nothing, unless it stands for a device.
enum class CommandId : std::int16_t {
    Open = 0,
    Play = 1,
    Pause = 2,
    Stop = 3,
    Forward10Seconds = 4,
    Forward60Seconds = 5,
    QuickPlay = 6,
    Size1 = 7,
    Size2 = 8,
    Size3 = 9,
    FullScreen = 10,
    CopyPicture = 12,
    Options = 14,
    About = 15,
    Exit = 16,
    RestoreScreen = 20,
    Size4 = 21,
    Size5 = 22,
    Back10Seconds = 24,
    Back60Seconds = 25,
    Mute = 26,
    WheelBalance = 31,
    WheelKey = 32,
    WheelTrack = 33,
    WheelVolume = 34,
    WheelSpeed = 35,
    Larger = 41,
    Smaller = 42,
    WebSite = 44,
};

// The choice of the first output device; those of the others follow.
inline constexpr std::int16_t kFirstDeviceCommand = 1000;

constexpr std::int16_t NumberOf(CommandId command)
{
    return static_cast<std::int16_t>(command);
}

// The command that lets the wheel change this.
constexpr CommandId WheelCommand(WheelMode mode)
{
    constexpr std::int16_t kBase = NumberOf(CommandId::WheelBalance) - 1;
    return static_cast<CommandId>(kBase + static_cast<std::int16_t>(mode));
}
static_assert(WheelCommand(WheelMode::Balance) == CommandId::WheelBalance);
static_assert(WheelCommand(WheelMode::KeyPitch) == CommandId::WheelKey);
static_assert(WheelCommand(WheelMode::TrackPosition) == CommandId::WheelTrack);
static_assert(WheelCommand(WheelMode::Volume) == CommandId::WheelVolume);
static_assert(WheelCommand(WheelMode::Speed) == CommandId::WheelSpeed);

} // namespace lantern
