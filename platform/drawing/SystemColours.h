// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRgb>

#include <cstdint>

// Colour values as design data holds them: 32 bits. With the top bit clear, a direct colour with
// red in the low byte, then green, then blue (0x00BBGGRR). With the top bit set, a reference to
// the system colour whose number is the low byte, resolved only at the moment of drawing.
namespace lantern {

using ColourValue = std::uint32_t;

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

constexpr ColourValue DirectColour(int red, int green, int blue)
{
    return static_cast<ColourValue>(red | green << 8 | blue << 16);
}

// A reference to a number that no system colour has is black.
QRgb ResolveColour(ColourValue value);
QRgb ResolveColour(SystemColour colour);

} // namespace lantern
