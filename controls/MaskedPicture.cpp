// SPDX-License-Identifier: GPL-3.0-or-later
#include "MaskedPicture.h"

#include <QPainter>

#include <cmath>

namespace lantern {
namespace {

constexpr QRgb kOpaque = 0xFF000000;
constexpr int kLightSum = 384; // red, green and blue together, from which on a pixel is light

QSize DeviceSize(int width, int height, qreal ratio)
{
    return {static_cast<int>(std::lround(width * ratio)),
            static_cast<int>(std::lround(height * ratio))};
}

// The picture in device pixels. An icon has been laid on its ground.
QImage SourcePixels(const Picture& picture, QSize deviceSize, qreal ratio, QRgb iconGround)
{
    QImage source(deviceSize, QImage::Format_ARGB32_Premultiplied);
    source.fill(picture.Type() == PictureType::Icon ? kOpaque | iconGround : 0);
    source.setDevicePixelRatio(ratio);
    QPainter painter(&source);
    painter.drawImage(0, 0, picture.ImageAt(ratio));
    return source;
}

int Over(int source, int target, int targetShare)
{
    return source + (target * targetShare + 127) / 255;
}

// The source has its alpha multiplied in.
QRgb Composed(QRgb target, QRgb source)
{
    const int share = 255 - qAlpha(source);
    return qRgb(Over(qRed(source), qRed(target), share),
                Over(qGreen(source), qGreen(target), share),
                Over(qBlue(source), qBlue(target), share));
}

void PaintRow(QRgb* target, const QRgb* source, int width, const MaskedPaint& paint)
{
    for (int x = 0; x < width; ++x) {
        if (qAlpha(source[x]) != 0)
            target[x] = MaskedPixel(target[x], Composed(target[x], source[x]), paint);
    }
}

} // namespace

QRgb MaskedPixel(QRgb target, QRgb source, const MaskedPaint& paint)
{
    if (paint.mask && (source & ~kOpaque) == (*paint.mask & ~kOpaque))
        return target;
    if (!paint.colour)
        return kOpaque | source;
    const bool isLight = qRed(source) + qGreen(source) + qBlue(source) > kLightSum;
    return paint.isMonochrome && isLight ? target : kOpaque | *paint.colour;
}

void DrawMaskedPicture(RetainedSurface& surface, int x, int y, int width, int height,
                       const Picture& picture, const MaskedPaint& paint)
{
    const qreal ratio = surface.DevicePixelRatio();
    const QSize size = DeviceSize(width < 0 ? picture.Size().width() : width,
                                  height < 0 ? picture.Size().height() : height, ratio);
    if (size.isEmpty() || surface.IsEmpty())
        return;
    const QImage source = SourcePixels(picture, size, ratio, paint.iconGround);
    QImage target = surface.Part(x, y, size);
    for (int row = 0; row < size.height(); ++row) {
        PaintRow(reinterpret_cast<QRgb*>(target.scanLine(row)),
                 reinterpret_cast<const QRgb*>(source.constScanLine(row)), size.width(), paint);
    }
    surface.DrawImage(target, x, y);
}

} // namespace lantern
