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
        ASSERT_EQ(told.Types(), std::vector{QAccessible::PopupMenuStart});
        told.Forget();
    });
    ASSERT_FALSE(told.Events().empty());
    EXPECT_EQ(told.Events()[0].type, QAccessible::PopupMenuEnd);
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
