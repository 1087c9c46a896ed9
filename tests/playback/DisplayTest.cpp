// SPDX-License-Identifier: GPL-3.0-or-later
#include "Display.h"
#include "PacketInterpreter.h"
#include "Recorders.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lantern {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class DisplayTest : public ::testing::Test {
protected:
    DisplayTest() : picture(buffers), display(picture, host, clipboard)
    {
        picture.SetupGraphics(true, &surface);
    }
    ~DisplayTest() override { picture.SetupGraphics(false); }

    void SetColour(int entry, std::uint8_t red, std::uint8_t green, std::uint8_t blue)
    {
        const auto first = static_cast<std::size_t>(entry) * 3;
        picture.ColourTable[first] = red;
        picture.ColourTable[first + 1] = green;
        picture.ColourTable[first + 2] = blue;
        picture.SendColours();
    }

    void Paint()
    {
        display.PaintDisplay();
        display.ShowPicture();
    }

    RecorderSurface surface;
    RecorderHost host;
    RecorderClipboard clipboard;
    VirtualBuffers buffers;
    PictureMemory picture;
    Display display;
};

TEST_F(DisplayTest, ABlackBorderHasAWhiteTextOnBlack)
{
    host.TextForeColor = 0;
    display.PaintDisplay();
    EXPECT_EQ(host.BackColor, 0u);
    EXPECT_EQ(host.TextBackColor, 0u);
    EXPECT_EQ(host.TextForeColor, 0xFFFFFFu);
}

TEST_F(DisplayTest, TheBorderColourGoesToAllSurroundingsInOrderAndTheTextGetsItsInverse)
{
    SetColour(5, 0x11, 0x22, 0x33);
    picture.BorderColour = 5;
    display.PaintDisplay();
    EXPECT_THAT(host.Log, ElementsAre("window", "pic", "skinner", "text back", "text fore"));
    EXPECT_EQ(host.BackColor, 0x332211u);
    EXPECT_EQ(host.PicBackColor, 0x332211u);
    EXPECT_EQ(host.SkinnerBackColor, 0x332211u);
    EXPECT_EQ(host.TextBackColor, 0x332211u);
    EXPECT_EQ(host.TextForeColor, 0xCCDDEEu);
}

TEST_F(DisplayTest, ASteadyBorderSetsNoColour)
{
    display.PaintDisplay();
    host.Log.clear();
    display.PaintDisplay();
    EXPECT_THAT(host.Log, IsEmpty());
}

TEST_F(DisplayTest, AChangedColourTableRecoloursTheBorderToo)
{
    display.PaintDisplay();
    SetColour(0, 0xFF, 0, 0);
    display.PaintDisplay();
    EXPECT_EQ(host.BackColor, 0x0000FFu);
    EXPECT_EQ(host.TextForeColor, 0xFFFF00u);
}

TEST_F(DisplayTest, APaintShowsTheVisiblePartAndClearsTheDirtyMark)
{
    SetColour(3, 0xFF, 0xAA, 0x11);
    buffers.FGsetcolor(3);
    buffers.FGrect(6, 6, 12, 12);
    picture.PictureDirty = true;
    Paint();
    EXPECT_FALSE(picture.PictureDirty);
    EXPECT_EQ(surface.At(0, 0), 0xFFFFAA11u);
    EXPECT_EQ(surface.At(1, 0), 0xFF000000u);
    EXPECT_EQ(surface.At(0, 1), 0xFF000000u);
}

TEST_F(DisplayTest, TheViewMovesOverThePictureAndBeyondItsEdge)
{
    SetColour(0, 0x11, 0x11, 0x11);
    SetColour(3, 0xFF, 0xAA, 0x11);
    buffers.FGsetcolor(3);
    buffers.FGrect(0, 299, 0, 215);
    picture.ViewLeft = 13;
    picture.ViewTop = 27;
    Paint();
    EXPECT_EQ(surface.At(286, 188), 0xFFFFAA11u);
    EXPECT_EQ(surface.At(287, 0), 0xFF111111u);
    EXPECT_EQ(surface.At(0, 189), 0xFF111111u);
}

