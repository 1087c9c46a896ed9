// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ControlHand.h"
#include "ProgramFont.h"
#include "ctlMenus.h"
#include "frmMenus.h"

#include <QTimer>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace lantern {

constexpr int kItemHeight = 13;
constexpr QRgb kBack = 0xFF000000;

// The design values of the player's own menu.
inline PropertyBag PlayersMenu()
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

// A menu, and a hand that opens it and chooses.
class MenuTest : public ::testing::Test {
protected:
    MenuTest()
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

    QWidget host;
    ctlMenus menus{&host};
    std::vector<std::string> clicks;
};

} // namespace lantern
