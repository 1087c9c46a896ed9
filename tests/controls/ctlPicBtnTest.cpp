// SPDX-License-Identifier: GPL-3.0-or-later
#include "ctlPicBtn.h"

#include "ButtonFixture.h"
#include "ControlHand.h"

namespace lantern {
namespace {

class ctlPicBtnTest : public ButtonTest<ctlPicBtn> {
protected:
    ctlPicBtnTest()
    {
        button->SetBackColor(DirectColour(255, 255, 255));
        button->SetForeColor(DirectColour(0, 0, 0));
        button->SetOverColor(DirectColour(255, 0, 0));
    }

    QRgb At(int x, int y) const { return ShownAt(*button, x, y); }
    bool Shows(QRgb colour, const Box& box) const
    {
        for (int y = box.top; y < box.bottom; ++y) {
            for (int x = box.left; x < box.right; ++x) {
                if (At(x, y) == colour)
                    return true;
            }
        }
        return false;
    }
    void SetPictures()
    {
        button->SetPicture(PlainPicture(kBlue));
        button->SetPictureOver(PlainPicture(kGreen, {4, 4}));
        button->SetPictureDown(PlainPicture(kYellow));
        button->SetPictureDisabled(PlainPicture(kBlackPixel));
    }
    void PressInside()
    {
        MoveTo(kInside);
        Press(kInside);
        MoveTo(kInsideToo);
    }
};

// Full boxes, so that a caption's strokes are whole pixels at any ratio.
const QString kBlocks = QString(4, QChar(0x2588));

TEST_F(ctlPicBtnTest, EachStateHasItsPictureAtTheTopLeftCorner)
{
    SetPictures();
    EXPECT_EQ(At(0, 0), kBlue);
    EXPECT_EQ(At(7, 5), kBlue);
    EXPECT_EQ(At(8, 5), kWhitePixel);
    EXPECT_EQ(At(7, 6), kWhitePixel);
    MoveTo(kInside);
    EXPECT_EQ(At(3, 3), kGreen);
    EXPECT_EQ(At(4, 3), kWhitePixel); // unscaled, of its own size
    Press(kInside);
    EXPECT_EQ(At(0, 0), kYellow);
    Release(kInside);
    button->SetEnabled(false);
    EXPECT_EQ(At(0, 0), kBlackPixel);
}

TEST_F(ctlPicBtnTest, WithoutPictureTheOthersArentShownEither)
{
    SetPictures();
    button->SetPicture(nullptr);
    EXPECT_FALSE(Shows(kBlue, {0, 0, 60, 24}));
    PressInside();
    EXPECT_EQ(button->look, ButtonLook::Down);
    EXPECT_FALSE(Shows(kYellow, {0, 0, 60, 24}));
    button->SetEnabled(false);
    EXPECT_FALSE(Shows(kBlackPixel, {0, 0, 60, 24}));
}

TEST_F(ctlPicBtnTest, AStateWithoutItsOwnPictureShowsTheNormalOne)
{
    button->SetPicture(PlainPicture(kBlue));
    MoveTo(kInside);
    EXPECT_EQ(At(0, 0), kBlue);
    PressInside();
    EXPECT_EQ(At(0, 0), kBlue);
    button->SetEnabled(false);
    EXPECT_EQ(At(0, 0), kBlue);
}

TEST_F(ctlPicBtnTest, OnHoverTheCaptionTakesTheOverColour)
{
    button->SetPicture(PlainPicture(kBlue));
    button->SetCaption(kBlocks);
    EXPECT_TRUE(Shows(kBlackPixel, {8, 0, 60, 24}));
    MoveTo(kInside);
    EXPECT_EQ(At(0, 0), kBlue);
    EXPECT_TRUE(Shows(kRed, {8, 0, 60, 24}));
    EXPECT_FALSE(Shows(kBlackPixel, {8, 0, 60, 24}));
    PressInside();
    EXPECT_TRUE(Shows(kBlackPixel, {8, 0, 60, 24}));
}

TEST_F(ctlPicBtnTest, ADisabledCaptionIsEngraved)
{
    button->SetCaption(kBlocks);
    button->SetBackColor(DirectColour(0, 0, 255));
    button->SetEnabled(false);
    EXPECT_TRUE(Shows(kShadow, {0, 0, 60, 24}));
    EXPECT_FALSE(Shows(kBlackPixel, {0, 0, 60, 24}));
    int lightest = 0;
    for (int y = 0; y < 24; ++y) {
        for (int x = 0; x < 60; ++x)
            lightest = std::max(lightest, qRed(At(x, y)));
    }
    EXPECT_GT(lightest, qRed(kShadow)); // the highlight, at the lower right of the strokes
}

TEST_F(ctlPicBtnTest, TheCaptionOfACheckBoxStandsBesideThePicture)
{
    button->SetPicture(PlainPicture(kBlue, {20, 24}));
    button->SetCaption(QString(QChar(0x2588)));
    EXPECT_TRUE(Shows(kBlackPixel, {20, 0, 40, 24})); // in the middle of the button
    button->SetIsCheckBox(true);
    button->SetCaption(button->Caption()); // lays it out anew
    EXPECT_TRUE(Shows(kBlackPixel, {23, 0, 33, 24}));
    EXPECT_FALSE(Shows(kBlackPixel, {36, 0, 60, 24}));
}

TEST_F(ctlPicBtnTest, ACheckedBoxLooksDownButDisabledWins)
{
    SetPictures();
    button->SetIsCheckBox(true);
    button->SetValue(true);
    EXPECT_EQ(At(0, 0), kYellow);
    button->SetEnabled(false);
    EXPECT_EQ(At(0, 0), kBlackPixel);
}

TEST_F(ctlPicBtnTest, ATransparentPictureShowsTheBackColour)
{
    button->SetPicture(PlainPicture(0x00000000));
    EXPECT_EQ(At(0, 0), kWhitePixel);
}

TEST_F(ctlPicBtnTest, ItsOwnSetsAreReported)
{
    Logged();
    SetPictures();
    button->SetBackColor(0);
    button->SetForeColor(0);
    button->SetOverColor(0);
    EXPECT_EQ(Logged(), (Log{"Changed Picture", "Changed PictureOver", "Changed PictureDown",
                             "Changed PictureDisabled", "Changed BackColor", "Changed ForeColor",
                             "Changed OverColor"}));
}

TEST_F(ctlPicBtnTest, ColoursOfTheHostAreTheFirst)
{
    Ambient ambient = TestAmbient();
    ambient.backColor = DirectColour(1, 2, 3);
    ambient.foreColor = SystemReference(SystemColour::MenuText);
    ctlPicBtn first(nullptr, ambient);
    EXPECT_EQ(first.BackColor(), ambient.backColor);
    EXPECT_EQ(first.ForeColor(), ambient.foreColor);
    EXPECT_EQ(first.OverColor(), ambient.foreColor);
    first.SetBackColor(0);
    first.Load(PropertyBag());
    EXPECT_EQ(first.BackColor(), ambient.backColor);
    EXPECT_EQ(first.OverColor(), ambient.foreColor);
}

TEST_F(ctlPicBtnTest, TheBagHoldsEachKeyInOrder)
{
    PropertyBag bag;
    button->Save(bag);
    EXPECT_EQ(bag.KeysInOrder().join(QLatin1Char(' ')),
              QStringLiteral("Caption Enabled Font BackColor ForeColor OverColor MousePointer "
                             "MouseIcon Picture PictureDown PictureOver PictureDisabled "
                             "IsCheckbox Value"));
}

TEST_F(ctlPicBtnTest, WhatWasSavedLooksTheSame)
{
    SetPictures();
    button->SetCaption(QStringLiteral("Sing"));
    PropertyBag bag;
    button->Save(bag);
    ctlPicBtn loaded(&window, TestAmbient());
    loaded.Load(bag);
    loaded.setGeometry(button->geometry());
    loaded.show();
    EXPECT_EQ(loaded.SurfaceImage(), button->SurfaceImage());
    EXPECT_EQ(loaded.PictureDown(), button->PictureDown());
    EXPECT_EQ(loaded.PictureOver(), button->PictureOver());
    EXPECT_EQ(loaded.PictureDisabled(), button->PictureDisabled());
}

} // namespace
} // namespace lantern
