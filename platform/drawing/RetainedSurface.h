// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Picture.h"
#include "SystemColours.h"

#include <QFont>
#include <QImage>
#include <QRect>

#include <cstdint>

namespace lantern {

// A rectangle with exclusive right and bottom edges, in pixels of the layout. It may be empty or
// reversed; then nothing is drawn.
struct Box {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    int Width() const { return right - left; }
    int Height() const { return bottom - top; }
    Box Moved(int dx, int dy) const { return {left + dx, top + dy, right + dx, bottom + dy}; }
    bool operator==(const Box&) const = default;
};

// How a text is set. The numbers are those of the design data.
enum TextFlag : std::uint32_t {
    TextLeft = 0,
    TextCentred = 1,
    TextRight = 2,
    TextWrapped = 16, // at blanks, to the width of the box
    TextSingleLine = 32,
    TextPlain = 2048, // ampersands are shown as they are
};
using TextFlags = std::uint32_t;

// The kinds of edge, as a sum of one outer and one inner line, by the numbers of the design data.
enum EdgeLine : std::uint32_t {
    EdgeRaisedOuter = 1,
    EdgeSunkenOuter = 2,
    EdgeRaisedInner = 4,
    EdgeSunkenInner = 8,
};
enum EdgeSide : std::uint32_t {
    EdgeLeft = 1,
    EdgeTop = 2,
    EdgeRight = 4,
    EdgeBottom = 8,
    EdgeAllSides = 15,
    EdgeMonochrome = 0x8000, // flat, in the colour of window frames
};

// What an owner-drawn control draws on: an image in device pixels that keeps what was drawn.
// Coordinates are pixels of the layout; at a ratio of 2, every line is two device pixels wide and
// text and vector pictures are drawn at the full resolution.
class RetainedSurface {
public:
    // Makes the image anew if the size or the ratio differs; it is then black. Tells whether.
    bool Fit(QSize size, qreal devicePixelRatio);

    QSize Size() const { return m_size; }
    qreal DevicePixelRatio() const { return m_image.devicePixelRatio(); }
    const QImage& Image() const { return m_image; }
    bool IsEmpty() const { return m_image.isNull(); }

    void Clear(QRgb colour);
    void Fill(const Box& box, QRgb colour);
    void Outline(const Box& box, QRgb colour); // one pixel, inside the box
    // One pixel wide, horizontal or vertical; the end point is not drawn.
    void Line(int x1, int y1, int x2, int y2, QRgb colour);
    // A horizontal line, as thick wherever it lies at any ratio. Of several that belong together
    // the nth, counted from 0, lies right under the one before.
    void Rule(int left, int right, int y, QRgb colour, int nth = 0);
    void DrawPicture(const Picture& picture, int x, int y); // unscaled
    void DrawImage(const QImage& image, int x, int y);      // of any ratio, unscaled
    // A copy of what an image of that many device pixels would cover, drawn there; black beyond
    // the edges of the surface.
    QImage Part(int x, int y, QSize deviceSize) const;
    void DrawEdge(const Box& box, std::uint32_t edgeLines, std::uint32_t sides);

    // Unless the text is plain, an ampersand marks the next character as an access key: it is not
    // shown, and the character is underlined. Two make one ampersand.
    void DrawText(const QString& text, const Box& box, TextFlags flags, const QFont& font,
                  QRgb colour);
    // The box shrunk, at its right and bottom, to the text as DrawText would set it.
    static Box MeasureText(const QString& text, const Box& box, TextFlags flags, const QFont& font);

    // One line as it stands, ampersands too, its top left corner at a place in pixels. The opaque
    // one hides what lies behind the line.
    void Print(const QString& text, QPoint place, const QFont& font, QRgb colour);
    void PrintOpaque(const QString& text, QPoint place, const QFont& font, QRgb colour,
                     QRgb background);
    // An empty line is as high as any.
    static QSize PrintedSize(const QString& text, const QFont& font);

private:
    QPoint DevicePixel(int x, int y) const;

    QSize m_size;
    QImage m_image;
};

} // namespace lantern
