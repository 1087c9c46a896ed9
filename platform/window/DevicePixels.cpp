// SPDX-License-Identifier: GPL-3.0-or-later
#include "DevicePixels.h"

#include <cmath>

namespace lantern {

void UseDevicePixels(QPainter& painter, qreal ratio)
{
    painter.scale(1 / ratio, 1 / ratio);
    const QTransform device = painter.deviceTransform();
    painter.translate(std::round(device.dx()) - device.dx(), std::round(device.dy()) - device.dy());
}

QSize DeviceSize(QSize size, qreal ratio)
{
    return {static_cast<int>(std::lround(size.width() * ratio)),
            static_cast<int>(std::lround(size.height() * ratio))};
}

} // namespace lantern
