// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "RetainedSurface.h"

#include <optional>

namespace lantern {

// How a picture is painted with one of its colours left out.
struct MaskedPaint {
    std::optional<QRgb> mask = {}; // the colour that is left out; none paints the whole block
    std::optional<QRgb> colour =
        {};                    // paints everything in one colour; none keeps the picture's own
    bool isMonochrome = false; // with a colour: leaves light pixels out
    QRgb iconGround = 0;       // what an icon lies on, which shows where it is transparent
};

// What becomes of a pixel of the target under an opaque pixel of the picture.
QRgb MaskedPixel(QRgb target, QRgb source, const MaskedPaint& paint);

// Paints the upper left part of a picture, width by height in the layout, at a point of the
// surface, pixel for pixel at the surface's own ratio. A negative size is the picture's; a size
// of 0 paints nothing. A bitmap that is itself transparent somewhere lets the target show there.
void DrawMaskedPicture(RetainedSurface& surface, int x, int y, int width, int height,
                       const Picture& picture, const MaskedPaint& paint);

} // namespace lantern
