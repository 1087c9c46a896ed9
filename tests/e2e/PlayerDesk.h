// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Eyes.h"

#include <QRect>

namespace lantern::test {

// Where a user finds what stands on the player's window, in pixels of the screen. Measured from
// the window's edges as they are seen, not asked of the program.
class PlayerDesk {
public:
    explicit PlayerDesk(const QRect& window, bool isFullScreen = false);

    // The middle of what can be seen of a button, by its number.
    Point Button(int number) const;
    QRect PositionSlider() const;
    QRect VolumeSlider() const;
    Point Body() const; // a bare place of the toolbar
    QRect Picture() const;

private:
    QRect m_window;
    QRect m_bar;
    int m_margin;
};

// The point of a slider at a part of its length, 0 to 1.
Point SliderPoint(const QRect& slider, double part);
// How far the knob of a slider stands, 0 to 1, by the length of its filled part.
double SliderPart(const QImage& slider);

// The corner of the context menu that the pointer opened at a point, and a row of it, counted from
// 1, by its height and the number of its rows.
Point MenuCorner(Point opened);
Point MenuRow(Point opened, int menuHeight, int rows, int row);
inline constexpr QRgb kMenuFrame = 0xFFFFAB08;

} // namespace lantern::test
