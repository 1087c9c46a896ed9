// SPDX-License-Identifier: GPL-3.0-or-later
#include "ctlMenus.h"

#include "ControlHand.h"
#include "ProgramFonts.h"
#include "frmMenus.h"

#include <QAccessible>
#include <QCursor>
#include <QScreen>
#include <QTimer>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace lantern {
namespace {

constexpr int kItemHeight = 13;
constexpr QRgb kBack = 0xFF000000;
constexpr QRgb kBar = 0xFFFFAB08;
constexpr QRgb kFrame = 0xFFFFAB08;
constexpr QRgb kDim = 0xFF323232;

PictureReference OneColour(QSize size, QRgb colour)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(colour);
    return Picture::FromImage(image);
}

// The design values of the player's own menu.
PropertyBag PlayersMenu()
{
    PropertyBag bag;
    bag.Write(QStringLiteral("Font"), ProgramFont(QStringLiteral("Arial"), 11));
    bag.Write(QStringLiteral("ItemForeColor"), ColourValue{0xFFFFFF});
    bag.Write(QStringLiteral("ItemHotForeColor"), ColourValue{0});
    bag.Write(QStringLiteral("BackColor"), ColourValue{0});
    bag.Write(QStringLiteral("ItemHotBackColor"), ColourValue{0x08ABFF});
    bag.Write(QStringLiteral("LeftPicBackColor"), ColourValue{0});
    return bag;
}

class ctlMenusTest : public ::testing::Test {
protected:
    ctlMenusTest()
    {
        menus.Load(PlayersMenu());
        menus.ItemClicked = [this](std::int16_t& index, const QString& caption,
                                   const QString& key) {
            clicks.push_back(std::to_string(index) + " " + caption.toStdString() + " " +
                             key.toStdString());
        };
    }

    void Add(const char* caption, bool enabled = true, const PictureReference& picture = {})
    {
        menus.AddItem(QString::fromUtf8(caption), QString::fromUtf8(caption).toUpper(), enabled,
                      picture);
    }
    void AddThree()
    {
        Add("Play");
        Add("Stop");
        Add("Exit");
    }
    void Open(const std::function<void(frmMenus&)>& act, QPoint at = {100, 100},
              const PictureReference& picture = {})
    {
        QTimer::singleShot(0, &host, [&] {
            auto* menu = dynamic_cast<frmMenus*>(QApplication::activePopupWidget());
            ASSERT_NE(menu, nullptr);
            const QPointer<frmMenus> guard(menu);
            act(*menu);
            EXPECT_TRUE(!guard || guard->State().closed) << "the menu was left open";
            if (guard)
                guard->CloseMenu();
        });
        menus.ShowMenu(at.x(), at.y(), picture);
    }
    // Looks at an open menu, then leaves it.
    void Look(const std::function<void(frmMenus&)>& look, QPoint at = {100, 100},
              const PictureReference& picture = {})
    {
        Open(
            [&](frmMenus& menu) {
                look(menu);
                Key(menu, Qt::Key_Escape);
            },
            at, picture);
    }
    static void Hover(frmMenus& menu, int item, int x = 15)
    {
        ControlHand(menu).Move(x, 4 + (item - 1) * kItemHeight + 6);
    }
    static void Click(frmMenus& menu, int item, Qt::MouseButton button = Qt::LeftButton)
    {
        Hover(menu, item);
        ControlHand hand(menu);
        const int y = 4 + (item - 1) * kItemHeight + 6;
        hand.Press(15, y, button);
        hand.Release(15, y, button);
    }
    static void Key(frmMenus& menu, int key)
    {
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
        QApplication::sendEvent(&menu, &press);
        EXPECT_FALSE(menu.State().closed);
        QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier);
        QApplication::sendEvent(&menu, &release);
    }

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

    QWidget host;
    ctlMenus menus{&host};
    std::vector<std::string> clicks;
};

TEST_F(ctlMenusTest, ItsDefaultsAreTheSystemsMenuColours)
{
    menus.Load({});
    EXPECT_TRUE(menus.Enabled());
    EXPECT_EQ(menus.ItemForeColor(), 0x80000007u);
    EXPECT_EQ(menus.ItemHotForeColor(), 0x8000000Eu);
    EXPECT_EQ(menus.BackColor(), 0x8000000Fu);
    EXPECT_EQ(menus.ItemHotBackColor(), 0x8000000Du);
    EXPECT_FALSE(menus.UseIcons());
    EXPECT_FALSE(menus.UseLeftImage());
    EXPECT_EQ(menus.LeftPicBackColor(), 0x8000000Fu);
    EXPECT_EQ(menus.Font(), menus.HostAmbient().font);
}

