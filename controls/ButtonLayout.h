// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "RetainedSurface.h"

#include <cstdint>
#include <functional>

// Where the buttons have their parts, in pixels.
namespace lantern {

// The box shrunk, at its right and bottom, to the caption as it is set with the flags.
using MeasureCaption = std::function<Box(const Box& box, TextFlags flags)>;

struct PicButtonRects {
    int pictureX = 0; // kept by design; the picture is shown at the top left corner
    int pictureY = 0;
    Box text;
    Box shadow;
    bool operator==(const PicButtonRects&) const = default;
};

PicButtonRects LayoutPicButton(QSize button, QSize picture, bool isCheckBox,
                               const MeasureCaption& measure);

struct TextButtonRects {
    int pictureX = 0;
    int pictureY = 0;
    Box text;
    Box shifted;
    TextFlags flags = TextWrapped | TextCentred;
    bool operator==(const TextButtonRects&) const = default;
};

// The nine positions of the picture count from 0 in reading order. Any other number leaves all as
// it was before.
TextButtonRects LayoutTextButton(const TextButtonRects& before, QSize button, QSize picture,
                                 std::int32_t position, bool isCaptionBlank,
                                 const MeasureCaption& measure);

} // namespace lantern
