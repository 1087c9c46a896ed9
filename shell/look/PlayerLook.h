// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Colours.h"
#include "ProgramFont.h"

namespace lantern {

// What all that stands on the skin is drawn with.
inline constexpr ColourValue kAccentColour = 568319; // the skin's orange
inline constexpr ColourValue kDarkGrey = 4210752;    // behind the knob of a slider

inline constexpr int kTextPixels = 11; // 8.25 points

inline QFont PlayerFont()
{
    return ProgramFont(QStringLiteral("Arial"), kTextPixels);
}
inline QFont MessageFont()
{
    return ProgramFont(QStringLiteral("Tahoma"), kTextPixels);
}

} // namespace lantern