TEST_F(ctlMenusTest, ItsKeysAreSavedInOrderAndComeBack)
{
    menus.SetUseIcons(true);
    menus.SetUseLeftImage(true);
    menus.SetEnabled(false);
    PropertyBag bag;
    menus.Save(bag);
    const QStringList keys = {QStringLiteral("Font"),
                              QStringLiteral("Enabled"),
                              QStringLiteral("ItemForeColor"),
                              QStringLiteral("ItemHotForeColor"),
                              QStringLiteral("BackColor"),
                              QStringLiteral("ItemHotBackColor"),
                              QStringLiteral("UseIcons"),
                              QStringLiteral("UseLeftImage"),
                              QStringLiteral("LeftPicBackColor")};
    EXPECT_EQ(bag.KeysInOrder(), keys);
    ctlMenus other(&host);
    EXPECT_FALSE(menus.UseIcons()); // what is common to all went back to its default
    other.Load(bag);
    PropertyBag again;
    other.Save(again);
    EXPECT_FALSE(other.Enabled());
    EXPECT_TRUE(other.UseIcons());
    EXPECT_TRUE(other.UseLeftImage());
    EXPECT_EQ(other.ItemForeColor(), 0xFFFFFFu);
    EXPECT_EQ(other.ItemHotBackColor(), 0x08ABFFu);
    EXPECT_EQ(other.Font(), menus.Font());
    EXPECT_EQ(again.KeysInOrder(), keys);
}

TEST_F(ctlMenusTest, EachPropertyReportsItsKey)
{
    QStringList keys;
    menus.PropertyChanged = [&](const QString& key) { keys.append(key); };
    menus.SetFont(QFont());
    menus.SetEnabled(true);
    menus.SetItemForeColor(1);
    menus.SetItemHotForeColor(2);
    menus.SetBackColor(3);
    menus.SetItemHotBackColor(4);
    menus.SetUseIcons(true);
    menus.SetUseLeftImage(true);
    menus.SetLeftPicBackColor(5);
    EXPECT_EQ(keys.join(QLatin1Char(' ')),
              QStringLiteral("Font Enabled ItemForeColor ItemHotForeColor BackColor "
                             "ItemHotBackColor UseIcons UseLeftImage LeftPicBackColor"));
}

TEST_F(ctlMenusTest, TheControlIsSmallAndNeverSeen)
{
    host.resize(200, 200);
    host.show();
    menus.resize(100, 100);
    menus.show();
    EXPECT_EQ(menus.size(), QSize(32, 32));
    EXPECT_FALSE(menus.isVisible());
}

TEST_F(ctlMenusTest, AClickTellsTheItemAndEmptiesTheList)
{
    AddThree();
    Open([](frmMenus& menu) { Click(menu, 2); });
    EXPECT_EQ(clicks, (std::vector<std::string>{"2 Stop STOP"}));
    int items = -1;
    QTimer::singleShot(0, &host, [&] {
        auto* menu = dynamic_cast<frmMenus*>(QApplication::activePopupWidget());
        items = static_cast<int>(menu->State().items.size());
        menu->CloseMenu();
    });
    menus.ShowMenu(10, 10);
    EXPECT_EQ(items, 0);
}

TEST_F(ctlMenusTest, AnyButtonChooses)
{
    AddThree();
    Open([](frmMenus& menu) { Click(menu, 3, Qt::RightButton); });
    EXPECT_EQ(clicks, (std::vector<std::string>{"3 Exit EXIT"}));
}

TEST_F(ctlMenusTest, APressOnOneItemAndReleaseOnAnotherChoosesTheOther)
{
    AddThree();
    Open([](frmMenus& menu) {
        ControlHand hand(menu);
        Hover(menu, 1);
        hand.Press(15, 10);
        hand.Move(15, 36);
        hand.Release(15, 36);
    });
    EXPECT_EQ(clicks, (std::vector<std::string>{"3 Exit EXIT"}));
}

