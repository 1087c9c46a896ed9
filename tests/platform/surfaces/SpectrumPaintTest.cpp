// SPDX-License-Identifier: GPL-3.0-or-later
#include "SpectrumPaint.h"

#include "GoldenImage.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace lantern {
namespace {

constexpr QRgb kOrange = 0xFFFFAB08;
constexpr QRgb kTan = 0xFF7F6632;
constexpr QRgb kBlackPixel = 0xFF000000;

// A spectrum a moment after its top, so that the caps stand above the bars.
std::vector<SpectrumBar> FallingBars()
{
    std::vector<SpectrumBar> bars;
    for (int i = 0; i < 60; ++i) {
        const auto place = static_cast<float>(i);
        const float cap = std::abs(std::cos(place * 0.13F)) * (1.0F - 0.01F * place);
        bars.push_back({.height = cap * std::abs(std::sin(place * 0.31F)), .cap = cap});
    }
    return bars;
}

QImage Painted(int ratio, std::vector<SpectrumBar> bars)
{
    QImage field(275 * ratio, 36 * ratio, QImage::Format_RGB32);
    field.fill(kBlackPixel);
    const SpectrumLayout layout = LayOutSpectrum(field.size(), ratio);
    bars.resize(static_cast<std::size_t>(layout.count));
    QPainter painter(&field);
    SpectrumPaint(layout, kOrange, kTan).DrawBars(painter, bars);
    return field;
}

TEST(SpectrumPaint, CapsStandOverTheBarsThatFell)
{
    EXPECT_TRUE(MatchesGolden(Painted(1, FallingBars()), QStringLiteral("spectrum-falling-100")));
    EXPECT_TRUE(MatchesGolden(Painted(2, FallingBars()), QStringLiteral("spectrum-falling-200")));
}

TEST(SpectrumPaint, ABarGlowsFromItsFootToTheFirstColour)
{
    const QImage field = Painted(2, std::vector<SpectrumBar>(55, {.height = 1.0F, .cap = 1.0F}));
    EXPECT_EQ(field.pixel(1, 0), kTan);        // the cap
    EXPECT_EQ(field.pixel(1, 2), kBlackPixel); // the gap below it
    EXPECT_EQ(field.pixel(1, 4), kOrange);     // the top of the bar
    EXPECT_EQ(field.pixel(8, 36), kOrange);
    EXPECT_EQ(field.pixel(9, 36), kBlackPixel); // between two bars
    for (int y = 36; y < 71; ++y)
        EXPECT_GE(qGray(field.pixel(1, y)), qGray(field.pixel(1, y + 1)));
    EXPECT_LT(std::abs(qRed(field.pixel(1, 71)) - qRed(kTan)), 8);
}

TEST(SpectrumPaint, BarsAtRestAreNotSeen)
{
    QImage black = Painted(1, {});
    const QImage field = black;
    black.fill(kBlackPixel);
    EXPECT_EQ(field, black);
}

TEST(SpectrumPaint, WithoutALayoutNothingIsPainted)
{
    QImage field(10, 10, QImage::Format_RGB32);
    field.fill(kBlackPixel);
    const QImage black = field;
    QPainter painter(&field);
    SpectrumPaint().DrawBars(painter, FallingBars());
    SpectrumPaint(LayOutSpectrum({0, 0}, 1.0), kOrange, kTan).DrawBars(painter, {});
    painter.end();
    EXPECT_EQ(field, black);
}

} // namespace
} // namespace lantern
