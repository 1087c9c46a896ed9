// SPDX-License-Identifier: GPL-3.0-or-later
#include "MessageLine.h"

#include <QAccessible>

#include <gtest/gtest.h>

namespace lantern {
namespace {

class ToldLine : public MessageLine {
public:
    using MessageLine::MessageLine;

    int Told = 0;

    void Show(const char* text)
    {
        SetCaption(QString::fromLatin1(text));
        ShowMessage(true);
    }

protected:
    void TellShown() override { ++Told; }
};

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
    ToldLine line(&window);
    line.ShowMessage(false);
    window.show();
    EXPECT_FALSE(line.isVisible());
    line.Show("one");
    EXPECT_TRUE(line.isVisible());
    EXPECT_EQ(line.Told, 0) << "the toolkit does";
    line.Show("one");
    EXPECT_EQ(line.Told, 0) << "the same";
    line.Show("two");
    EXPECT_EQ(line.Told, 1);
    line.ShowMessage(false);
    EXPECT_FALSE(line.isVisible());
    line.Show("three");
    EXPECT_EQ(line.Told, 1) << "the line was gone";
    line.Show("two");
    EXPECT_EQ(line.Told, 2);
}

} // namespace
} // namespace lantern
