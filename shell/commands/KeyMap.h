// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AudioControl.h"
#include "Commands.h"
#include "Display.h"
#include "KeyCodes.h"
#include "PlaybackClock.h"
#include "WheelControl.h"

#include <algorithm>
#include <array>

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
    std::int16_t command = -1;
    void (*run)(const CommandTargets& to) = nullptr;
};

// The first row that matches counts.
inline constexpr std::array kKeyMap = {
    KeyBinding{KeyCode::Escape, kAnyShift, 14},
    KeyBinding{KeyCode::O, kAnyShift, 0},
    KeyBinding{KeyCode::P, kAnyShift, 1},
    KeyBinding{KeyCode::Blank, kAnyShift, 1},
    KeyBinding{KeyCode::Pause, kAnyShift, 1},
    KeyBinding{KeyCode::FullStop, kAnyShift, 3},
    KeyBinding{KeyCode::NumericPoint, kAnyShift, 3},
    KeyBinding{KeyCode::Right, kNoShift, 4},
    KeyBinding{KeyCode::PageDown, kNoShift, 5},
    KeyBinding{KeyCode::Left, kNoShift, 24},
    KeyBinding{KeyCode::PageUp, kNoShift, 25},
    KeyBinding{KeyCode::Up, kAnyShift, -1,
               [](const CommandTargets& to) { to.wheel.MouseWheel(0, 1, 0, 0); }},
    KeyBinding{KeyCode::Down, kAnyShift, -1,
               [](const CommandTargets& to) { to.wheel.MouseWheel(0, -1, 0, 0); }},
    KeyBinding{KeyCode::C, kAnyShift, 12},
    KeyBinding{KeyCode::Digit1, kWithoutControl, 7},
    KeyBinding{KeyCode::Digit2, kWithoutControl, 8},
    KeyBinding{KeyCode::Digit3, kWithoutControl, 9},
    KeyBinding{KeyCode::Digit4, kWithoutControl, 21},
    KeyBinding{KeyCode::Digit5, kWithoutControl, 22},
    // The sizes in between.
    KeyBinding{KeyCode::Digit1, kWithControl, -1,
               [](const CommandTargets& to) { to.display.SetZoom(1, 1.5F); }},
    KeyBinding{KeyCode::Digit2, kWithControl, -1,
               [](const CommandTargets& to) { to.display.SetZoom(2, 1.25F); }},
    KeyBinding{KeyCode::Digit3, kWithControl, -1,
               [](const CommandTargets& to) { to.display.SetZoom(3, 1.2F); }},
    KeyBinding{KeyCode::Digit4, kWithControl, -1,
               [](const CommandTargets& to) { to.display.SetZoom(4, 1.125F); }},
    KeyBinding{KeyCode::Digit5, kWithControl, -1,
               [](const CommandTargets& to) { to.display.SetZoom(5, 1.1F); }},
    KeyBinding{KeyCode::F, kAnyShift, 10},
    KeyBinding{KeyCode::R, kAnyShift, 10},
    KeyBinding{KeyCode::Digit0, kAnyShift, 10},
    KeyBinding{KeyCode::Digit6, kAnyShift, 10},
    KeyBinding{KeyCode::NumericPlus, kAnyShift, 41},
    KeyBinding{KeyCode::Equals, kAnyShift, 41},
    KeyBinding{KeyCode::NumericMinus, kAnyShift, 42},
    KeyBinding{KeyCode::Minus, kAnyShift, 42},
    KeyBinding{KeyCode::Q, kWithControl, 16},
    KeyBinding{KeyCode::Q, kWithoutControl, 6},
    KeyBinding{KeyCode::F4, kWithAlt, 16},
    KeyBinding{KeyCode::I, kAnyShift, 15},
    KeyBinding{KeyCode::A, kAnyShift, 15},
    KeyBinding{KeyCode::F1, kAnyShift, 15},
    KeyBinding{KeyCode::M, kAnyShift, 26},
    KeyBinding{KeyCode::B, kAnyShift, 31},
    KeyBinding{KeyCode::K, kAnyShift, 32},
    KeyBinding{KeyCode::T, kAnyShift, 33},
    KeyBinding{KeyCode::V, kAnyShift, 34},
    KeyBinding{KeyCode::S, kAnyShift, 35},
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
