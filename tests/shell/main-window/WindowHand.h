// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "WindowFixture.h"
#include "frmMenus.h"
#include "frmOptions.h"

#include <QApplication>
#include <QTest>
#include <QTimer>
#include <QWindow>

#include <algorithm>
#include <functional>
#include <stdexcept>

namespace lantern {

// A main window with a hand on the mouse, and eyes for the menu and the options.
class WindowHand : public WindowFixture {
protected:
    using WindowFixture::WindowFixture;

    // A window that was closed before has asked for the end of all event loops: from this one on
    // they run again.
    void SetUp() override
    {
        QTimer::singleShot(0, qApp, &QCoreApplication::quit);
        QCoreApplication::exec();
    }

    // The middle of a part, in the window.
    QPoint MiddleOf(QWidget& part) { return part.mapTo(&window, part.rect().center()); }
    QPoint MiddleOf(const char* name) { return MiddleOf(PartNamed(name)); }
    // A bare place: the frames hold buttons in their middle.
    QPoint BarePlaceOf(const char* name)
    {
        QWidget& part = PartNamed(name);
        for (int y = 0; y < part.height(); ++y) {
            for (int x = 0; x < part.width(); ++x) {
                const QPoint place = part.mapTo(&window, QPoint(x, y));
                if (window.childAt(place) == &part)
                    return place;
            }
        }
        ADD_FAILURE() << name << " is covered";
        return {};
    }

    void MouseDown(QPoint at, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mousePress(window.windowHandle(), button, {}, at);
    }
    void MouseMove(QPoint to) { QTest::mouseMove(window.windowHandle(), to); }
    void MouseUp(QPoint at, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mouseRelease(window.windowHandle(), button, {}, at);
    }
    void Click(QPoint at, Qt::MouseButton button = Qt::LeftButton)
    {
        MouseDown(at, button);
        MouseUp(at, button);
    }

    // Runs what opens a menu, and once it is open, what looks at it or chooses from it. Then the
    // menu is closed without a choice, if it still is open. Whether one opened.
    bool WithMenu(const std::function<void()>& open, const std::function<void(frmMenus&)>& look)
    {
        bool wasOpen = false;
        QTimer poll;
        poll.callOnTimeout(&window, [&] {
            auto* menu = dynamic_cast<frmMenus*>(QApplication::activePopupWidget());
            if (!menu)
                return;
            poll.stop();
            wasOpen = true;
            const QPointer<QWidget> stillOpen(menu);
            look(*menu);
            if (stillOpen && stillOpen->isVisible())
                QTest::keyClick(menu, Qt::Key_Escape);
        });
        poll.start(1);
        open();
        return wasOpen;
    }

    // Chooses the item of that text from the menu that opens.
    bool Choose(const std::function<void()>& open, const QString& text)
    {
        return WithMenu(open, [&](frmMenus& menu) {
            const std::vector<MenuItem>& items = menu.State().items;
            const auto item = std::ranges::find(items, text, &MenuItem::caption);
            ASSERT_NE(item, items.end()) << text.toStdString();
            menu.Choose(static_cast<std::size_t>(item - items.begin()));
        });
    }

    // The options window, which is made by the load.
    frmOptions& Options()
    {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* options = dynamic_cast<frmOptions*>(widget))
                return *options;
        }
        throw std::logic_error("there are no options");
    }
};

} // namespace lantern
