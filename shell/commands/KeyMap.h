// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AudioEngine.h"
#include "CommandId.h"
#include "Commands.h"
#include "Display.h"
#include "KeyCodes.h"
#include "PlaybackClock.h"
#include "WheelControl.h"

#include <algorithm>
#include <array>
#include <optional>

namespace lantern {

// Which modifiers a row of the key map wants.
struct ShiftRule {
    ShiftBits looksAt; // the bits that count
    ShiftBits wants;   // what they have to be

    constexpr bool Holds(ShiftBits shift) const { return (shift & looksAt) == wants; }
};
inline constexpr ShiftRule kAnyShift = {0, 0};
inline constexpr ShiftRule kNoShift = {kShiftBit | kControlBit | kAltBit, 0};
inline constexpr ShiftRule kWithControl = {kControlBit, kControlBit};
inline constexpr ShiftRule kWithoutControl = {kControlBit, 0};
inline constexpr ShiftRule kWithAlt = {kAltBit, kAltBit};

// A key runs a command of the table, or has an action of its own.
struct KeyBinding {
    KeyCode key;
    ShiftRule shift;
    std::optional<CommandId> command;
    void (*run)(const CommandTargets& to) = nullptr;
};

// The first row that matches counts.
inline constexpr std::array kKeyMap = {
    // Unlike the button, it hides the About panel, too.
    KeyBinding{KeyCode::Escape,
               kAnyShift,
               {},
               [](const CommandTargets& to) { to.window.ToggleOptions(false); }},
    KeyBinding{KeyCode::O, kAnyShift, CommandId::Open},
    KeyBinding{KeyCode::P, kAnyShift, CommandId::Play},
    KeyBinding{KeyCode::Blank, kAnyShift, CommandId::Play},
    KeyBinding{KeyCode::Pause, kAnyShift, CommandId::Play},
    KeyBinding{KeyCode::FullStop, kAnyShift, CommandId::Stop},
    KeyBinding{KeyCode::NumericPoint, kAnyShift, CommandId::Stop},
    KeyBinding{KeyCode::MediaPlay, kAnyShift, CommandId::Play},
    KeyBinding{KeyCode::MediaPause,
               kAnyShift,
               {},
               [](const CommandTargets& to) {
                   if (to.engine.GetSoundStatus() == SoundStatus::Playing)
                       to.clock.PlayPause();
               }},
    KeyBinding{KeyCode::MediaStop, kAnyShift, CommandId::Stop},
    KeyBinding{KeyCode::MediaNext,
               kAnyShift,
               {},
               [](const CommandTargets& to) { to.window.GoToTrack(1); }},
    KeyBinding{KeyCode::MediaPrevious,
               kAnyShift,
               {},
               [](const CommandTargets& to) { to.window.GoToTrack(-1); }},
    KeyBinding{KeyCode::Right, kNoShift, CommandId::Forward10Seconds},
    KeyBinding{KeyCode::PageDown, kNoShift, CommandId::Forward60Seconds},
    KeyBinding{KeyCode::Left, kNoShift, CommandId::Back10Seconds},
    KeyBinding{KeyCode::PageUp, kNoShift, CommandId::Back60Seconds},
    KeyBinding{KeyCode::Up,
               kAnyShift,
               {},
               [](const CommandTargets& to) { to.wheel.MouseWheel(0, 1, 0, 0); }},
    KeyBinding{KeyCode::Down,
               kAnyShift,
               {},
               [](const CommandTargets& to) { to.wheel.MouseWheel(0, -1, 0, 0); }},
    KeyBinding{KeyCode::C, kAnyShift, CommandId::CopyPicture},
    KeyBinding{KeyCode::Digit1, kWithoutControl, CommandId::Size1},
    KeyBinding{KeyCode::Digit2, kWithoutControl, CommandId::Size2},
    KeyBinding{KeyCode::Digit3, kWithoutControl, CommandId::Size3},
    KeyBinding{KeyCode::Digit4, kWithoutControl, CommandId::Size4},
    KeyBinding{KeyCode::Digit5, kWithoutControl, CommandId::Size5},
    // The sizes in between.
    KeyBinding{KeyCode::Digit1,
               kWithControl,
               {},
               [](const CommandTargets& to) { to.display.SetZoom(1, 1.5F); }},
    KeyBinding{KeyCode::Digit2,
               kWithControl,
               {},
               [](const CommandTargets& to) { to.display.SetZoom(2, 1.25F); }},
    KeyBinding{KeyCode::Digit3,
               kWithControl,
               {},
               [](const CommandTargets& to) { to.display.SetZoom(3, 1.2F); }},
    KeyBinding{KeyCode::Digit4,
               kWithControl,
               {},
               [](const CommandTargets& to) { to.display.SetZoom(4, 1.125F); }},
    KeyBinding{KeyCode::Digit5,
               kWithControl,
               {},
               [](const CommandTargets& to) { to.display.SetZoom(5, 1.1F); }},
    KeyBinding{KeyCode::F, kAnyShift, CommandId::FullScreen},
    KeyBinding{KeyCode::R, kAnyShift, CommandId::FullScreen},
    KeyBinding{KeyCode::Digit0, kAnyShift, CommandId::FullScreen},
    KeyBinding{KeyCode::Digit6, kAnyShift, CommandId::FullScreen},
    KeyBinding{KeyCode::NumericPlus, kAnyShift, CommandId::Larger},
    KeyBinding{KeyCode::Equals, kAnyShift, CommandId::Larger},
    KeyBinding{KeyCode::NumericMinus, kAnyShift, CommandId::Smaller},
    KeyBinding{KeyCode::Minus, kAnyShift, CommandId::Smaller},
    KeyBinding{KeyCode::Q, kWithControl, CommandId::Exit},
    KeyBinding{KeyCode::Q, kWithoutControl, CommandId::QuickPlay},
    KeyBinding{KeyCode::F4, kWithAlt, CommandId::Exit},
    KeyBinding{KeyCode::I, kAnyShift, CommandId::About},
    KeyBinding{KeyCode::A, kAnyShift, CommandId::About},
    KeyBinding{KeyCode::F1, kAnyShift, CommandId::About},
    KeyBinding{KeyCode::M, kAnyShift, CommandId::Mute},
    KeyBinding{KeyCode::B, kAnyShift, CommandId::WheelBalance},
    KeyBinding{KeyCode::K, kAnyShift, CommandId::WheelKey},
    KeyBinding{KeyCode::T, kAnyShift, CommandId::WheelTrack},
    KeyBinding{KeyCode::V, kAnyShift, CommandId::WheelVolume},
    KeyBinding{KeyCode::S, kAnyShift, CommandId::WheelSpeed},
};

// The keys that act again and again while they are held.
inline constexpr std::array kRepeatingKeys = {KeyCode::Left,  KeyCode::Right, KeyCode::Up,
                                              KeyCode::Down,  KeyCode::O,     KeyCode::Control,
                                              KeyCode::Shift, KeyCode::Alt};

constexpr bool RepeatsWhileHeld(KeyCode key)
{
    return std::ranges::find(kRepeatingKeys, key) != kRepeatingKeys.end();
}

} // namespace lantern
