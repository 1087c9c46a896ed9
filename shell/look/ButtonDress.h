// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ButtonArt.h"
#include "Colours.h"

#include <cstdint>

namespace lantern {

class ctlPicBtn;

// What a button of the player has besides its place and its face. The colours are those of a
// caption.
struct ButtonStyle {
    bool isCheckBox;
    std::int16_t mousePointer;
    ColourValue foreColor;
    ColourValue overColor;
};

void GiveStyle(ctlPicBtn& button, const ButtonStyle& style);
void GiveFace(ctlPicBtn& button, ButtonFace face);

} // namespace lantern
