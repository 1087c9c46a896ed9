// SPDX-License-Identifier: GPL-3.0-or-later
#include "ArtPictures.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace lantern {
namespace {

constexpr QRgb kLit = qRgb(255, 171, 8);

template <typename Fits>
int CountPixels(const QImage& image, Fits fits)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            count += fits(image.pixel(x, y)) ? 1 : 0;
    return count;
}

void ExpectLitOnOpaqueBlack(const PictureReference& picture, QSize size)
{
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->Size(), size);
    for (const int ratio : {1, 2, 3}) {
        const QImage& image = picture->ImageAt(ratio);
        EXPECT_EQ(image.size(), size * ratio);
        const int pixels = image.width() * image.height();
        EXPECT_EQ(CountPixels(image, [](QRgb p) { return qAlpha(p) == 255; }), pixels);
        EXPECT_GT(CountPixels(image, [](QRgb p) { return p == kLit; }), pixels / 12);
        EXPECT_GT(CountPixels(image, [](QRgb p) { return qGray(p) < 64; }), pixels / 3);
    }
}

TEST(ArtPictures, TheProductsPictureIsLitOnOpaqueBlack)
{
    ExpectLitOnOpaqueBlack(AboutPicture(), {96, 128});
}

TEST(ArtPictures, TheMenusSidePictureIsLitOnOpaqueBlack)
{
    ExpectLitOnOpaqueBlack(MenuSidePicture(), {16, 118});
}

TEST(ArtPictures, TheBlankPointerShowsNothing)
{
    const PictureReference picture = BlankPointer();
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->Type(), PictureType::Icon);
    EXPECT_EQ(picture->Size(), QSize(32, 32));
    EXPECT_EQ(CountPixels(picture->ImageAt(1), [](QRgb p) { return p != 0; }), 0);
}

} // namespace
} // namespace lantern
