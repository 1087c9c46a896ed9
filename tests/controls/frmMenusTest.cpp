// SPDX-License-Identifier: GPL-3.0-or-later
// What a menu looks like, pixel by pixel.
#include "MenuFixture.h"

namespace lantern {
namespace {

constexpr QRgb kBar = 0xFFFFAB08;
constexpr QRgb kFrame = 0xFFFFAB08;
constexpr QRgb kDim = 0xFF323232;

PictureReference OneColour(QSize size, QRgb colour)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(colour);
    return Picture::FromImage(image);
}

class frmMenusTest : public MenuTest {
protected:
    // The part of the menu as it would be with the captions left out: no pixel of it is text.
    static bool IsAll(const frmMenus& menu, const Box& box, QRgb colour)
    {
        for (int y = box.top; y < box.bottom; ++y) {
            for (int x = box.left; x < box.right; ++x) {
                if (ShownAt(menu, x, y) != colour)
                    return false;
            }
        }
        return true;
    }
    // An item's row, from the left of its bar to the right.
    static QImage Row(const frmMenus& menu, const QImage& image, int item)
    {
        const double ratio = image.devicePixelRatio();
        const int left = TextLeft(menu) - 1;
        const QRectF row(left, 4 + (item - 1) * kItemHeight, menu.width() - left - 5, kItemHeight);
        return image.copy(QRectF(row.topLeft() * ratio, row.size() * ratio).toAlignedRect());
    }
    static QImage Row(const frmMenus& menu, int item)
    {
        return Row(menu, menu.SurfaceImage(), item);
    }
    // What that row shows with a caption in a colour on a ground.
    static QImage CaptionRow(const frmMenus& menu, int item, const char* caption, QRgb colour,
                             QRgb ground)
    {
        RetainedSurface surface;
        const int left = TextLeft(menu);
        const int top = 4 + (item - 1) * kItemHeight;
        surface.Fit(menu.size(), menu.devicePixelRatioF());
        surface.Clear(kBack);
        surface.Fill({left - 1, top, menu.width() - 5, top + kItemHeight}, ground);
        surface.DrawText(QString::fromUtf8(caption), {left, top, 1000, 1000}, TextPlain,
                         menu.font(), colour);
        return Row(menu, surface.Image(), item);
    }
    static int TextLeft(const frmMenus& menu)
    {
        if (menu.State().useIcons && menu.State().useLeftImage)
            return 40;
        return menu.State().useIcons || menu.State().useLeftImage ? 22 : 5;
    }
};

TEST_F(frmMenusTest, ItsSizeFollowsTheWidestCaption)
{
    const auto width = [this](bool icons, bool side) {
        Add("A & B");
        Add("Audio Device");
        menus.SetUseIcons(icons);
        menus.SetUseLeftImage(side);
        int result = 0;
        Look([&](frmMenus& menu) {
            EXPECT_EQ(menu.height(), 2 * kItemHeight + 9);
            result = menu.width();
        });
        return result;
    };
    const int caption = RetainedSurface::MeasureText(QStringLiteral("Audio Device"),
                                                     {0, 0, 1000, 1000}, TextPlain, menus.Font())
                            .Width();
    EXPECT_EQ(width(false, false), caption + 13);
    EXPECT_EQ(width(true, false), caption + 32);
    EXPECT_EQ(width(false, true), caption + 32);
    EXPECT_EQ(width(true, true), caption + 52);
}

TEST_F(frmMenusTest, AHugeCaptionWrapsAroundAndDoesNoHarm)
{
    menus.AddItem(QString(600, QLatin1Char('M')), {});
    Look([](frmMenus& menu) {
        EXPECT_GE(menu.width(), 1);
        EXPECT_LT(menu.width(), 2200);
        menu.grab();
    });
}

TEST_F(frmMenusTest, AFreshMenuIsDrawnToThePixel)
{
    Add("Play");
    Add("-");
    Add("Off & on", false);
    Look([](frmMenus& menu) {
        const int w = menu.width();
        const int h = menu.height();
        EXPECT_TRUE(IsAll(menu, {0, 0, w, 1}, kFrame));
        EXPECT_TRUE(IsAll(menu, {0, h - 1, w, h}, kFrame));
        EXPECT_TRUE(IsAll(menu, {0, 0, 1, h}, kFrame));
        EXPECT_TRUE(IsAll(menu, {w - 1, 0, w, h}, kFrame));
        EXPECT_TRUE(IsAll(menu, {1, 1, w - 1, 4}, kBack));
        EXPECT_TRUE(IsAll(menu, {1, 4, 5, 17}, kBack));
        EXPECT_EQ(Row(menu, 1), CaptionRow(menu, 1, "Play", 0xFFFFFFFF, kBack));
        EXPECT_TRUE(IsAll(menu, {4, 23, w - 4, 24}, kDim)); // 4 + 13 + 6
        EXPECT_TRUE(IsAll(menu, {1, 17, w - 1, 23}, kBack));
        EXPECT_TRUE(IsAll(menu, {1, 24, w - 1, 30}, kBack));
        EXPECT_EQ(ShownAt(menu, 3, 23), kBack);
        EXPECT_EQ(ShownAt(menu, w - 4, 23), kBack);
        EXPECT_EQ(Row(menu, 3), CaptionRow(menu, 3, "Off & on", kDim, kBack));
        EXPECT_TRUE(IsAll(menu, {1, h - 5, w - 1, h - 1}, kBack));
    });
}

TEST_F(frmMenusTest, ASeparatorHasABlackLineBelow)
{
    menus.SetBackColor(DirectColour(9, 9, 9));
    Add("Play");
    Add("-");
    Look([](frmMenus& menu) {
        EXPECT_TRUE(IsAll(menu, {4, 23, menu.width() - 4, 24}, kDim));
        EXPECT_TRUE(IsAll(menu, {4, 24, menu.width() - 4, 25}, 0xFF000000));
        EXPECT_TRUE(IsAll(menu, {4, 25, menu.width() - 4, 30}, 0xFF090909));
    });
}

TEST_F(frmMenusTest, TheBarFollowsThePointerAndLeavesNoTrace)
{
    AddThree();
    Look([](frmMenus& menu) {
        const QImage fresh = menu.SurfaceImage().copy();
        Hover(menu, 2);
        EXPECT_EQ(Row(menu, 1), CaptionRow(menu, 1, "Play", 0xFFFFFFFF, kBack));
        EXPECT_EQ(Row(menu, 2), CaptionRow(menu, 2, "Stop", 0xFF000000, kBar));
        EXPECT_EQ(ShownAt(menu, 3, 20), kBack);
        EXPECT_EQ(ShownAt(menu, menu.width() - 5, 20), kBack);
        EXPECT_EQ(ShownAt(menu, 4, 16), kBack);
        EXPECT_EQ(ShownAt(menu, 4, 30), kBack);
        Hover(menu, 3);
        EXPECT_EQ(Row(menu, 2), CaptionRow(menu, 2, "Stop", 0xFFFFFFFF, kBack));
        Hover(menu, 1);
        Hover(menu, 2);
        ControlHand(menu).Move(15, -3);
        EXPECT_EQ(menu.SurfaceImage(), fresh);
    });
}

TEST_F(frmMenusTest, ADisabledItemIsNeverHotAndLooksTheSameAfterEveryPass)
{
    Add("Play");
    Add("Off", false);
    Look([](frmMenus& menu) {
        const QImage before = Row(menu, 2);
        for (int i = 0; i < 10; ++i)
            Hover(menu, 1 + i % 2);
        EXPECT_EQ(menu.State().hotItem, 2);
        EXPECT_EQ(Row(menu, 2), before);
    });
}

TEST_F(frmMenusTest, ABarInTheMenusColourIsNone)
{
    menus.SetItemHotForeColor(0x0000FF);
    menus.SetItemHotBackColor(0);
    AddThree();
    Look([](frmMenus& menu) {
        const QImage fresh = menu.SurfaceImage().copy();
        Hover(menu, 1);
        EXPECT_EQ(Row(menu, 1), CaptionRow(menu, 1, "Play", 0xFFFF0000, kBack));
        Hover(menu, 2);
        Hover(menu, 3);
        ControlHand(menu).Move(-3, 5);
        EXPECT_EQ(menu.SurfaceImage(), fresh);
    });
}

TEST_F(frmMenusTest, TheFirstHoverRedrawsOnlyTheNewHotItem)
{
    AddThree();
    Look([](frmMenus& menu) {
        // What was not redrawn still shows the old caption.
        auto& items = const_cast<MenuState&>(menu.State()).items;
        items[0].caption = QStringLiteral("No");
        items[2].caption = QStringLiteral("No");
        Hover(menu, 2);
        EXPECT_EQ(Row(menu, 1), CaptionRow(menu, 1, "Play", 0xFFFFFFFF, kBack));
        EXPECT_EQ(Row(menu, 3), CaptionRow(menu, 3, "Exit", 0xFFFFFFFF, kBack));
        Hover(menu, 3);
        EXPECT_EQ(Row(menu, 3), CaptionRow(menu, 3, "No", 0xFF000000, kBar));
    });
}

TEST_F(frmMenusTest, IconsAreDrawnOnceAndStandLeftOfTheBar)
{
    menus.SetUseIcons(true);
    const PictureReference icon = OneColour({13, 13}, 0xFF00FF00);
    Add("With", true, icon);
    Add("Without");
    Add("Off", false, icon);
    Look([](frmMenus& menu) {
        EXPECT_TRUE(IsAll(menu, {4, 4, 17, 17}, 0xFF00FF00));
        EXPECT_TRUE(IsAll(menu, {1, 17, 21, 30}, kBack));
        EXPECT_TRUE(IsAll(menu, {4, 30, 17, 43}, 0xFF00FF00));
        Hover(menu, 1);
        EXPECT_TRUE(IsAll(menu, {4, 4, 17, 17}, 0xFF00FF00));
        EXPECT_EQ(Row(menu, 1), CaptionRow(menu, 1, "With", 0xFF000000, kBar));
        EXPECT_EQ(ShownAt(menu, 20, 10), kBack);
        const_cast<MenuState&>(menu.State()).items[1].picture = menu.State().items[0].picture;
        Hover(menu, 2);
        EXPECT_TRUE(IsAll(menu, {1, 17, 21, 30}, kBack)); // no icon after the opening pass
    });
}

TEST_F(frmMenusTest, AWideIconRemainsUnderTheBar)
{
    menus.SetUseIcons(true);
    Add("With", true, OneColour({40, 13}, 0xFF00FF00));
    Look([](frmMenus& menu) {
        Hover(menu, 1);
        EXPECT_TRUE(IsAll(menu, {4, 4, 21, 17}, 0xFF00FF00));
        EXPECT_TRUE(IsAll(menu, {21, 4, 22, 17}, kBar));
    });
}

TEST_F(frmMenusTest, TheSideBandHoldsThePictureAtItsBottom)
{
    menus.SetUseLeftImage(true);
    menus.SetLeftPicBackColor(DirectColour(0, 0, 255));
    for (int i = 0; i < 6; ++i)
        Add("Item");
    Look(
        [](frmMenus& menu) {
            const int h = menu.height();
            EXPECT_TRUE(IsAll(menu, {2, 3, 17, h - 43}, 0xFF0000FF));
            EXPECT_TRUE(IsAll(menu, {17, 1, 22, h - 43}, kBack));
            EXPECT_TRUE(IsAll(menu, {1, 1, 2, h - 1}, kBack));
            EXPECT_TRUE(IsAll(menu, {2, 1, 17, 3}, kBack));
            EXPECT_TRUE(IsAll(menu, {2, h - 43, 18, h - 3}, 0xFF00FF00));
            EXPECT_TRUE(IsAll(menu, {2, h - 3, 18, h - 1}, kBack));
            Hover(menu, 2);
            EXPECT_EQ(Row(menu, 2), CaptionRow(menu, 2, "Item", 0xFF000000, kBar));
        },
        {100, 100}, OneColour({16, 40}, 0xFF00FF00));
}

TEST_F(frmMenusTest, WithoutASidePictureTheBandStandsAlone)
{
    menus.SetUseLeftImage(true);
    menus.SetLeftPicBackColor(DirectColour(0, 0, 255));
    Add("Item");
    Look([](frmMenus& menu) {
        EXPECT_TRUE(IsAll(menu, {2, 3, 17, menu.height() - 4}, 0xFF0000FF));
        EXPECT_TRUE(IsAll(menu, {2, menu.height() - 4, 17, menu.height() - 1}, kBack));
    });
}

TEST_F(frmMenusTest, ATallerSidePictureIsCutOffAtTheTop)
{
    menus.SetUseLeftImage(true);
    Add("Item");
    Look(
        [](frmMenus& menu) {
            EXPECT_TRUE(IsAll(menu, {2, 1, 18, menu.height() - 3}, 0xFF00FF00));
            EXPECT_EQ(ShownAt(menu, 8, 0), kFrame);
        },
        {100, 100}, OneColour({16, 118}, 0xFF00FF00));
}

TEST_F(frmMenusTest, SystemColoursAreResolvedWhenDrawn)
{
    menus.Load({});
    Add("Play");
    Look([](frmMenus& menu) {
        EXPECT_EQ(ShownAt(menu, 2, 2), ResolveColour(SystemColour::ButtonFace));
        Hover(menu, 1);
        EXPECT_EQ(ShownAt(menu, 4, 4), ResolveColour(SystemColour::Selection));
    });
}

TEST_F(frmMenusTest, ItsOwnFontGivesTheHeightAndTheControlsFontTheText)
{
    menus.SetFont(ProgramFont(QStringLiteral("Arial"), 24));
    Add("Play");
    Look([this](frmMenus& menu) {
        EXPECT_EQ(menu.height(), kItemHeight + 9);
        EXPECT_EQ(menu.font(), menus.Font());
    });
}

} // namespace
} // namespace lantern