TEST_F(ctlMenusTest, AReleaseWithoutAPressDoesNotClose)
{
    AddThree();
    Open([](frmMenus& menu) {
        Hover(menu, 1);
        ControlHand(menu).Release(15, 10, Qt::RightButton);
        EXPECT_FALSE(menu.State().closed);
        // The second press of a quick pair comes as a double click, and is a press all the same.
        ControlHand hand(menu);
        hand.DoublePress(15, 10);
        EXPECT_FALSE(menu.State().closed);
        hand.Release(15, 10);
    });
    EXPECT_EQ(clicks, (std::vector<std::string>{"1 Play PLAY"}));
}

TEST_F(ctlMenusTest, AClickOutsideClosesWithoutAChoice)
{
    AddThree();
    Open([](frmMenus& menu) {
        Hover(menu, 2);
        ControlHand hand(menu);
        hand.Move(-40, 300);
        EXPECT_EQ(menu.State().hotItem, MenuState::kNone);
        hand.Press(-40, 300);
        EXPECT_FALSE(menu.State().closed);
        hand.Release(-40, 300);
    });
    EXPECT_TRUE(clicks.empty());
}

TEST_F(ctlMenusTest, DisabledItemsAndSeparatorsCloseWithoutAChoice)
{
    for (const int item : {1, 2}) {
        Add("Off", false);
        menus.AddItem(QStringLiteral("-"), QStringLiteral("key"), true);
        Open([item](frmMenus& menu) {
            EXPECT_FALSE(menu.State().items[1].enabled);
            Click(menu, item);
        });
    }
    EXPECT_TRUE(clicks.empty());
}

TEST_F(ctlMenusTest, EscapeChoosesNothingAndEnterTheHotItem)
{
    AddThree();
    Open([](frmMenus& menu) {
        Hover(menu, 2);
        Key(menu, Qt::Key_Escape);
    });
    EXPECT_TRUE(clicks.empty());
    AddThree();
    Open([](frmMenus& menu) {
        Hover(menu, 3);
        Key(menu, Qt::Key_Return);
    });
    EXPECT_EQ(clicks, (std::vector<std::string>{"3 Exit EXIT"}));
    clicks.clear();
    AddThree();
    Open([](frmMenus& menu) { Key(menu, Qt::Key_Enter); }); // nothing is hot
    EXPECT_TRUE(clicks.empty());
}

TEST_F(ctlMenusTest, NoOtherKeyDoesAnything)
{
    AddThree();
    Look([](frmMenus& menu) {
        for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Up, Qt::Key_P, Qt::Key_Space, Qt::Key_Tab,
                                  Qt::Key_Home, Qt::Key_Alt, Qt::Key_F4}) {
            QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
            QApplication::sendEvent(&menu, &press);
            QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier);
            QApplication::sendEvent(&menu, &release);
            EXPECT_FALSE(menu.State().closed);
            EXPECT_EQ(menu.State().hotItem, MenuState::kNone);
        }
        QKeyEvent repeated(QEvent::KeyRelease, Qt::Key_Escape, Qt::NoModifier, QString(), true);
        QApplication::sendEvent(&menu, &repeated);
        EXPECT_FALSE(menu.State().closed);
    });
}

TEST_F(ctlMenusTest, AMenuHiddenByOthersChoseNothing)
{
    AddThree();
    Open([](frmMenus& menu) {
        Hover(menu, 1);
        menu.hide();
    });
    EXPECT_TRUE(clicks.empty());
}

TEST_F(ctlMenusTest, TheHandlerMayShowTheNextMenu)
{
    AddThree();
    menus.ItemClicked = [this](std::int16_t&, const QString&, const QString& key) {
        clicks.push_back(key.toStdString());
        if (clicks.size() == 1) {
            Add("One");
            Add("Two");
            Open([](frmMenus& menu) { Click(menu, 2); });
        }
    };
    Open([](frmMenus& menu) { Click(menu, 1); });
    EXPECT_EQ(clicks, (std::vector<std::string>{"PLAY", "TWO"}));
}

TEST_F(ctlMenusTest, ASecondCallWhileOneIsOpenDoesNothing)
{
    AddThree();
    Look([this](frmMenus& menu) {
        menus.ShowMenu(10, 10);
        EXPECT_EQ(QApplication::activePopupWidget(), &menu);
        EXPECT_EQ(menu.State().items.size(), 3u);
    });
}

TEST_F(ctlMenusTest, TimersGoOnWhileItIsOpen)
{
    AddThree();
    int ticks = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        if (++ticks == 5)
            dynamic_cast<frmMenus&>(*QApplication::activePopupWidget()).CloseMenu();
    });
    timer.start(1);
    menus.ShowMenu(10, 10);
    EXPECT_EQ(ticks, 5);
}

