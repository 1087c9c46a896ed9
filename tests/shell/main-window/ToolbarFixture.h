// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Toolbar.h"
#include "ToolbarLayout.h"

#include <QApplication>
#include <QCursor>
#include <QTest>
#include <QWindow>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace lantern {

// A window with a picture and the toolbar, and a hand on the mouse.
class ToolbarFixture : public ::testing::Test {
protected:
    static constexpr int kWide = 600;
    static constexpr int kNarrow = 338; // the narrowest that the main window gets
    static constexpr int kHeight = 120;

    ToolbarFixture()
    {
        pic.setFocusPolicy(Qt::StrongFocus);
        pic.setGeometry(0, 0, kWide, 40);
        toolbar.SetupToolbar();
        toolbar.Click = [this](CommandId command) { clicks.push_back(command); };
        toolbar.SliderChange = [this] { log.emplace_back("slider"); };
        toolbar.VolumeChange = [this] { log.emplace_back("volume"); };
        SetWidth(kWide);
    }

    void SetWidth(int pixels)
    {
        // At any other place the offscreen platform scales the pointer's way to the window.
        window.setGeometry(0, 0, pixels, kHeight);
        toolbar.Place(TBarRect({pixels * 15, kHeight * 15}, 150));
    }
    void Show()
    {
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
        QApplication::setActiveWindow(&window);
        MoveTo({1, 1});
        MoveTo({2, 2});
    }

    QPoint CentreOf(QWidget& widget) { return widget.mapTo(&window, widget.rect().center()); }
    // A place of the button that none in front of it covers.
    QPoint FreePlaceOf(CommandId command)
    {
        ctlPicBtn& button = toolbar.tBtn(command);
        for (const QPoint at : {button.rect().center(), QPoint(2, button.height() / 2)}) {
            const QPoint inWindow = button.mapTo(&window, at);
            if (window.childAt(inWindow) == &button)
                return inWindow;
        }
        ADD_FAILURE() << NumberOf(command) << " is covered";
        return {};
    }
    void MoveTo(QPoint inWindow)
    {
        QCursor::setPos(window.mapToGlobal(inWindow));
        QCoreApplication::processEvents();
    }
    void Press(QPoint at, Qt::MouseButton which = Qt::LeftButton)
    {
        QTest::mousePress(window.windowHandle(), which, {}, at);
    }
    void Release(QPoint at, Qt::MouseButton which = Qt::LeftButton)
    {
        QTest::mouseRelease(window.windowHandle(), which, {}, at);
    }
    void ClickAt(QPoint at, Qt::MouseButton which = Qt::LeftButton)
    {
        Press(at, which);
        Release(at, which);
    }

    QWidget window;
    QWidget pic{&window};
    Toolbar toolbar{window, pic, {}};
    std::vector<CommandId> clicks;
    std::vector<std::string> log;
};

} // namespace lantern
