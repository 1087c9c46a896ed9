// SPDX-License-Identifier: GPL-3.0-or-later
#include "RetainedSurface.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace lantern {
namespace {

QRect RectOf(const Box& box)
{
    return {box.left, box.top, box.Width(), box.Height()};
}

int QtFlags(TextFlags flags)
{
    int result = Qt::AlignTop;
    if (!(flags & TextPlain))
        result |= Qt::TextShowMnemonic;
    if (flags & TextSingleLine)
        result |= Qt::TextSingleLine;
    if (flags & TextCentred)
        result |= Qt::AlignHCenter;
    else if (flags & TextRight)
        result |= Qt::AlignRight;
    else
        result |= Qt::AlignLeft;
    if (flags & TextWrapped)
        result |= Qt::TextWordWrap;
    return result;
}

// The colours of one line of an edge: of its left and top side, and of its right and bottom side.
struct EdgeColours {
    SystemColour leftTop;
    SystemColour rightBottom;
};

EdgeColours ColoursOf(std::uint32_t line)
{
    switch (line) {
    case EdgeRaisedOuter:
        return {SystemColour::Light, SystemColour::DarkShadow};
    case EdgeSunkenOuter:
        return {SystemColour::ButtonShadow, SystemColour::ButtonHighlight};
    case EdgeRaisedInner:
        return {SystemColour::ButtonHighlight, SystemColour::ButtonShadow};
    default:
        return {SystemColour::DarkShadow, SystemColour::Light};
    }
}

// Draws one line around the box on the sides given, and takes it off the box. The right and bottom
// sides own the corners that they share with the left and top ones.
void DrawEdgeLine(RetainedSurface& surface, Box& box, EdgeColours colours, std::uint32_t sides)
{
    const QRgb leftTop = ResolveColour(colours.leftTop);
    const QRgb rightBottom = ResolveColour(colours.rightBottom);
    if (sides & EdgeLeft)
        surface.Fill({box.left, box.top, box.left + 1, box.bottom}, leftTop);
    if (sides & EdgeTop)
        surface.Fill({box.left, box.top, box.right, box.top + 1}, leftTop);
    if (sides & EdgeRight)
        surface.Fill({box.right - 1, box.top, box.right, box.bottom}, rightBottom);
    if (sides & EdgeBottom)
        surface.Fill({box.left, box.bottom - 1, box.right, box.bottom}, rightBottom);
    box.left += sides & EdgeLeft ? 1 : 0;
    box.top += sides & EdgeTop ? 1 : 0;
    box.right -= sides & EdgeRight ? 1 : 0;
    box.bottom -= sides & EdgeBottom ? 1 : 0;
}

} // namespace

bool RetainedSurface::Fit(QSize size, qreal devicePixelRatio)
{
    if (size == m_size && (m_image.isNull() || m_image.devicePixelRatio() == devicePixelRatio))
        return false;
    m_size = size;
    const QSize deviceSize(static_cast<int>(std::lround(size.width() * devicePixelRatio)),
                           static_cast<int>(std::lround(size.height() * devicePixelRatio)));
    m_image = QImage();
    if (!deviceSize.isEmpty()) {
        m_image = QImage(deviceSize, QImage::Format_RGB32);
        m_image.fill(Qt::black);
        m_image.setDevicePixelRatio(devicePixelRatio);
    }
    return true;
}

void RetainedSurface::Clear(QRgb colour)
{
    m_image.fill(colour);
}

void RetainedSurface::Fill(const Box& box, QRgb colour)
{
    if (m_image.isNull() || box.Width() <= 0 || box.Height() <= 0)
        return;
    QPainter painter(&m_image);
    painter.fillRect(RectOf(box), QColor::fromRgb(colour));
}

void RetainedSurface::Outline(const Box& box, QRgb colour)
{
    Fill({box.left, box.top, box.right, box.top + 1}, colour);
    Fill({box.left, box.bottom - 1, box.right, box.bottom}, colour);
    Fill({box.left, box.top, box.left + 1, box.bottom}, colour);
    Fill({box.right - 1, box.top, box.right, box.bottom}, colour);
}

void RetainedSurface::Line(int x1, int y1, int x2, int y2, QRgb colour)
{
    if (y1 == y2)
        Fill(x1 < x2 ? Box{x1, y1, x2, y1 + 1} : Box{x2 + 1, y1, x1 + 1, y1 + 1}, colour);
    else
        Fill(y1 < y2 ? Box{x1, y1, x1 + 1, y2} : Box{x1, y2 + 1, x1 + 1, y1 + 1}, colour);
}

