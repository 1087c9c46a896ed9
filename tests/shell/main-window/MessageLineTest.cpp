// SPDX-License-Identifier: GPL-3.0-or-later
#include "MessageLine.h"

#include "ControlAccessibility.h"

#include <QAccessible>

#include <gtest/gtest.h>

namespace lantern {
namespace {

TEST(MessageLine, IsANotificationWithItsTextForAName)
{
    MessageLine line(nullptr);
    line.SetCaption(QStringLiteral(" Volume: 20% "));
    const QAccessibleInterface* known = QAccessible::queryAccessibleInterface(&line);
    EXPECT_EQ(known->role(), QAccessible::Notification);
    EXPECT_EQ(known->text(QAccessible::Name), QStringLiteral("Volume: 20%"));
}

TEST(MessageLine, OnlyAMessageInAnothersPlaceIsToldByTheLineItself)
{
    QWidget window;
    MessageLine line(&window);
    int told = 0;
    SetToolListener([&](const QAccessibleEvent& event) {
        if (event.type() != QAccessible::ObjectShow)
            return;
        EXPECT_EQ(event.object(), &line);
        ++told;
    });
    const auto show = [&line](const char* text) {
        line.SetCaption(QString::fromLatin1(text));
        line.ShowMessage(true);
    };
    line.ShowMessage(false);
    window.show();
    EXPECT_FALSE(line.isVisible());
    show("one");
    EXPECT_TRUE(line.isVisible());
    EXPECT_EQ(told, 0) << "the toolkit does";
    show("one");
    EXPECT_EQ(told, 0) << "the same";
    show("two");
    EXPECT_EQ(told, 1);
    line.ShowMessage(false);
    EXPECT_FALSE(line.isVisible());
    show("three");
    EXPECT_EQ(told, 1) << "the line was gone";
    show("two");
    EXPECT_EQ(told, 2);
    SetToolListener({});
}

} // namespace
} // namespace lantern
