// SPDX-License-Identifier: GPL-3.0-or-later
#include "Display.h"
#include "PacketInterpreter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace lantern {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// A window that stands in memory and writes down what is done to it.
class RecorderHost : public DisplayHost {
public:
    std::vector<std::string> Log;
    ColourValue BackColor = 0x0040C0;
    ColourValue TextBackColor = 0;
    ColourValue TextForeColor = 0xFFFFFF;
    ColourValue PicBackColor = 0;
    ColourValue SkinnerBackColor = 0;
    QString Caption;
    bool TextVisible = false;
    TwipSize Pic = {288 * 15, 192 * 15};
    TwipSize PicInFullScreen = {1200 * 15, 800 * 15};
    bool Maximised = false;
    TwipRect Window;
    double Seconds = 1;
    std::int32_t MarginX = 0;

    ColourValue WindowBackColor() override { return BackColor; }
    void SetWindowBackColor(ColourValue colour) override { Set(BackColor, colour, "window"); }
    void SetPicBackColor(ColourValue colour) override { Set(PicBackColor, colour, "pic"); }
    void SetSkinnerBackColor(ColourValue colour) override
    {
        Set(SkinnerBackColor, colour, "skinner");
    }
    void SetSystemTextBackColor(ColourValue colour) override
    {
        Set(TextBackColor, colour, "text back");
    }
    ColourValue SystemTextForeColor() override { return TextForeColor; }
    void SetSystemTextForeColor(ColourValue colour) override
    {
        Set(TextForeColor, colour, "text fore");
    }
    void SetSystemTextCaption(const QString& caption) override { Caption = caption; }
    void ShowSystemText(bool visible) override { TextVisible = visible; }
    TwipSize PicSize() override { return Maximised ? PicInFullScreen : Pic; }
    WindowFrame Frame() override { return {15, 15, MarginX, 720}; }
    TwipSize DesktopSize() override { return {1280 * 15, 800 * 15}; }
    bool IsMaximised() override { return Maximised; }
    void SetMaximised(bool maximised) override
    {
        Log.emplace_back(maximised ? "maximise" : "normal");
        Maximised = maximised;
    }
    void CalcMargins() override
    {
        Log.emplace_back("margins");
        MarginX = Maximised ? 300 : 375;
    }
    void MoveWindow(const TwipRect& rect) override
    {
        Log.emplace_back("move");
        Window = rect;
    }
    void LockWindowUpdate(bool locked) override { Log.emplace_back(locked ? "lock" : "unlock"); }
    void ShowToolbar(bool visible) override
    {
        Log.emplace_back(visible ? "toolbar" : "no toolbar");
    }
    void ShowSkinner(bool visible) override { Log.emplace_back(visible ? "skin" : "no skin"); }
    double SystemTimer() override { return Seconds; }

private:
    void Set(ColourValue& field, ColourValue colour, const char* name)
    {
        field = colour;
        Log.emplace_back(name);
    }
};

class RecorderClipboard : public ClipSink {
public:
    int Width = 0;
    int Height = 0;
    std::vector<std::uint32_t> Pixels;

    void SetImage(const ClipImage& image) override
    {
        Width = image.width;
        Height = image.height;
        Pixels.assign(image.pixels.begin(), image.pixels.end());
    }
};

// A surface in memory, one device pixel a unit.
class RecorderSurface : public ScaleSurface {
public:
    int Width = 288;
    int Height = 192;
    std::vector<std::uint32_t> Pixels = std::vector<std::uint32_t>(288 * 192);
    int Changes = 0;

    SurfaceImage Image() override { return {Pixels.data(), Width, Height, Width, 1.0, 1}; }
    void Changed(const DeviceRect&) override { ++Changes; }
    std::uint32_t At(int x, int y) const { return Pixels[static_cast<std::size_t>(y * 288 + x)]; }
};

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
    display.PaintDisplay();
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
    display.PaintDisplay();
    EXPECT_EQ(surface.At(286, 188), 0xFFFFAA11u);
    EXPECT_EQ(surface.At(287, 0), 0xFF111111u);
    EXPECT_EQ(surface.At(0, 189), 0xFF111111u);
}

TEST_F(DisplayTest, AnUnchangedPictureIsNotDrawnAgain)
{
    display.PaintDisplay();
    const int changes = surface.Changes;
    display.PaintDisplay();
    EXPECT_EQ(surface.Changes, changes);
}

TEST_F(DisplayTest, APicWithoutAreaIsPaintedWithoutHarm)
{
    display.PaintDisplay();
    const std::vector<std::uint32_t> before = surface.Pixels;
    const int changes = surface.Changes;
    const TwipSize whole = host.Pic;
    SetColour(0, 0xFF, 0, 0);
    for (const TwipSize size : {TwipSize{0, 0}, TwipSize{14, 14}}) { // less than a pixel
        host.Pic = size;
        picture.PictureDirty = true;
        display.PaintDisplay();
        EXPECT_FALSE(picture.PictureDirty);
        EXPECT_EQ(surface.Changes, changes);
        EXPECT_EQ(surface.Pixels, before);
    }
    host.Pic = whole;
    display.PaintDisplay();
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
