// SPDX-License-Identifier: GPL-3.0-or-later
// What assistive tools know of an open menu.
#include "MenuFixture.h"
#include "ToldToTools.h"

#include <QAccessible>

#include <gtest/gtest.h>

namespace lantern {
namespace {

class MenuAccessibility : public MenuTest {
protected:
    static QAccessibleInterface& Known(frmMenus& menu)
    {
        return *QAccessible::queryAccessibleInterface(&menu);
    }
    void AddPlayLineOff()
    {
        Add("Play");
        Add("-");
        Add("Off", false);
    }

    ToldToTools told;
};

TEST_F(MenuAccessibility, ItHasTheNameThatTheControlWasGiven)
{
    menus.setAccessibleName(QStringLiteral("Commands"));
    AddThree();
    Look([](frmMenus& menu) {
        EXPECT_EQ(Known(menu).text(QAccessible::Name), QStringLiteral("Commands"));
        EXPECT_EQ(Known(menu).role(), QAccessible::PopupMenu);
    });
}

TEST_F(MenuAccessibility, ItsItemsAreItsChildren)
{
    AddPlayLineOff();
    Look([](frmMenus& menu) {
        QAccessibleInterface& known = Known(menu);
        ASSERT_EQ(known.childCount(), 3);
        EXPECT_EQ(known.child(-1), nullptr);
        EXPECT_EQ(known.child(3), nullptr);
        const std::vector<QAccessible::Role> roles = {QAccessible::MenuItem, QAccessible::Separator,
                                                      QAccessible::MenuItem};
        for (int i = 0; i < 3; ++i) {
            QAccessibleInterface* item = known.child(i);
            EXPECT_EQ(item->role(), roles[static_cast<std::size_t>(i)]) << i;
            EXPECT_EQ(item->parent(), &known) << i;
            EXPECT_EQ(known.indexOfChild(item), i);
            EXPECT_EQ(known.child(i), item) << i; // the same each time
            EXPECT_TRUE(item->isValid()) << i;
            EXPECT_FALSE(item->state().invalid) << i;
            EXPECT_EQ(item->childCount(), 0) << i;
            EXPECT_EQ(item->child(0), nullptr) << i;
            EXPECT_EQ(item->object(), nullptr) << i;
        }
        EXPECT_EQ(known.indexOfChild(&known), -1);
    });
}

// The toolkit names no pop-up window among those of the program, so it is reached from here.
TEST_F(MenuAccessibility, AnOpenMenuIsReachedFromTheWindowDown)
{
    menus.setAccessibleName(QStringLiteral("Commands"));
    AddThree();
    QAccessibleInterface& window = *QAccessible::queryAccessibleInterface(&host);
    QAccessibleInterface& holder = *QAccessible::queryAccessibleInterface(&menus);
    EXPECT_EQ(holder.parent(), &window);
    EXPECT_EQ(holder.childCount(), 0);
    EXPECT_EQ(holder.child(0), nullptr);
    EXPECT_EQ(holder.indexOfChild(&holder), -1);
    Look([&](frmMenus& menu) {
        QAccessibleInterface& known = Known(menu);
        EXPECT_EQ(known.parent(), &holder);
        ASSERT_EQ(holder.childCount(), 1);
        EXPECT_EQ(holder.child(0), &known);
        EXPECT_EQ(holder.child(1), nullptr);
        EXPECT_EQ(holder.indexOfChild(&known), 0);
        EXPECT_EQ(holder.indexOfChild(&window), -1);
        EXPECT_EQ(holder.indexOfChild(nullptr), -1);
        EXPECT_EQ(holder.text(QAccessible::Name), QString()) << "that is the menu's";
    });
    EXPECT_EQ(holder.childCount(), 0);
}

TEST_F(MenuAccessibility, AChoiceAmongSeveralTellsWhetherItIsTheOneThatHolds)
{
    menus.AddChoice(QStringLiteral("Speakers"), QStringLiteral("1"), false);
    menus.AddChoice(QStringLiteral("Headphones"), QStringLiteral("2"), true);
    Add("Cancel");
    Look([](frmMenus& menu) {
        QAccessibleInterface& known = Known(menu);
        EXPECT_EQ(known.child(0)->role(), QAccessible::RadioButton);
        EXPECT_TRUE(known.child(0)->state().checkable);
        EXPECT_FALSE(known.child(0)->state().checked);
        EXPECT_EQ(known.child(1)->role(), QAccessible::RadioButton);
        EXPECT_TRUE(known.child(1)->state().checked);
        EXPECT_EQ(known.child(2)->role(), QAccessible::MenuItem);
        EXPECT_FALSE(known.child(2)->state().checkable);
        EXPECT_FALSE(known.child(2)->state().checked);
    });
}

TEST_F(MenuAccessibility, AnItemTellsItsNameStateAndPlace)
{
    AddPlayLineOff();
    Look([](frmMenus& menu) {
        QAccessibleInterface& known = Known(menu);
        QAccessibleInterface* play = known.child(0);
        QAccessibleInterface* off = known.child(2);
        EXPECT_EQ(play->text(QAccessible::Name), QStringLiteral("Play"));
        EXPECT_EQ(play->text(QAccessible::Description), QString());
        EXPECT_FALSE(play->state().disabled);
        EXPECT_TRUE(play->state().focusable);
        EXPECT_EQ(off->text(QAccessible::Name), QStringLiteral("Off"));
        EXPECT_TRUE(off->state().disabled);
        EXPECT_FALSE(off->state().focusable);
        EXPECT_EQ(play->rect(), QRect(menu.x(), menu.y() + 4, menu.width(), kItemHeight));
        EXPECT_EQ(off->rect().top(), menu.y() + 4 + 2 * kItemHeight);
        EXPECT_EQ(known.childAt(menu.x() + 30, menu.y() + 10), play);
        EXPECT_EQ(known.childAt(menu.x() + 30, menu.y() + 10 + 2 * kItemHeight), off);
        EXPECT_EQ(known.childAt(menu.x() + 30, menu.y() + 1), nullptr);
        EXPECT_EQ(known.childAt(menu.x() - 5, menu.y() + 10), nullptr);
    });
}

TEST_F(MenuAccessibility, TheHotItemHasTheFocusAndItIsTold)
{
    AddPlayLineOff();
    Look([this](frmMenus& menu) {
        QAccessibleInterface& known = Known(menu);
        EXPECT_EQ(known.focusChild(), nullptr);
        EXPECT_FALSE(known.child(0)->state().focused);
        told.Forget();
        Hover(menu, 1);
        EXPECT_EQ(known.focusChild(), known.child(0));
        EXPECT_TRUE(known.child(0)->state().focused);
        EXPECT_TRUE(known.child(0)->state().hotTracked);
        ASSERT_EQ(told.Types(), std::vector{QAccessible::Focus});
        EXPECT_EQ(told.Events()[0].object, &menu);
        EXPECT_EQ(told.Events()[0].child, 0);
        Hover(menu, 3);
        EXPECT_EQ(known.focusChild(), nullptr);
        EXPECT_FALSE(known.child(2)->state().focused);
        EXPECT_EQ(told.Events().size(), 1U);
    });
}

TEST_F(MenuAccessibility, ItsBeginningAndItsEndAreTold)
{
    AddThree();
    Look([this](frmMenus&) {
        ASSERT_EQ(told.Types(),
                  (std::vector{QAccessible::ObjectCreated, QAccessible::PopupMenuStart}));
        told.Forget();
    });
    EXPECT_EQ(told.Types(), (std::vector{QAccessible::ObjectDestroyed, QAccessible::PopupMenuEnd}));
}

// As a bridge does, which asks at each event what it is about.
TEST_F(MenuAccessibility, ItIsAMenuUntilItIsGone)
{
    std::vector<QAccessible::Role> asked;
    SetToolListener([&](const QAccessibleEvent& event) {
        const QAccessibleInterface* menu = event.accessibleInterface();
        asked.push_back(menu->role());
        EXPECT_EQ(menu->parent()->childCount(), 1);
    });
    auto* owned = new ctlMenus(&host);
    owned->AddItem(QStringLiteral("a"), QStringLiteral("b"));
    QTimer::singleShot(0, &host, [&] { delete owned; });
    owned->ShowMenu(10, 10);
    EXPECT_EQ(asked, std::vector(4, QAccessible::PopupMenu)) << "two at its begin, two at its end";
}

TEST_F(MenuAccessibility, AnItemThatIsPressedIsChosen)
{
    AddPlayLineOff();
    Open([](frmMenus& menu) {
        QAccessibleInterface* off = Known(menu).child(2);
        EXPECT_TRUE(off->actionInterface()->actionNames().isEmpty());
        off->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        EXPECT_FALSE(menu.State().closed);
        QAccessibleActionInterface* play = Known(menu).child(0)->actionInterface();
        EXPECT_EQ(play->actionNames(), QStringList{QAccessibleActionInterface::pressAction()});
        EXPECT_TRUE(
            play->keyBindingsForAction(QAccessibleActionInterface::pressAction()).isEmpty());
        play->doAction(QAccessibleActionInterface::toggleAction());
        EXPECT_FALSE(menu.State().closed);
        play->doAction(QAccessibleActionInterface::pressAction());
    });
    EXPECT_EQ(clicks, (std::vector<std::string>{"1 Play PLAY"}));
}

TEST_F(MenuAccessibility, AnItemOfAClosedMenuIsNothingAnyMore)
{
    AddPlayLineOff();
    QAccessible::Id id = 0;
    Open([&](frmMenus& menu) {
        QAccessibleInterface* play = Known(menu).child(0);
        id = QAccessible::uniqueId(play);
        Key(menu, Qt::Key_Escape);
        menus.ResetMenu();
        EXPECT_FALSE(play->isValid());
        EXPECT_TRUE(play->state().invalid);
        EXPECT_EQ(play->text(QAccessible::Name), QString());
        EXPECT_EQ(play->rect(), QRect());
        EXPECT_TRUE(play->actionInterface()->actionNames().isEmpty());
        EXPECT_EQ(Known(menu).focusChild(), nullptr);
    });
    EXPECT_EQ(QAccessible::accessibleInterface(id), nullptr);
}

} // namespace
} // namespace lantern
