// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPainter>

namespace lantern {

// Turns the painter's unit into one device pixel and puts its origin on a whole one, so that an
// image is copied pixel by pixel at every ratio, 1.5 included.
void UseDevicePixels(QPainter& painter, qreal ratio);

// The device pixels that something of that size in pixels of the layout has.
QSize DeviceSize(QSize size, qreal ratio);

} // namespace lantern
