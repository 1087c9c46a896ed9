// SPDX-License-Identifier: GPL-3.0-or-later
#include "KeyCodes.h"

#include <QKeyEvent>

#include <gtest/gtest.h>

#include <string_view>

namespace lantern {
namespace {

KeyCode CodeOf(int key, Qt::KeyboardModifiers modifiers = {}, quint32 place = 0)
{
    return KeyCodeOf(QKeyEvent(QEvent::KeyPress, key, modifiers, place, 0, 0));
}

TEST(KeyCodes, LettersAndDigitsAreTheirCharacters)
{
    for (int letter = 'A'; letter <= 'Z'; ++letter)
        EXPECT_EQ(static_cast<int>(CodeOf(letter)), letter);
    for (int digit = '0'; digit <= '9'; ++digit)
        EXPECT_EQ(static_cast<int>(CodeOf(digit)), digit);
}

TEST(KeyCodes, NamedKeysHaveTheirNumbers)
{
    EXPECT_EQ(static_cast<int>(CodeOf(Qt::Key_Escape)), 27);
    EXPECT_EQ(static_cast<int>(CodeOf(Qt::Key_Space)), 32);
    EXPECT_EQ(static_cast<int>(CodeOf(Qt::Key_Pause)), 19);
    EXPECT_EQ(static_cast<int>(CodeOf(Qt::Key_PageUp)), 33);
    EXPECT_EQ(static_cast<int>(CodeOf(Qt::Key_PageDown)), 34);
    EXPECT_EQ(static_cast<int>(CodeOf(Qt::Key_Left)), 37);
    EXPECT_EQ(static_cast<int>(CodeOf(Qt::Key_Up)), 38);
    EXPECT_EQ(static_cast<int>(CodeOf(Qt::Key_Right)), 39);
    EXPECT_EQ(static_cast<int>(CodeOf(Qt::Key_Down)), 40);
    EXPECT_EQ(static_cast<int>(CodeOf(Qt::Key_F1)), 112);
    EXPECT_EQ(static_cast<int>(CodeOf(Qt::Key_F4)), 115);
    EXPECT_EQ(static_cast<int>(CodeOf(Qt::Key_Period)), 190);
    EXPECT_EQ(static_cast<int>(CodeOf(Qt::Key_Shift)), 16);
    EXPECT_EQ(static_cast<int>(CodeOf(Qt::Key_Control)), 17);
    EXPECT_EQ(static_cast<int>(CodeOf(Qt::Key_Alt)), 18);
}

TEST(KeyCodes, MediaKeysHaveTheirNumbers)
{
    EXPECT_EQ(static_cast<int>(CodeOf(Qt::Key_MediaNext)), 176);
    EXPECT_EQ(static_cast<int>(CodeOf(Qt::Key_MediaPrevious)), 177);
    EXPECT_EQ(static_cast<int>(CodeOf(Qt::Key_MediaStop)), 178);
    EXPECT_EQ(static_cast<int>(CodeOf(Qt::Key_MediaPlay)), 179);
    EXPECT_EQ(static_cast<int>(CodeOf(Qt::Key_MediaTogglePlayPause)), 179);
    EXPECT_EQ(CodeOf(Qt::Key_MediaPause), KeyCode::MediaPause);
}

TEST(KeyCodes, PlusAndMinusDifferBetweenTheKeypadAndTheRest)
{
    EXPECT_EQ(CodeOf(Qt::Key_Plus, Qt::KeypadModifier), KeyCode::NumericPlus);
    EXPECT_EQ(CodeOf(Qt::Key_Minus, Qt::KeypadModifier), KeyCode::NumericMinus);
    EXPECT_EQ(CodeOf(Qt::Key_Equal), KeyCode::Equals);
    EXPECT_EQ(CodeOf(Qt::Key_Plus, Qt::ShiftModifier), KeyCode::Equals);
    EXPECT_EQ(CodeOf(Qt::Key_Minus), KeyCode::Minus);
    EXPECT_EQ(CodeOf(Qt::Key_Underscore, Qt::ShiftModifier), KeyCode::Minus);
}

TEST(KeyCodes, TheKeypadsPointIsAKeyOfItsOwnWhateverTheCountryWritesThere)
{
    EXPECT_EQ(CodeOf(Qt::Key_Period, Qt::KeypadModifier), KeyCode::NumericPoint);
    EXPECT_EQ(CodeOf(Qt::Key_Comma, Qt::KeypadModifier), KeyCode::NumericPoint);
    EXPECT_EQ(CodeOf(Qt::Key_Comma), KeyCode::None);
}

TEST(KeyCodes, TheKeypadsDigitsAreNoDigitKeys)
{
    for (int digit = '0'; digit <= '9'; ++digit)
        EXPECT_EQ(CodeOf(digit, Qt::KeypadModifier, 10), KeyCode::None);
}

TEST(KeyCodes, TheKeypadsArrowsAreArrows)
{
    EXPECT_EQ(CodeOf(Qt::Key_Left, Qt::KeypadModifier), KeyCode::Left);
    EXPECT_EQ(CodeOf(Qt::Key_PageDown, Qt::KeypadModifier), KeyCode::PageDown);
}

TEST(KeyCodes, TheDigitRowKeepsItsMeaningWhenItWritesSigns)
{
    EXPECT_EQ(CodeOf(Qt::Key_Exclam, Qt::ShiftModifier, 10), KeyCode::Digit1);
    EXPECT_EQ(CodeOf(Qt::Key_Eacute, {}, 11), KeyCode::Digit2);
    EXPECT_EQ(CodeOf(Qt::Key_ParenRight, Qt::ShiftModifier, 19), KeyCode::Digit0);
}

TEST(KeyCodes, LettersOfOtherScriptsMeanTheLatinOnesInTheirPlace)
{
    constexpr int kCyrillicZe = 0x0417; // where P lies
    EXPECT_EQ(CodeOf(kCyrillicZe, {}, 33), KeyCode::P);
    constexpr int kGreekPhi = 0x03A6; // where F lies
    EXPECT_EQ(CodeOf(kGreekPhi, {}, 41), KeyCode::F);
    EXPECT_EQ(CodeOf(kGreekPhi, {}, 58), KeyCode::M);
}

TEST(KeyCodes, LatinLettersAndSignsOfALayoutAreNotTakenForOthers)
{
    EXPECT_EQ(CodeOf(Qt::Key_Odiaeresis, {}, 47), KeyCode::None);
    EXPECT_EQ(CodeOf(Qt::Key_Semicolon, {}, 46), KeyCode::None);
    EXPECT_EQ(CodeOf(Qt::Key_VolumeUp, {}, 33), KeyCode::None);
    EXPECT_EQ(CodeOf(Qt::Key_Return, {}, 36), KeyCode::None);
}

TEST(KeyCodes, TheModifiersAreBits)
{
    const auto bitsOf = [](Qt::KeyboardModifiers modifiers) {
        return ShiftBitsOf(QKeyEvent(QEvent::KeyPress, Qt::Key_A, modifiers));
    };
    EXPECT_EQ(bitsOf({}), 0);
    EXPECT_EQ(bitsOf(Qt::ShiftModifier), 1);
    EXPECT_EQ(bitsOf(Qt::ControlModifier), 2);
    EXPECT_EQ(bitsOf(Qt::AltModifier), 4);
    EXPECT_EQ(bitsOf(Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier), 7);
    EXPECT_EQ(bitsOf(Qt::KeypadModifier | Qt::MetaModifier), 0);
}

} // namespace
} // namespace lantern
