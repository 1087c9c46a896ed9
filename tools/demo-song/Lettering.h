// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFont>
#include <QPainterPath>
#include <QString>

#include <array>
#include <cstdint>
#include <vector>

// Letters as colour indexes. A letter is lit (unsung) in three steps of a fill, on an outline;
// exclusive or with kSungMask turns each fill index, and no other, into its sung twin.
namespace lantern::demo {

inline constexpr std::uint8_t kBackground = 0;
inline constexpr std::uint8_t kOutline = 1;
inline constexpr std::array<std::uint8_t, 3> kFill = {2, 3, 4};
inline constexpr std::uint8_t kSoftOutline = 5;
inline constexpr std::uint8_t kSungMask = 8;

inline constexpr bool IsFill(std::uint8_t index)
{
    return index >= kFill.front() && index <= kFill.back();
}

// An image of the size of the picture that a disc carries.
struct IndexImage {
    static constexpr int kWidth = 300;
    static constexpr int kHeight = 216;
    std::vector<std::uint8_t> pixels =
        std::vector<std::uint8_t>(static_cast<std::size_t>(kWidth) * kHeight, kBackground);

    std::uint8_t& At(int x, int y) { return pixels[static_cast<std::size_t>(y * kWidth + x)]; }
    std::uint8_t At(int x, int y) const { return pixels[static_cast<std::size_t>(y * kWidth + x)]; }
};

QFont DiscFont(int pixelSize);

// Draws the shape in the indexes above; with sung, in the sung ones.
void DrawShape(IndexImage& image, const QPainterPath& shape, double outlineWidth,
               bool sung = false);
// The text's outline, its left end and base line at the point.
QPainterPath TextShape(const QFont& font, const QString& text, double x, double baseLine);

} // namespace lantern::demo
