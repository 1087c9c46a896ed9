// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "RetainedSurface.h"
#include "Twips.h"

#include <QSize>
#include <QString>

#include <cstdint>
#include <functional>

namespace lantern {

inline constexpr std::int32_t kNoBorder = 0;
inline constexpr std::int32_t kTitleBarBorder = 7;

enum FrameAlignment : std::int32_t { AlignCaptionLeft, AlignCaptionRight, AlignCaptionCentre };

struct FrameLook {
    std::int32_t border = 1; // one of nine styles; any other has no edge
    std::int32_t align = AlignCaptionLeft;
    bool isDivider = false; // only the top edge
    QString caption;
};

// What to draw of a frame, in order and in pixels.
struct FrameLayout {
    Box titleBar; // empty in a group box, whose text hides the edge behind it
    Box edge;
    std::uint32_t edgeLines = 0;
    std::uint32_t edgeSides = 0;
    QString text; // empty: none
    int textLeft = 0;
    int textTop = 0;
};

// Width and height of a text on one line; an empty one has a height too.
using MeasureFrameText = std::function<QSize(const QString& text)>;

FrameLayout LayoutFrame(const FrameLook& look, QSize size, TwipsPerPixel twips,
                        const MeasureFrameText& measure);

} // namespace lantern
