// SPDX-License-Identifier: GPL-3.0-or-later
#include "ImageClipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QImage>

#include <gtest/gtest.h>

#include <vector>

namespace lantern {
namespace {

TEST(ImageClipboard, HoldsACopyOfThePixels)
{
    std::vector<std::uint32_t> pixels = {0xFF010203, 0xFF040506, 0xFF070809,
                                         0xFF0A0B0C, 0xFF0D0E0F, 0xFF101112};
    ImageClipboard().SetImage({.width = 3, .height = 2, .pixels = pixels});
    pixels.assign(6, 0);
    const QImage image = QGuiApplication::clipboard()->image();
    ASSERT_EQ(image.size(), QSize(3, 2));
    EXPECT_EQ(image.pixel(0, 0), 0xFF010203u);
    EXPECT_EQ(image.pixel(2, 0), 0xFF070809u);
    EXPECT_EQ(image.pixel(2, 1), 0xFF101112u);
}

} // namespace
} // namespace lantern
