// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "VirtualBuffers.h"

#include <QImage>
#include <QList>
#include <QRect>
#include <QSize>

#include <array>
#include <cstddef>

namespace lantern {

inline constexpr QSize kPictureSize{288, 192};
inline constexpr std::size_t kSceneCount = 4;

// Lines of text as lyrics have them, in typefaces and sizes of their own, with outlines, and some
// half sung: once drawn large, as type is, and once in the picture's few pixels, each in the
// colour that covers most of it.
class LetterScene {
public:
    explicit LetterScene(std::size_t number);

    // The large drawing brought to a size, each pixel the mean of what lies on it.
    QImage Truth(QSize size) const;
    // Where the text stands, of a picture shown at a size.
    QList<QRect> TextBoxes(QSize size) const;

    // In entries of Colours.
    const QImage& Indexes() const { return m_indexes; }
    static constexpr std::size_t kColours = 5;
    using Colours = std::array<std::uint8_t, 3 * kColours>;
    const Colours& PictureColours() const { return m_colours; }

    // As the window would show it.
    QImage Shown(QSize size, PictureLook look) const;
    QImage ShownBilinear(QSize size) const;
    // Three times as large by the rules of EPX, then sharp.
    QImage ShownByEpx(QSize size) const;

private:
    QImage Scaled(const QImage& indexes, QSize size, PictureLook look) const;

    Colours m_colours{};
    QImage m_large;   // in entries of Colours
    QImage m_indexes; // the same
    QList<QRectF> m_boxes;
};

} // namespace lantern
