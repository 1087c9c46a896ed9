// SPDX-License-Identifier: GPL-3.0-or-later
#include "KeyCodes.h"

#include <QKeyEvent>

#include <array>
#include <string_view>

namespace lantern {
namespace {

struct KeyName {
    Qt::Key key;
    bool isKeypad;
    KeyCode code;
};

// Keys whose number isn't their character, and whether the keypad's or the other one is meant.
constexpr std::array kSignKeys = {
    KeyName{Qt::Key_Plus, true, KeyCode::NumericPlus},
    KeyName{Qt::Key_Minus, true, KeyCode::NumericMinus},
    KeyName{Qt::Key_Period, true, KeyCode::NumericPoint},
    KeyName{Qt::Key_Comma, true, KeyCode::NumericPoint},
    KeyName{Qt::Key_Plus, false, KeyCode::Equals},
    KeyName{Qt::Key_Equal, false, KeyCode::Equals},
    KeyName{Qt::Key_Minus, false, KeyCode::Minus},
    KeyName{Qt::Key_Underscore, false, KeyCode::Minus},
    KeyName{Qt::Key_Period, false, KeyCode::FullStop},
};

struct PlainKey {
    Qt::Key key;
    KeyCode code;
};

constexpr std::array kPlainKeys = {
    PlainKey{Qt::Key_Shift, KeyCode::Shift},
    PlainKey{Qt::Key_Control, KeyCode::Control},
    PlainKey{Qt::Key_Alt, KeyCode::Alt},
    PlainKey{Qt::Key_AltGr, KeyCode::Alt},
    PlainKey{Qt::Key_Meta, KeyCode::None},
    PlainKey{Qt::Key_Pause, KeyCode::Pause},
    PlainKey{Qt::Key_Escape, KeyCode::Escape},
    PlainKey{Qt::Key_Space, KeyCode::Blank},
    PlainKey{Qt::Key_PageUp, KeyCode::PageUp},
    PlainKey{Qt::Key_PageDown, KeyCode::PageDown},
    PlainKey{Qt::Key_Left, KeyCode::Left},
    PlainKey{Qt::Key_Right, KeyCode::Right},
    PlainKey{Qt::Key_Up, KeyCode::Up},
    PlainKey{Qt::Key_Down, KeyCode::Down},
    PlainKey{Qt::Key_F1, KeyCode::F1},
    PlainKey{Qt::Key_F4, KeyCode::F4},
    PlainKey{Qt::Key_MediaNext, KeyCode::MediaNext},
    PlainKey{Qt::Key_MediaPrevious, KeyCode::MediaPrevious},
    PlainKey{Qt::Key_MediaStop, KeyCode::MediaStop},
    PlainKey{Qt::Key_MediaPlay, KeyCode::MediaPlay},
    PlainKey{Qt::Key_MediaTogglePlayPause, KeyCode::MediaPlay},
    PlainKey{Qt::Key_MediaPause, KeyCode::MediaPause},
};

struct KeyRow {
    quint32 firstPlace; // of the row's keys, as the display server counts them
    std::string_view characters;
};

// Where the digits and letters lie on the common keyboard.
constexpr std::array kKeyRows = {
    KeyRow{10, "1234567890"},
    KeyRow{24, "QWERTYUIOP"},
    KeyRow{38, "ASDFGHJKL"},
    KeyRow{52, "ZXCVBNM"},
};

KeyCode KeyCodeAtPlace(quint32 place)
{
    for (const KeyRow& row : kKeyRows) {
        if (place >= row.firstPlace && place < row.firstPlace + row.characters.size())
            return static_cast<KeyCode>(row.characters[place - row.firstPlace]);
    }
    return KeyCode::None;
}

constexpr bool IsWithin(int key, Qt::Key first, Qt::Key last)
{
    return key >= first && key <= last;
}

bool WritesNonLatinLetter(int key)
{
    return key > 0xFF && key < Qt::Key_Escape;
}

} // namespace

KeyCode KeyCodeOf(const QKeyEvent& event)
{
    const int key = event.key();
    const bool isKeypad = event.modifiers().testFlag(Qt::KeypadModifier);
    for (const KeyName& sign : kSignKeys) {
        if (sign.key == key && sign.isKeypad == isKeypad)
            return sign.code;
    }
    for (const PlainKey& plain : kPlainKeys) {
        if (plain.key == key)
            return plain.code;
    }
    // The keypad's digits are keys of their own, and none of them has a command.
    if (isKeypad)
        return KeyCode::None;
    if (IsWithin(key, Qt::Key_0, Qt::Key_9) || IsWithin(key, Qt::Key_A, Qt::Key_Z))
        return static_cast<KeyCode>(key);
    // With Shift, and on many layouts without, the digit row writes signs; and other scripts have
    // other letters on the keys. Such a key means what stands in its place.
    const KeyCode inPlace = KeyCodeAtPlace(event.nativeScanCode());
    const bool isDigitPlace = inPlace >= KeyCode::Digit0 && inPlace <= KeyCode::Digit9;
    return isDigitPlace || WritesNonLatinLetter(key) ? inPlace : KeyCode::None;
}

ShiftBits ShiftBitsOf(const QKeyEvent& event)
{
    const Qt::KeyboardModifiers held = event.modifiers();
    return static_cast<ShiftBits>((held.testFlag(Qt::ShiftModifier) ? kShiftBit : 0) |
                                  (held.testFlag(Qt::ControlModifier) ? kControlBit : 0) |
                                  (held.testFlag(Qt::AltModifier) ? kAltBit : 0));
}

} // namespace lantern
