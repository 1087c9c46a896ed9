// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SpectrumLayout.h"
#include "SpectrumMotion.h"

#include <QImage>
#include <QPainter>
#include <QRgb>

#include <span>

namespace lantern {

// How bars look: they glow from the second colour at the foot to the first half-way up the field,
// and their caps have the second. Good for one layout.
class SpectrumPaint {
public:
    SpectrumPaint() = default; // paints nothing
    SpectrumPaint(const SpectrumLayout& layout, QRgb first, QRgb second);

    // The painter's unit is one device pixel. The background is the caller's.
    void DrawBars(QPainter& painter, std::span<const SpectrumBar> bars) const;

private:
    SpectrumLayout m_layout;
    QImage m_tallestBar; // of the field's height; a bar shows the lower part of it
    QRgb m_capColour = 0;
};

} // namespace lantern
