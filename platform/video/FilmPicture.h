// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "FilmPixels.h"
#include "FilmPointers.h"

namespace lantern {

// The picture as its encoder takes it. What changes is told by rectangles, and only these are
// turned into what the encoder takes.
//
// A lossy film has brightness by BT.709 within 16 to 235, and a colour for each two by two pixels,
// which stands in the middle of the left edge of the four: so players expect it.
class FilmPicture {
public:
    FilmPicture(int width, int height, bool isExact); // black

    void Paint(const FilmPixels& from, const FilmRect& rect); // what is outside is left out
    // The encoder may keep what it is given; the next Paint leaves that as it is.
    AVFrame& Frame() { return *m_frame; }

private:
    void PaintExact(const FilmPixels& from, int left, int top, int right, int bottom);
    void PaintBrightness(const FilmPixels& from, int left, int top, int right, int bottom);
    void PaintColours(const FilmPixels& from, int left, int top, int right, int bottom);

    FilmPointer<AVFrame> m_frame;
};

} // namespace lantern
