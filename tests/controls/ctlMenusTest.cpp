// SPDX-License-Identifier: GPL-3.0-or-later
// What a menu does, and what it tells. What it looks like is in frmMenusTest.cpp.
#include "MenuFixture.h"

#include <QCursor>
#include <QScreen>

#include <limits>
#include <memory>

namespace lantern {
namespace {

using ctlMenusTest = MenuTest;

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

} // namespace
} // namespace lantern