void RetainedSurface::Rule(int left, int right, int y, QRgb colour, int nth)
{
    if (m_image.isNull() || left >= right)
        return;
    const qreal ratio = DevicePixelRatio();
    const int thickness = std::max(1, static_cast<int>(ratio));
    QPainter painter(&m_image);
    painter.scale(1 / ratio, 1 / ratio);
    const int start = qRound(left * ratio);
    painter.fillRect(start, qRound(y * ratio) + nth * thickness, qRound(right * ratio) - start,
                     thickness, QColor::fromRgb(colour));
}

void RetainedSurface::DrawPicture(const Picture& picture, int x, int y)
{
    if (!m_image.isNull())
        DrawImage(picture.ImageAt(DevicePixelRatio()), x, y);
}

void RetainedSurface::DrawImage(const QImage& image, int x, int y)
{
    if (m_image.isNull() || image.isNull())
        return;
    // In device pixels: then no rounding drops or repeats one where the ratio is a fraction.
    const qreal ratio = DevicePixelRatio();
    const QSizeF size = QSizeF(image.size()) * (ratio / image.devicePixelRatio());
    QPainter painter(&m_image);
    painter.scale(1 / ratio, 1 / ratio);
    painter.drawImage(QRectF(DevicePixel(x, y), size), image, QRectF(image.rect()));
}

QImage RetainedSurface::Part(int x, int y, QSize deviceSize) const
{
    return deviceSize.isEmpty() ? QImage() : m_image.copy(QRect(DevicePixel(x, y), deviceSize));
}

QPoint RetainedSurface::DevicePixel(int x, int y) const
{
    const qreal ratio = DevicePixelRatio();
    return {static_cast<int>(std::lround(x * ratio)), static_cast<int>(std::lround(y * ratio))};
}

void RetainedSurface::DrawEdge(const Box& box, std::uint32_t edgeLines, std::uint32_t sides)
{
    constexpr EdgeColours kFlatOuter = {SystemColour::WindowFrame, SystemColour::WindowFrame};
    constexpr EdgeColours kFlatInner = {SystemColour::Window, SystemColour::Window};
    const bool flat = (sides & EdgeMonochrome) != 0;
    const std::uint32_t outer = edgeLines & (EdgeRaisedOuter | EdgeSunkenOuter);
    const std::uint32_t inner = edgeLines & (EdgeRaisedInner | EdgeSunkenInner);
    Box rest = box;
    if (outer != 0)
        DrawEdgeLine(*this, rest, flat ? kFlatOuter : ColoursOf(outer), sides);
    if (inner != 0)
        DrawEdgeLine(*this, rest, flat ? kFlatInner : ColoursOf(inner), sides);
}

void RetainedSurface::DrawText(const QString& text, const Box& box, TextFlags flags,
                               const QFont& font, QRgb colour)
{
    if (m_image.isNull() || text.isEmpty() || box.Width() <= 0 || box.Height() <= 0)
        return;
    QPainter painter(&m_image);
    painter.setFont(font);
    painter.setPen(QColor::fromRgb(colour));
    painter.drawText(RectOf(box), QtFlags(flags), text);
}

Box RetainedSurface::MeasureText(const QString& text, const Box& box, TextFlags flags,
                                 const QFont& font)
{
    if (text.isEmpty())
        return {box.left, box.top, box.left, box.top};
    constexpr int kAnyHeight = 1 << 20;
    // Where the lines stand within the box doesn't change how large they are.
    const int qtFlags = QtFlags(flags & ~TextFlags{TextCentred | TextRight});
    const QRect bounds = QFontMetrics(font).boundingRect(
        QRect(0, 0, std::max(box.Width(), 1), kAnyHeight), qtFlags, text);
    return {box.left, box.top, box.left + bounds.width(), box.top + bounds.height()};
}

void RetainedSurface::Print(const QString& text, QPoint place, const QFont& font, QRgb colour)
{
    if (m_image.isNull() || text.isEmpty())
        return;
    QPainter painter(&m_image);
    painter.setFont(font);
    painter.setPen(QColor::fromRgb(colour));
    painter.drawText(place + QPoint(0, QFontMetrics(font).ascent()), text);
}

void RetainedSurface::PrintOpaque(const QString& text, QPoint place, const QFont& font, QRgb colour,
                                  QRgb background)
{
    if (text.isEmpty())
        return;
    const QSize size = PrintedSize(text, font);
    Fill({place.x(), place.y(), place.x() + size.width(), place.y() + size.height()}, background);
    Print(text, place, font, colour);
}

QSize RetainedSurface::PrintedSize(const QString& text, const QFont& font)
{
    const QFontMetrics metrics(font);
    return {metrics.horizontalAdvance(text), metrics.height()};
}

} // namespace lantern
