// SPDX-License-Identifier: GPL-3.0-or-later
#include "Lettering.h"

#include <QImage>
#include <QPainter>
#include <QPainterPathStroker>

namespace lantern::demo {
namespace {

QImage Coverage(const QPainterPath& shape)
{
    QImage mask(IndexImage::kWidth, IndexImage::kHeight, QImage::Format_Grayscale8);
    mask.fill(Qt::black);
    QPainter painter(&mask);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(shape, Qt::white);
    return mask;
}

QPainterPath Widened(const QPainterPath& shape, double width)
{
    QPainterPathStroker stroker;
    stroker.setWidth(2.0 * width);
    stroker.setJoinStyle(Qt::RoundJoin);
    QPainterPath widened = stroker.createStroke(shape) + shape;
    widened.setFillRule(Qt::WindingFill);
    return widened;
}

} // namespace

QFont DiscFont(int pixelSize)
{
    QFont font(QStringLiteral("Liberation Sans"));
    font.setBold(true);
    font.setPixelSize(pixelSize);
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

void DrawShape(IndexImage& image, const QPainterPath& shape, double outlineWidth, bool sung)
{
    const QImage fill = Coverage(shape);
    const QImage outline = Coverage(Widened(shape, outlineWidth));
    const std::uint8_t mask = sung ? kSungMask : 0;
    for (int y = 0; y < IndexImage::kHeight; ++y) {
        for (int x = 0; x < IndexImage::kWidth; ++x) {
            const int filled = fill.constScanLine(y)[x];
            const int outlined = outline.constScanLine(y)[x];
            if (filled > 40)
                image.At(x, y) = kFill[filled > 200 ? 2 : filled > 120 ? 1 : 0] ^ mask;
            else if (outlined > 64)
                image.At(x, y) = outlined > 160 ? kOutline : kSoftOutline;
        }
    }
}

QPainterPath TextShape(const QFont& font, const QString& text, double x, double baseLine)
{
    QPainterPath shape;
    shape.setFillRule(Qt::WindingFill);
    shape.addText(x, baseLine, font, text);
    return shape;
}

} // namespace lantern::demo