TEST_F(DisplayTest, AnUnchangedPictureIsNotDrawnAgain)
{
    Paint();
    const int changes = surface.Changes;
    Paint();
    EXPECT_EQ(surface.Changes, changes);
}

TEST_F(DisplayTest, APaintIsDoneForThePacketsAtOnceAndSeenWithTheNextPainting)
{
    SetColour(0, 0x11, 0x22, 0x33);
    picture.PictureDirty = true;
    display.PaintDisplay();
    EXPECT_FALSE(picture.PictureDirty);
    EXPECT_EQ(host.BackColor, 0x332211u);
    EXPECT_EQ(host.PaintsAsked, 1);
    EXPECT_EQ(surface.Scales, 0);
    display.ShowPicture();
    EXPECT_EQ(surface.At(0, 0), 0xFF112233u);
}

TEST_F(DisplayTest, OfSeveralPaintsInARowOnlyTheLastIsScaled)
{
    for (const int red : {0x11, 0x22, 0x33}) {
        SetColour(0, static_cast<std::uint8_t>(red), 0, 0);
        display.PaintDisplay();
    }
    display.ShowPicture();
    EXPECT_EQ(surface.Scales, 1);
    EXPECT_EQ(surface.At(0, 0), 0xFF330000u);
}

TEST_F(DisplayTest, WithoutAPaintNothingIsScaled)
{
    display.ShowPicture();
    EXPECT_EQ(surface.Scales, 0);
    Paint();
    display.ShowPicture();
    EXPECT_EQ(surface.Scales, 1);
}

TEST_F(DisplayTest, APicWithoutAreaIsPaintedWithoutHarm)
{
    Paint();
    const std::vector<std::uint32_t> before = surface.Pixels;
    const int changes = surface.Changes;
    const TwipSize whole = host.Pic;
    SetColour(0, 0xFF, 0, 0);
    for (const TwipSize size : {TwipSize{0, 0}, TwipSize{14, 14}}) { // less than a pixel
        host.Pic = size;
        picture.PictureDirty = true;
        Paint();
        EXPECT_FALSE(picture.PictureDirty);
        EXPECT_EQ(surface.Changes, changes);
        EXPECT_EQ(surface.Pixels, before);
    }
    host.Pic = whole;
    Paint();
    EXPECT_EQ(surface.At(0, 0), 0xFFFF0000u);
    EXPECT_EQ(surface.At(287, 191), 0xFFFF0000u);
}

TEST_F(DisplayTest, AStepSizesTheWindowCentredAndShowsItsChrome)
{
    host.Maximised = true;
    display.SetZoom(2, 1.0F);
    EXPECT_THAT(host.Log,
                ElementsAre("lock", "normal", "margins", "move", "toolbar", "skin", "unlock"));
    const TwipSize size = {576 * 15 + 750, 720 + 384 * 15 + 750 + 75};
    EXPECT_EQ(host.Window, CentredOn({1280 * 15, 800 * 15}, size));
    EXPECT_EQ(display.ZoomStep, 2);
}

TEST_F(DisplayTest, AStepOutOfRangeIsStepTwo)
{
    for (const int zoom : {6, -1}) {
        display.SetZoom(zoom, 1.0F);
        EXPECT_EQ(display.ZoomStep, 2);
        EXPECT_EQ(host.Window.width, 576 * 15 + 750);
    }
}

TEST_F(DisplayTest, AFactorGivesTheSizesInBetween)
{
    display.SetZoom(3, 1.2F);
    // 1.2 in single precision is a little more, which the rounding takes away.
    EXPECT_EQ(host.Window.width, 15552 + 750);
    EXPECT_EQ(display.ZoomStep, 3);
}

TEST_F(DisplayTest, StepZeroTogglesFullScreen)
{
    display.SetZoom(0, 1.0F);
    EXPECT_THAT(host.Log, ElementsAre("lock", "maximise", "no toolbar", "no skin", "unlock"));
    EXPECT_EQ(display.ZoomStep, 0);
    host.Log.clear();
    host.Pic = {864 * 15, 576 * 15};
    display.SetZoom(0, 1.0F);
    EXPECT_THAT(host.Log, ElementsAre("lock", "normal", "toolbar", "skin", "unlock"));
    EXPECT_EQ(display.ZoomStep, 3);
}

