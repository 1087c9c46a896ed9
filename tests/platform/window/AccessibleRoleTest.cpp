// SPDX-License-Identifier: GPL-3.0-or-later
#include "AccessibleRole.h"

#include <QWidget>

#include <gtest/gtest.h>

namespace lantern {
namespace {

QAccessible::Role RoleOf(QWidget& widget)
{
    return QAccessible::queryAccessibleInterface(&widget)->role();
}

TEST(AccessibleRole, AssistiveToolsTakeAWidgetForWhatItWasSaidToBe)
{
    QWidget window;
    QWidget picture(&window);
    QWidget plain(&window);
    picture.setAccessibleName(QStringLiteral("A picture"));
    ASSERT_EQ(RoleOf(picture), QAccessible::Client);
    SetAccessibleRole(window, QAccessible::Window);
    SetAccessibleRole(picture, QAccessible::Graphic);
    EXPECT_EQ(RoleOf(window), QAccessible::Window);
    EXPECT_EQ(RoleOf(picture), QAccessible::Graphic);
    EXPECT_EQ(RoleOf(plain), QAccessible::Client);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&picture)->text(QAccessible::Name),
              QStringLiteral("A picture"));
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&window)->childCount(), 2);
}

} // namespace
} // namespace lantern
