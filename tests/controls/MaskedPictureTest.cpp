// SPDX-License-Identifier: GPL-3.0-or-later
#include "MaskedPicture.h"

#include "ButtonFixture.h"

namespace lantern {
namespace {

constexpr QRgb kGround = 0xFF203040;
constexpr QRgb kDarkest = 0xFF808080; // 384 together: the lightest that still counts as dark
constexpr QRgb kLightest = 0xFF808081;

// Two rows: red, dark, light and blue; and the other way round.
QImage FourPixels(int width = 4)
{
    constexpr std::array<QRgb, 4> kPixels = {kRed, kDarkest, kLightest, kBlue};
    QImage image(width, 2, QImage::Format_RGB32);
    for (int x = 0; x < width; ++x) {
        image.setPixel(x, 0, kPixels[static_cast<std::size_t>(x % 4)]);
        image.setPixel(x, 1, kPixels[static_cast<std::size_t>(3 - x % 4)]);
    }
    return image;
}

class MaskedPictureTest : public ::testing::Test {
protected:
    MaskedPictureTest() { Prepare(1.0); }

    void Prepare(qreal ratio)
    {
        surface = RetainedSurface();
        surface.Fit(QSize(12, 6), ratio);
        surface.Clear(kGround);
    }
    void Draw(const PictureReference& picture, const MaskedPaint& paint, int x = 2, int y = 1)
    {
        DrawMaskedPicture(surface, x, y, -1, -1, *picture, paint);
    }
    std::vector<QRgb> Row(int y, int from, int count) const
    {
        std::vector<QRgb> row;
        for (int x = from; x < from + count; ++x)
            row.push_back(surface.Image().pixel(x, y));
        return row;
    }