TEST_F(DisplayTest, ZoomingBeginsFromThePresentSizeNotFromTheLastStep)
{
    display.ZoomStep = 5;
    host.Pic = {600 * 15, 400 * 15};
    display.ZoomIn();
    EXPECT_EQ(display.ZoomStep, 3);
    host.Pic = {600 * 15, 400 * 15};
    display.ZoomOut();
    EXPECT_EQ(display.ZoomStep, 1);
}

TEST_F(DisplayTest, TheRingOfZoomsPassesThroughFullScreen)
{
    host.Pic = {1440 * 15, 960 * 15};
    display.ZoomIn();
    EXPECT_TRUE(host.Maximised);
    display.ZoomIn();
    EXPECT_FALSE(host.Maximised);
    EXPECT_EQ(display.ZoomStep, 1);

    host.Pic = {288 * 15, 192 * 15};
    display.ZoomOut();
    EXPECT_TRUE(host.Maximised);
    display.ZoomOut();
    EXPECT_FALSE(host.Maximised);
    EXPECT_EQ(display.ZoomStep, 5);
}

TEST_F(DisplayTest, InFullScreenTheNearestZoomIsZero)
{
    host.Maximised = true;
    EXPECT_EQ(display.NearestZoom(), 0);
}

TEST_F(DisplayTest, TheNearestZoomCountsWholePixels)
{
    host.Pic = {288 * 15 + 14, 192 * 15 + 14};
    EXPECT_EQ(display.NearestZoom(), 1);
}

TEST_F(DisplayTest, TheCopyIsTheVisiblePartInItsOwnSize)
{
    SetColour(7, 0x10, 0x20, 0x30);
    buffers.FGsetcolor(7);
    buffers.FGrect(6, 6, 12, 12);
    buffers.FGrect(293, 293, 203, 203);
    display.CopyToClipboard();
    ASSERT_EQ(clipboard.Width, 288);
    ASSERT_EQ(clipboard.Height, 192);
    EXPECT_EQ(clipboard.Pixels.front(), 0xFF102030u);
    EXPECT_EQ(clipboard.Pixels[1], 0xFF000000u);
    EXPECT_EQ(clipboard.Pixels.back(), 0xFF102030u);
    EXPECT_EQ(host.Caption, QStringLiteral(" Screen Copied to Clipboard "));
    EXPECT_TRUE(host.TextVisible);
}

TEST_F(DisplayTest, AMessageStandsForThreeSeconds)
{
    host.Seconds = 10;
    display.ShowStatus(QStringLiteral("Volume: 80%"));
    EXPECT_EQ(host.Caption, QStringLiteral(" Volume: 80% "));
    host.Seconds = 13;
    display.HideExpiredStatus();
    EXPECT_TRUE(host.TextVisible);
    host.Seconds = 13.01;
    display.HideExpiredStatus();
    EXPECT_FALSE(host.TextVisible);
    EXPECT_EQ(display.MessageTime, 0);
}

TEST_F(DisplayTest, ASecondMessageRenewsTheTime)
{
    host.Seconds = 10;
    display.ShowStatus(QStringLiteral("one"));
    host.Seconds = 12;
    display.ShowStatus(QStringLiteral("two"));
    host.Seconds = 14.9;
    display.HideExpiredStatus();
    EXPECT_TRUE(host.TextVisible);
    host.Seconds = 15.1;
    display.HideExpiredStatus();
    EXPECT_FALSE(host.TextVisible);
}

TEST_F(DisplayTest, WithoutAMessageNothingIsHidden)
{
    host.TextVisible = true;
    host.Seconds = 100;
    display.HideExpiredStatus();
    EXPECT_TRUE(host.TextVisible);
}

TEST_F(DisplayTest, AnEmptyMessageIsShownLikeAnyOther)
{
    display.ShowStatus(QString());
    EXPECT_EQ(host.Caption, QStringLiteral("  "));
    EXPECT_TRUE(host.TextVisible);
}

} // namespace
} // namespace lantern
