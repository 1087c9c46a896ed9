// SPDX-License-Identifier: GPL-3.0-or-later
#include "FilmPicture.h"

#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <random>

namespace lantern {
namespace {

using Pixels = std::vector<std::uint32_t>;

// By the formula, in floating point.
std::array<double, 3> Components(double red, double green, double blue)
{
    const double brightness = 0.2126 * red + 0.7152 * green + 0.0722 * blue;
    return {16 + brightness * 219 / 255, 128 + (blue - brightness) / 1.8556 * 224 / 255,
            128 + (red - brightness) / 1.5748 * 224 / 255};
}

std::array<double, 3> ComponentsOf(std::uint32_t pixel)
{
    return Components(pixel >> 16 & 0xFF, pixel >> 8 & 0xFF, pixel & 0xFF);
}

Pixels Noise(std::mt19937& random, int count)
{
    Pixels pixels;
    while (pixels.size() < static_cast<std::size_t>(count))
        pixels.push_back(0xFF000000 | (static_cast<std::uint32_t>(random()) & 0xFFFFFF));
    return pixels;
}

int Value(AVFrame& frame, std::size_t plane, int x, int y)
{
    return frame.data[plane][frame.linesize[plane] * y + x];
}

void ExpectSame(AVFrame& frame, AVFrame& wanted)
{
    int wrong = 0;
    for (std::size_t plane = 0; plane < 3; ++plane) {
        const int part = plane == 0 ? 1 : 2;
        for (int y = 0; y < wanted.height / part; ++y)
            for (int x = 0; x < wanted.width / part; ++x)
                wrong += Value(frame, plane, x, y) != Value(wanted, plane, x, y) ? 1 : 0;
    }
    EXPECT_EQ(wrong, 0);
}

TEST(FilmPicture, ComponentsAreThoseOfTheFormula)
{
    std::mt19937 random(1);
    for (const int width : {2, 16, 30}) {
        constexpr int kHeight = 6;
        const Pixels pixels = Noise(random, width * kHeight);
        FilmPicture picture(width, kHeight, false);
        picture.Paint({pixels.data(), width}, {0, 0, width, kHeight});
        AVFrame& frame = picture.Frame();
        const auto at = [&](int x, int y) {
            return ComponentsOf(pixels[static_cast<std::size_t>(y * width + std::max(x, 0))]);
        };
        for (int y = 0; y < kHeight; ++y)
            for (int x = 0; x < width; ++x)
                EXPECT_NEAR(Value(frame, 0, x, y), at(x, y)[0], 0.51);
        for (int y = 0; y < kHeight; y += 2) {
            for (int x = 0; x < width; x += 2) {
                for (std::size_t plane = 1; plane < 3; ++plane) {
                    double sum = 0;
                    for (const int row : {y, y + 1})
                        sum +=
                            at(x - 1, row)[plane] + 2 * at(x, row)[plane] + at(x + 1, row)[plane];
                    EXPECT_NEAR(Value(frame, plane, x / 2, y / 2), sum / 8, 0.51);
                }
            }
        }
    }
}

TEST(FilmPicture, APartThatIsPaintedLeavesAllAsIfTheWholeWere)
{
    constexpr int kWidth = 24;
    constexpr int kHeight = 14;
    std::mt19937 random(2);
    Pixels pixels = Noise(random, kWidth * kHeight);
    FilmPicture inParts(kWidth, kHeight, false);
    inParts.Paint({pixels.data(), kWidth}, {0, 0, kWidth, kHeight});
    for (int i = 0; i < 300; ++i) {
        // Over the edges, too.
        const FilmRect rect{static_cast<int>(random() % 30) - 4,
                            static_cast<int>(random() % 20) - 4, static_cast<int>(random() % 9),
                            static_cast<int>(random() % 9)};
        for (int y = std::max(rect.top, 0); y < std::min(rect.top + rect.height, kHeight); ++y)
            for (int x = std::max(rect.left, 0); x < std::min(rect.left + rect.width, kWidth); ++x)
                pixels[static_cast<std::size_t>(y * kWidth + x)] = Noise(random, 1)[0];
        inParts.Paint({pixels.data(), kWidth}, rect);
        FilmPicture whole(kWidth, kHeight, false);
        whole.Paint({pixels.data(), kWidth}, {0, 0, kWidth, kHeight});
        ExpectSame(inParts.Frame(), whole.Frame());
    }
}

TEST(FilmPicture, WhatAnEncoderKeepsStays)
{
    for (const bool isExact : {false, true}) {
        FilmPicture picture(16, 16, isExact);
        const FilmPointer<AVFrame> kept(av_frame_clone(&picture.Frame()));
        const int before = kept->data[0][0];
        const Pixels white(256, 0xFFFFFFFF);
        picture.Paint({white.data(), 16}, {0, 0, 16, 16});
        EXPECT_EQ(kept->data[0][0], before);
        EXPECT_EQ(picture.Frame().data[0][0], isExact ? 255 : 235);
    }
}

} // namespace
} // namespace lantern