    RetainedSurface surface;
};

TEST_F(MaskedPictureTest, OneColourIsLeftOut)
{
    Draw(Picture::FromImage(FourPixels()), {.mask = kRed});
    EXPECT_EQ(Row(1, 1, 6),
              (std::vector<QRgb>{kGround, kGround, kDarkest, kLightest, kBlue, kGround}));
    EXPECT_EQ(Row(2, 1, 6),
              (std::vector<QRgb>{kGround, kBlue, kLightest, kDarkest, kGround, kGround}));
    EXPECT_EQ(Row(3, 1, 6), std::vector<QRgb>(6, kGround));
}

TEST_F(MaskedPictureTest, WithoutMaskTheWholeBlockIsPainted)
{
    Draw(Picture::FromImage(FourPixels()), {});
    EXPECT_EQ(Row(1, 2, 4), (std::vector<QRgb>{kRed, kDarkest, kLightest, kBlue}));
}

TEST_F(MaskedPictureTest, ASilhouetteLeavesTheMaskOut)
{
    Draw(Picture::FromImage(FourPixels()), {.mask = kRed, .colour = kGreen});
    EXPECT_EQ(Row(1, 2, 4), (std::vector<QRgb>{kGround, kGreen, kGreen, kGreen}));
}

TEST_F(MaskedPictureTest, InOneColourLightPartsMayBeLeftOutToo)
{
    Draw(Picture::FromImage(FourPixels()),
         {.mask = kRed, .colour = kBlackPixel, .isMonochrome = true});
    EXPECT_EQ(Row(1, 2, 4), (std::vector<QRgb>{kGround, kBlackPixel, kGround, kBlackPixel}));
}

TEST_F(MaskedPictureTest, AWidthThatIsNoMultipleOfFourIsPaintedAsStraight)
{
    for (const int width : {1, 2, 3, 5, 6, 7}) {
        Prepare(1.0);
        Draw(Picture::FromImage(FourPixels(width)), {});
        for (int y = 0; y < 2; ++y) {
            for (int x = 0; x < width; ++x)
                EXPECT_EQ(surface.Image().pixel(2 + x, 1 + y), FourPixels(width).pixel(x, y));
        }
    }
}

TEST_F(MaskedPictureTest, AnIconLiesOnItsGround)
{
    QImage image(4, 1, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    image.setPixel(1, 0, kBlue);
    const PictureReference icon = Picture::FromImage(image, PictureType::Icon);
    Draw(icon, {.mask = kRed, .iconGround = kRed});
    EXPECT_EQ(Row(1, 2, 4), (std::vector<QRgb>{kGround, kBlue, kGround, kGround}));
    Draw(icon, {.mask = kGreen, .iconGround = kRed});
    EXPECT_EQ(Row(1, 2, 4), (std::vector<QRgb>{kRed, kBlue, kRed, kRed}));
}

TEST_F(MaskedPictureTest, ABitmapThatIsTransparentLetsTheTargetShow)
{
    QImage image(3, 1, QImage::Format_ARGB32_Premultiplied);
    image.setPixel(0, 0, 0x00000000);
    image.setPixel(1, 0, 0x80800000); // half red
    image.setPixel(2, 0, kBlue);
    Draw(Picture::FromImage(image), {});
    EXPECT_EQ(Row(1, 2, 1)[0], kGround);
    EXPECT_EQ(Row(1, 3, 1)[0], qRgb(0x90, 0x18, 0x20));
    EXPECT_EQ(Row(1, 4, 1)[0], kBlue);
    surface.Clear(kBlackPixel);
    Draw(Picture::FromImage(image), {.colour = kGreen, .isMonochrome = true});
    EXPECT_EQ(Row(1, 2, 3), (std::vector<QRgb>{kBlackPixel, kGreen, kGreen}));
}

TEST_F(MaskedPictureTest, ASizeOfNothingPaintsNothing)
{
    const PictureReference picture = Picture::FromImage(FourPixels());
    DrawMaskedPicture(surface, 2, 1, 0, 2, *picture, {});
    DrawMaskedPicture(surface, 2, 1, 4, 0, *picture, {});
    EXPECT_EQ(Row(1, 0, 12), std::vector<QRgb>(12, kGround));
}

TEST_F(MaskedPictureTest, ASmallerSizeCutsAndALargerAddsNothing)
{
    const PictureReference picture = Picture::FromImage(FourPixels());
    DrawMaskedPicture(surface, 2, 1, 2, 1, *picture, {});
    EXPECT_EQ(Row(1, 2, 3), (std::vector<QRgb>{kRed, kDarkest, kGround}));
    EXPECT_EQ(Row(2, 2, 2), std::vector<QRgb>(2, kGround));
    DrawMaskedPicture(surface, 2, 1, 8, 4, *picture, {});
    EXPECT_EQ(Row(1, 5, 3), (std::vector<QRgb>{kBlue, kGround, kGround}));
    EXPECT_EQ(Row(3, 2, 2), std::vector<QRgb>(2, kGround));
}

TEST_F(MaskedPictureTest, BeyondTheEdgesOfTheSurfaceItIsCut)
{
    const PictureReference picture = Picture::FromImage(FourPixels());
    Draw(picture, {}, -2, -1);
    EXPECT_EQ(Row(0, 0, 3), (std::vector<QRgb>{kDarkest, kRed, kGround}));
    Draw(picture, {}, 10, 5);
    EXPECT_EQ(Row(5, 9, 3), (std::vector<QRgb>{kGround, kRed, kDarkest}));
    Draw(picture, {}, 1000, -1000);
    RetainedSurface none;
    DrawMaskedPicture(none, 0, 0, -1, -1, *picture, {});
}

TEST_F(MaskedPictureTest, AtTwiceTheRatioVectorsGainDetailAndBitmapsRepeat)
{
    Prepare(2.0);
    const QByteArray half = R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 4 2">
        <rect width="2.5" height="2" fill="#0000ff"/></svg>)";
    Draw(Picture::FromSvg(half, QSize(4, 2)), {.mask = kRed});
    EXPECT_EQ(Row(2, 3, 7),
              (std::vector<QRgb>{kGround, kBlue, kBlue, kBlue, kBlue, kBlue, kGround}));
    Draw(Picture::FromImage(FourPixels()), {.mask = kRed});
    EXPECT_EQ(Row(3, 4, 8), (std::vector<QRgb>{kBlue, kBlue, kDarkest, kDarkest, kLightest,
                                               kLightest, kBlue, kBlue}));
}

TEST_F(MaskedPictureTest, AtAnyRatioEachPixelOfThePictureStaysOne)
{
    for (const qreal ratio : {1.25, 1.5, 1.75, 3.0}) {
        for (int at = 0; at < 5; ++at) {
            Prepare(ratio);
            const PictureReference picture = Picture::FromImage(FourPixels());
            Draw(picture, {}, at, 1);
            const QImage expected = picture->ImageAt(ratio).convertToFormat(QImage::Format_RGB32);
            EXPECT_EQ(surface.Part(at, 1, expected.size()), expected) << ratio << " at " << at;
        }
    }
}

} // namespace
} // namespace lantern