TEST_F(ctlMenusTest, TheOwnerMayGoWhileItIsOpen)
{
    auto owner = std::make_unique<QWidget>();
    auto* owned = new ctlMenus(owner.get());
    owned->ItemClicked = [this](std::int16_t&, const QString&, const QString&) {
        clicks.emplace_back("told");
    };
    owned->AddItem(QStringLiteral("a"), QStringLiteral("b"));
    QTimer::singleShot(0, &host, [&] {
        Hover(dynamic_cast<frmMenus&>(*QApplication::activePopupWidget()), 1);
        owner.reset();
    });
    owned->ShowMenu(10, 10);
    EXPECT_TRUE(clicks.empty());
    AddThree(); // and the next menu opens
    Open([](frmMenus& menu) { Click(menu, 1); });
    EXPECT_EQ(clicks.size(), 1u);
}

TEST_F(ctlMenusTest, TheHandlerMayDestroyTheControl)
{
    auto* owned = new ctlMenus(&host);
    owned->ItemClicked = [owned](std::int16_t&, const QString&, const QString&) { delete owned; };
    owned->AddItem(QStringLiteral("a"), QStringLiteral("b"));
    QTimer::singleShot(
        0, &host, [] { Click(dynamic_cast<frmMenus&>(*QApplication::activePopupWidget()), 1); });
    const QPointer<ctlMenus> guard(owned);
    owned->ShowMenu(10, 10);
    EXPECT_TRUE(guard.isNull());
}

TEST_F(ctlMenusTest, AnItemTakesTheColoursOfTheControlOrItsOwn)
{
    Add("plain");
    menus.AddItem(QStringLiteral("own"), {}, true, {}, 1, 2, 3);
    Look([](frmMenus& menu) {
        const MenuItem& plain = menu.State().items[0];
        EXPECT_EQ(plain.foreColor, 0xFFFFFFu);
        EXPECT_EQ(plain.hotForeColor, 0u);
        EXPECT_EQ(plain.hotBackColor, 0x08ABFFu);
        const MenuItem& own = menu.State().items[1];
        EXPECT_EQ(own.foreColor, 1u);
        EXPECT_EQ(own.hotForeColor, 2u);
        EXPECT_EQ(own.hotBackColor, 3u);
    });
}

TEST_F(ctlMenusTest, ItOpensAtThePointerOrWhereItIsTold)
{
    AddThree();
    QCursor::setPos(100, 80);
    Look([](frmMenus& menu) { EXPECT_EQ(menu.pos(), QCursor::pos() - QPoint(5, 5)); }, {-1, -1});
    AddThree();
    Look([](frmMenus& menu) { EXPECT_EQ(menu.pos(), QPoint(-1, 20)); }, {-1, 20});
}

