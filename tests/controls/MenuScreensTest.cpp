// SPDX-License-Identifier: GPL-3.0-or-later
// Where a menu opens that has two screens beside each other, of 800 pixels each.
#include "MenuFixture.h"

#include <QCursor>
#include <QScreen>

namespace lantern {
namespace {

using MenuScreensTest = MenuTest;

TEST_F(MenuScreensTest, ThePointerIsOnTheScreenThatTheMenuStaysOn)
{
    ASSERT_EQ(QGuiApplication::screens().size(), 2);
    AddThree();
    QCursor::setPos(802, 100);
    Look([](frmMenus& menu) { EXPECT_EQ(menu.pos(), QPoint(797, 95)); }, {-1, -1});
    AddThree();
    QCursor::setPos(798, 100);
    Look([](frmMenus& menu) { EXPECT_EQ(menu.geometry().right(), 799); }, {-1, -1});
    AddThree();
    QCursor::setPos(1597, 797);
    Look([](frmMenus& menu) { EXPECT_EQ(menu.geometry().bottomRight(), QPoint(1599, 799)); },
         {-1, -1});
}

} // namespace
} // namespace lantern
