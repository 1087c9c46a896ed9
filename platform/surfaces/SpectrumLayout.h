// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRect>
#include <QSize>

namespace lantern {

// Where the bars of a spectrum lie, in device pixels. All are as wide as each other, and so are
// the gaps between them, whatever the ratio; what is left over is shared by the two ends.
struct SpectrumLayout {
    int count = 0;
    int left = 0; // of the first bar
    int barWidth = 0;
    int pitch = 0;  // from one bar to the next
    int height = 0; // of the surface
    int capHeight = 0;
    int capGap = 0; // between a bar and the cap that lies on it

    bool operator==(const SpectrumLayout&) const = default;

    // A bar from the bottom up, and its cap. The part is of the full height, 0 to 1; one too
    // small to fill a pixel is an empty rectangle.
    QRect Bar(int index, float part) const;
    QRect Cap(int index, float part) const;
};

SpectrumLayout LayOutSpectrum(QSize deviceSize, qreal ratio);

} // namespace lantern
