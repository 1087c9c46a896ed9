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
    const QPoint corner = QGuiApplication::screens().front()->geometry().topLeft();
    AddThree();
    QCursor::setPos(corner + QPoint(802, 100));
    Look([&](frmMenus& menu) { EXPECT_EQ(menu.pos(), corner + QPoint(797, 95)); }, {-1, -1});
    AddThree();
    QCursor::setPos(corner + QPoint(798, 100));
    Look([&](frmMenus& menu) { EXPECT_EQ(menu.geometry().right(), corner.x() + 799); }, {-1, -1});
    AddThree();
    QCursor::setPos(corner + QPoint(1597, 797));
    Look(
        [&](frmMenus& menu) {
            EXPECT_EQ(menu.geometry().bottomRight(), corner + QPoint(1599, 799));
        },
        {-1, -1});
}

} // namespace
} // namespace lantern
