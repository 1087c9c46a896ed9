// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace lantern {

// A colour as design data holds it. With the top bit clear, a direct colour: red in the low byte,
// then green, then blue (0x00BBGGRR). With the top bit set, a reference to a system colour, which
// SystemColours.h resolves.
using ColourValue = std::uint32_t;

constexpr ColourValue DirectColour(int red, int green, int blue)
{
    return static_cast<ColourValue>(red | green << 8 | blue << 16);
}

inline constexpr ColourValue kBlack = DirectColour(0, 0, 0);
inline constexpr ColourValue kWhite = DirectColour(255, 255, 255);

} // namespace lantern
