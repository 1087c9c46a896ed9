// SPDX-License-Identifier: GPL-3.0-or-later
#include "Picture.h"

#include <gtest/gtest.h>

namespace lantern {
namespace {

const QByteArray kHalfSquare =
    R"(<svg xmlns="http://www.w3.org/2000/svg" width="4" height="2" viewBox="0 0 4 2">
       <rect x="0" y="0" width="2.5" height="2" fill="#ff0000"/></svg>)";

TEST(Picture, ABitmapIsShownByRepeatingItsPixels)
{
    QImage image(2, 1, QImage::Format_RGB32);
    image.setPixel(0, 0, 0xFF112233);
    image.setPixel(1, 0, 0xFFFFFFFF);
    const PictureReference picture = Picture::FromImage(image);
    ASSERT_NE(picture, nullptr);
    EXPECT_EQ(picture->Size(), QSize(2, 1));
    const QImage& twice = picture->ImageAt(2.0);
    EXPECT_EQ(twice.size(), QSize(4, 2));
    EXPECT_EQ(twice.devicePixelRatio(), 2.0);
    EXPECT_EQ(twice.pixel(1, 1), 0xFF112233);
    EXPECT_EQ(twice.pixel(2, 0), 0xFFFFFFFF);
}

TEST(Picture, AVectorPictureGainsDetailWithTheRatio)
{
    const PictureReference picture = Picture::FromSvg(kHalfSquare, {});
    ASSERT_NE(picture, nullptr);
    EXPECT_EQ(picture->Size(), QSize(4, 2));
    EXPECT_EQ(picture->ImageAt(2.0).pixel(4, 0), 0xFFFF0000);
    EXPECT_EQ(qAlpha(picture->ImageAt(2.0).pixel(5, 0)), 0);
}

TEST(Picture, AnImageAtARatioIsMadeOnce)
{
    const PictureReference picture = Picture::FromSvg(kHalfSquare, QSize(8, 4));
    ASSERT_NE(picture, nullptr);
    EXPECT_EQ(picture->ImageAt(1.5).constBits(), picture->ImageAt(1.5).constBits());
    EXPECT_EQ(picture->ImageAt(1.5).size(), QSize(12, 6));
}

TEST(Picture, WhatIsNoImageIsNone)
{
    EXPECT_EQ(Picture::FromImage(QImage()), nullptr);
    EXPECT_EQ(Picture::FromSvg("not a picture", {}), nullptr);
    EXPECT_EQ(Picture::FromFile(QStringLiteral("/no/such/file.svg")), nullptr);
}

TEST(Picture, OneFromKnownVectorsIsTheSameOne)
{
    const PictureReference picture = Picture::FromKnownSvg(kHalfSquare, QSize(8, 4));
    EXPECT_EQ(picture->Size(), QSize(8, 4));
    EXPECT_EQ(picture->ImageAt(2), Picture::FromSvg(kHalfSquare, QSize(8, 4))->ImageAt(2));
}

TEST(Picture, VectorsThatWereKnownWronglyAreEmpty)
{
    const PictureReference picture = Picture::FromKnownSvg("not a picture", QSize(2, 1));
    EXPECT_EQ(picture->ImageAt(1).size(), QSize(2, 1));
    EXPECT_EQ(picture->ImageAt(1).pixel(0, 0), 0U);
}

} // namespace
} // namespace lantern