TEST_F(ctlMenusTest, AtTheFarEdgesItMovesOntoTheScreen)
{
    const QRect screen = host.screen()->geometry();
    AddThree();
    Look([&](frmMenus& menu) { EXPECT_EQ(menu.geometry().bottomRight(), screen.bottomRight()); },
         screen.bottomRight());
    for (int i = 0; i < 100; ++i)
        Add("more");
    Look([&](frmMenus& menu) {
        EXPECT_GT(menu.height(), screen.height());
        EXPECT_EQ(menu.geometry().bottom(), screen.bottom());
        EXPECT_LT(menu.y(), 0);
    });
    for (const int far : {std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        AddThree();
        Look([](frmMenus& menu) { EXPECT_EQ(menu.height(), 3 * kItemHeight + 9); }, {far, far});
    }
}

TEST_F(ctlMenusTest, ItsSizeFollowsTheWidestCaption)
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

TEST_F(ctlMenusTest, AHugeCaptionWrapsAroundAndDoesNoHarm)
{
    menus.AddItem(QString(600, QLatin1Char('M')), {});
    Look([](frmMenus& menu) {
        EXPECT_GE(menu.width(), 1);
        EXPECT_LT(menu.width(), 2200);
        menu.grab();
    });
}

TEST_F(ctlMenusTest, AnEmptyListIsAPointThatTheNextClickCloses)
{
    Open([](frmMenus& menu) {
        EXPECT_EQ(menu.geometry(), QRect(100, 100, 1, 1));
        menu.grab();
        EXPECT_EQ(ShownAt(menu, 0, 0), kBack); // without a frame
        ControlHand hand(menu);
        hand.Press(0, 0);
        hand.Release(0, 0);
    });
    EXPECT_TRUE(clicks.empty());
}

TEST_F(ctlMenusTest, AFreshMenuIsDrawnToThePixel)
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

TEST_F(ctlMenusTest, ASeparatorHasABlackLineBelow)
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

TEST_F(ctlMenusTest, TheBarFollowsThePointerAndLeavesNoTrace)
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

TEST_F(ctlMenusTest, ADisabledItemIsNeverHotAndLooksTheSameAfterEveryPass)
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

TEST_F(ctlMenusTest, ABarInTheMenusColourIsNone)
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

TEST_F(ctlMenusTest, TheFirstHoverRedrawsOnlyTheNewHotItem)
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

TEST_F(ctlMenusTest, IconsAreDrawnOnceAndStandLeftOfTheBar)
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

TEST_F(ctlMenusTest, AWideIconRemainsUnderTheBar)
{
    menus.SetUseIcons(true);
    Add("With", true, OneColour({40, 13}, 0xFF00FF00));
    Look([](frmMenus& menu) {
        Hover(menu, 1);
        EXPECT_TRUE(IsAll(menu, {4, 4, 21, 17}, 0xFF00FF00));
        EXPECT_TRUE(IsAll(menu, {21, 4, 22, 17}, kBar));
    });
}

TEST_F(ctlMenusTest, TheSideBandHoldsThePictureAtItsBottom)
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

TEST_F(ctlMenusTest, WithoutASidePictureTheBandStandsAlone)
{
    menus.SetUseLeftImage(true);
    menus.SetLeftPicBackColor(DirectColour(0, 0, 255));
    Add("Item");
    Look([](frmMenus& menu) {
        EXPECT_TRUE(IsAll(menu, {2, 3, 17, menu.height() - 4}, 0xFF0000FF));
        EXPECT_TRUE(IsAll(menu, {2, menu.height() - 4, 17, menu.height() - 1}, kBack));
    });
}

TEST_F(ctlMenusTest, ATallerSidePictureIsCutOffAtTheTop)
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

TEST_F(ctlMenusTest, SystemColoursAreResolvedWhenDrawn)
{
    menus.Load({});
    Add("Play");
    Look([](frmMenus& menu) {
        EXPECT_EQ(ShownAt(menu, 2, 2), ResolveColour(SystemColour::ButtonFace));
        Hover(menu, 1);
        EXPECT_EQ(ShownAt(menu, 4, 4), ResolveColour(SystemColour::Selection));
    });
}

TEST_F(ctlMenusTest, ItsOwnFontGivesTheHeightAndTheControlsFontTheText)
{
    menus.SetFont(ProgramFont(QStringLiteral("Arial"), 24));
    Add("Play");
    Look([this](frmMenus& menu) {
        EXPECT_EQ(menu.height(), kItemHeight + 9);
        EXPECT_EQ(menu.font(), menus.Font());
    });
}

TEST_F(ctlMenusTest, AssistiveToolsKnowTheItems)
{
    Add("Play");
    Add("-");
    Add("Off", false);
    Open([](frmMenus& menu) {
        QAccessibleInterface* known = QAccessible::queryAccessibleInterface(&menu);
        EXPECT_EQ(known->role(), QAccessible::PopupMenu);
        ASSERT_EQ(known->childCount(), 3);
        EXPECT_EQ(known->child(3), nullptr);
        EXPECT_EQ(known->child(1)->role(), QAccessible::Separator);
        QAccessibleInterface* off = known->child(2);
        EXPECT_EQ(off->text(QAccessible::Name), QStringLiteral("Off"));
        EXPECT_TRUE(off->state().disabled);
        EXPECT_TRUE(off->actionInterface()->actionNames().isEmpty());
        QAccessibleInterface* play = known->child(0);
        EXPECT_EQ(known->indexOfChild(play), 0);
        EXPECT_EQ(play->role(), QAccessible::MenuItem);
        EXPECT_EQ(play->parent(), known);
        EXPECT_EQ(play->rect().top(), menu.y() + 4);
        EXPECT_EQ(known->childAt(menu.x() + 30, menu.y() + 10), play);
        EXPECT_EQ(known->focusChild(), nullptr);
        Hover(menu, 1);
        EXPECT_EQ(known->focusChild(), play);
        EXPECT_TRUE(play->state().focused);
        play->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    });
    EXPECT_EQ(clicks, (std::vector<std::string>{"1 Play PLAY"}));
}

} // namespace
} // namespace lantern
