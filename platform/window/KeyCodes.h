// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

#include <cstdint>

class QKeyEvent;

namespace lantern {

// Keys by their meaning. The numbers are those that the program's key handlers are called with;
// letters and digits are their characters.
enum class KeyCode : std::uint16_t {
    None = 0,
    Shift = 16,
    Control = 17,
    Alt = 18,
    Pause = 19,
    Escape = 27,
    Blank = 32,
    PageUp = 33,
    PageDown = 34,
    Left = 37,
    Up = 38,
    Right = 39,
    Down = 40,
    Digit0 = '0',
    Digit1 = '1',
    Digit2 = '2',
    Digit3 = '3',
    Digit4 = '4',
    Digit5 = '5',
    Digit6 = '6',
    Digit9 = '9',
    A = 'A',
    B = 'B',
    C = 'C',
    F = 'F',
    I = 'I',
    K = 'K',
    M = 'M',
    O = 'O',
    P = 'P',
    Q = 'Q',
    R = 'R',
    S = 'S',
    T = 'T',
    V = 'V',
    Z = 'Z',
    NumericPlus = 107,
    NumericMinus = 109,
    NumericPoint = 110,
    F1 = 112,
    F4 = 115,
    MediaNext = 176,
    MediaPrevious = 177,
    MediaStop = 178,
    MediaPlay = 179,  // and pauses, too
    MediaPause = 180, // some keyboards have one for that alone
    Equals = 187,
    Minus = 189,
    FullStop = 190,
};

// The modifiers that are held with a key.
using ShiftBits = std::uint16_t;
inline constexpr ShiftBits kShiftBit = 1;
inline constexpr ShiftBits kControlBit = 2;
inline constexpr ShiftBits kAltBit = 4;

KeyCode KeyCodeOf(const QKeyEvent& event);
ShiftBits ShiftBitsOf(const QKeyEvent& event);

} // namespace lantern
