// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Colours.h"

#include <QRgb>

#include <cstdint>

// The system's colours. A colour value with the top bit set refers to the one whose number is its
// low byte, and is resolved only at the moment of drawing.
namespace lantern {

enum class SystemColour : std::uint8_t {
    ActiveTitleBar = 2,
    Window = 5,
    WindowFrame = 6,
    MenuText = 7,
    TitleBarText = 9,
    Selection = 13,
    SelectedText = 14,
    ButtonFace = 15,
    ButtonShadow = 16,
    ButtonText = 18,
    ButtonHighlight = 20,
    DarkShadow = 21,
    Light = 22,
};

constexpr ColourValue SystemReference(SystemColour colour)
{
    return 0x80000000u | static_cast<std::uint8_t>(colour);
}

// A reference to a number that no system colour has is black.
QRgb ResolveColour(ColourValue value);
QRgb ResolveColour(SystemColour colour);

} // namespace lantern
