// SPDX-License-Identifier: GPL-3.0-or-later
// What stands on the skin of the player's smaller windows besides its own controls.
#pragma once

#include "Control.h"

#include <QLabel>

namespace lantern {

// Font and colours that the controls there start with.
const Ambient& SkinAmbient();

// Plain text, white on black.
class WhiteLabel : public QLabel {
public:
    explicit WhiteLabel(QWidget* parent);

    // A text that is wider than its place in this font spreads to the side where it has room.
    void FitToText();
};

} // namespace lantern
