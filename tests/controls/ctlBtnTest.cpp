// SPDX-License-Identifier: GPL-3.0-or-later
#include "ctlBtn.h"

#include "ButtonFixture.h"
#include "ControlHand.h"

#include <cmath>

namespace lantern {
namespace {

class ctlBtnTest : public ButtonTest<ctlBtn> {
protected:
    QRgb At(int x, int y) const { return ShownAt(*button, x, y); }
    // Then single pixels of a bitmap aren't all of one size.
    bool IsRatioFraction() const
    {
        const qreal ratio = button->devicePixelRatioF();
        return ratio != std::floor(ratio);
    }
    int Count(QRgb colour) const
    {
        int count = 0;
        for (int y = 0; y < button->height(); ++y) {
            for (int x = 0; x < button->width(); ++x)
                count += At(x, y) == colour;
        }
        return count;
    }
    // Up the left and along the top, then down the right and back along the bottom.
    void ExpectEdges(QRgb first, QRgb second) const
    {
        EXPECT_EQ(At(0, 0), first);
        EXPECT_EQ(At(0, 22), first);
        EXPECT_EQ(At(58, 0), first);
        EXPECT_EQ(At(59, 0), second);
        EXPECT_EQ(At(59, 23), second);
        EXPECT_EQ(At(0, 23), second); // the second pen overwrites where the first began
        EXPECT_EQ(At(30, 23), second);
        EXPECT_NE(At(1, 1), second);
    }
};

TEST_F(ctlBtnTest, ARaisedButtonHasEdgesThatTurnRoundWhenPressed)
{
    ExpectEdges(kWhitePixel, kShadow);
    EXPECT_EQ(Count(kWhitePixel), 23 + 58);
    EXPECT_EQ(Count(kShadow), 23 + 60);
    MoveTo(kInside);
    ExpectEdges(kWhitePixel, kShadow);
    Press(kInside);
    ExpectEdges(kShadow, kWhitePixel);
    Release(kInside);
    button->SetEnabled(false);
    ExpectEdges(kWhitePixel, kShadow);
}

TEST_F(ctlBtnTest, AFlatButtonHasEdgesOnlyWhileHotOrDown)
{
    button->SetButtonType(2);
    EXPECT_EQ(Count(kFace), 60 * 24);
    MoveTo(kInside);
    ExpectEdges(kWhitePixel, kShadow);
    Press(kInside);
    ExpectEdges(kShadow, kWhitePixel);
    Release(kInside);
    button->SetEnabled(false);
    EXPECT_EQ(Count(kFace), 60 * 24);
}

TEST_F(ctlBtnTest, APictureStandsInTheMiddleOfABlankCaption)
{
    button->SetCaption(QStringLiteral("   "));
    button->SetPicture(PlainPicture(kBlue));
    EXPECT_EQ(At(26, 9), kBlue);
    EXPECT_EQ(At(33, 14), kBlue);
    EXPECT_EQ(Count(kBlue), 8 * 6);
}

TEST_F(ctlBtnTest, APressedPictureMovesByAPixelAndAHotOneDoesNot)
{
    button->SetPicture(PlainPicture(kBlue));
    MoveTo(kInside);
    EXPECT_EQ(At(26, 9), kBlue);
    Press(kInside);
    EXPECT_NE(At(26, 9), kBlue);
    EXPECT_EQ(At(27, 10), kBlue);
    EXPECT_EQ(At(34, 15), kBlue);
    EXPECT_EQ(Count(kBlue), 8 * 6);
}

TEST_F(ctlBtnTest, APressedCaptionMovesByAPixelAndAHotOneDoesNot)
{
    button->SetButtonType(1);
    button->SetCaption(QString(QChar(0x2588)));
    const auto firstBlack = [this] {
        for (int y = 0; y < 24; ++y) {
            for (int x = 0; x < 60; ++x) {
                if (At(x, y) == kBlackPixel)
                    return QPoint(x, y);
            }
        }
        return QPoint(-1, -1);
    };
    const QPoint normal = firstBlack();
    ASSERT_NE(normal, QPoint(-1, -1));
    MoveTo(kInside);
    EXPECT_EQ(firstBlack(), normal);
    Press(kInside);
    EXPECT_EQ(firstBlack(), normal + QPoint(1, 1));
}

TEST_F(ctlBtnTest, ADisabledPictureIsEngravedAndItsLightPartsDropOut)
{
    if (IsRatioFraction())
        GTEST_SKIP();
    button->SetButtonType(1);
    QImage image(8, 6, QImage::Format_RGB32);
    image.fill(0xFFE0E0E0);
    for (int x = 0; x < 4; ++x)
        image.setPixel(x, 2, kBlue);
    button->SetPicture(Picture::FromImage(image));
    button->SetEnabled(false);
    EXPECT_EQ(At(26, 11), kShadow);
    EXPECT_EQ(At(29, 11), kShadow);
    EXPECT_EQ(At(27, 12), kWhitePixel);
    EXPECT_EQ(At(30, 12), kWhitePixel);
    EXPECT_EQ(Count(kShadow), 4);
    EXPECT_EQ(Count(kWhitePixel), 4);
    EXPECT_EQ(Count(kFace), 60 * 24 - 8);
}

TEST_F(ctlBtnTest, TheMaskColourIsLeftOutUnlessItIsNotUsed)
{
    button->SetPicture(PlainPicture(kRed));
    EXPECT_EQ(Count(kRed), 0); // the first mask is red
    button->SetUseMaskColor(false);
    EXPECT_EQ(Count(kRed), 8 * 6);
    button->SetUseMaskColor(true);
    EXPECT_EQ(Count(kRed), 0);
    button->SetMaskColor(DirectColour(0, 255, 0));
    EXPECT_EQ(Count(kRed), 8 * 6);
}

TEST_F(ctlBtnTest, TheMaskMayBeASystemColour)
{
    button->SetPicture(PlainPicture(kShadow));
    const int before = Count(kShadow);
    button->SetMaskColor(SystemReference(SystemColour::ButtonShadow));
    EXPECT_EQ(Count(kShadow), before - 8 * 6);
}

TEST_F(ctlBtnTest, AnIconNeedsTheMaskForItsTransparentParts)
{
    if (IsRatioFraction())
        GTEST_SKIP();
    QImage image(8, 6, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    image.setPixel(3, 3, kBlue);
    button->SetPicture(Picture::FromImage(image, PictureType::Icon));
    EXPECT_EQ(Count(kBlue), 1);
    EXPECT_EQ(Count(kRed), 0);
    button->SetUseMaskColor(false);
    EXPECT_EQ(Count(kRed), 8 * 6 - 1);
    // Laid on the number of a system colour, it doesn't match the colour itself.
    button->SetUseMaskColor(true);
    button->SetMaskColor(SystemReference(SystemColour::ButtonFace));
    EXPECT_EQ(Count(qRgb(15, 0, 0)), 8 * 6 - 1);
}

TEST_F(ctlBtnTest, ThePictureGoesWhereItsPositionIs)
{
    button->SetCaption(QStringLiteral("x"));
    button->SetPicture(PlainPicture(kBlue));
    const std::vector<QPoint> corners = {{2, 2},  {26, 2}, {50, 2},  {2, 9},  {-1, -1},
                                         {50, 9}, {2, 16}, {26, 16}, {50, 16}};
    for (std::int32_t position = 0; position < 9; ++position) {
        button->SetPicturePosition(position);
        const QPoint corner = corners[static_cast<std::size_t>(position)];
        if (corner.x() < 0)
            continue; // on the text, which the layout's own tests look at
        EXPECT_EQ(At(corner.x(), corner.y()), kBlue) << position;
        EXPECT_EQ(At(corner.x() + 7, corner.y() + 5), kBlue) << position;
        EXPECT_EQ(Count(kBlue), 48) << position;
    }
    button->SetPicturePosition(9); // no position: all stays
    EXPECT_EQ(At(50, 16), kBlue);
    EXPECT_EQ(button->PicturePosition(), 9);
}

TEST_F(ctlBtnTest, ItsOwnSetsAreReported)
{
    Logged();
    button->SetButtonType(1);
    button->SetMaskColor(0);
    button->SetUseMaskColor(false);
    button->SetPicturePosition(3);
    EXPECT_EQ(Logged(), (Log{"Changed ButtonType", "Changed MaskColor", "Changed UseMaskColor",
                             "Changed PicPosition"}));
}

TEST_F(ctlBtnTest, ThePositionIsReportedBeforeItIsDrawn)
{
    button->SetPicture(PlainPicture(kBlue));
    QRgb seen = 0;
    button->PropertyChanged = [&](const QString&) { seen = At(2, 2); };
    button->SetPicturePosition(0);
    EXPECT_NE(seen, kBlue);
    EXPECT_EQ(At(2, 2), kBlue);
}

TEST_F(ctlBtnTest, ItsTypeIsSetAsIfItWereResized)
{
    Press(kInside);
    ASSERT_EQ(button->look, ButtonLook::Down);
    MoveTo(kInsideToo);
    button->SetButtonType(0);
    EXPECT_EQ(button->look, ButtonLook::Normal);
}

TEST_F(ctlBtnTest, WithoutPictureTheMaskIsNotDrawnAnew)
{
    button->SetUseMaskColor(false);
    EXPECT_EQ(button->drawn, 0);
}

TEST_F(ctlBtnTest, AFirstButtonHasItsDefaultsAndSoHasAnEmptyBag)
{
    ctlBtn first;
    const auto expectDefaults = [&first] {
        EXPECT_EQ(first.ButtonType(), 0);
        EXPECT_EQ(first.MaskColor(), 255U);
        EXPECT_TRUE(first.UseMaskColor());
        EXPECT_EQ(first.PicturePosition(), 4);
    };
    expectDefaults();
    first.SetButtonType(1);
    first.SetMaskColor(0);
    first.SetUseMaskColor(false);
    first.SetPicturePosition(8);
    first.Load(PropertyBag());
    expectDefaults();
}

TEST_F(ctlBtnTest, TheBagHoldsEachKeyInOrder)
{
    PropertyBag bag;
    button->SetPicturePosition(7);
    button->SetButtonType(-3);
    button->SetMaskColor(DirectColour(1, 2, 3));
    button->SetUseMaskColor(false);
    button->Save(bag);
    EXPECT_EQ(bag.KeysInOrder().join(QLatin1Char(' ')),
              QStringLiteral("ButtonType Caption Enabled Font MaskColor MousePointer MouseIcon "
                             "Picture UseMaskColor PicPosition IsCheckbox Value"));
    ctlBtn loaded;
    loaded.Load(bag);
    EXPECT_EQ(loaded.PicturePosition(), 7);
    EXPECT_EQ(loaded.ButtonType(), -3);
    EXPECT_EQ(loaded.MaskColor(), DirectColour(1, 2, 3));
    EXPECT_FALSE(loaded.UseMaskColor());
}

} // namespace
} // namespace lantern
