// SPDX-License-Identifier: GPL-3.0-or-later
#include "FullScreen.h"

#include <QCoreApplication>
#include <QScreen>
#include <QWidget>

#include <gtest/gtest.h>

namespace lantern {
namespace {

class FullScreenTest : public ::testing::Test {
protected:
    FullScreenTest() : fullScreen(window) { window.setGeometry(40, 50, 320, 240); }

    QWidget window;
    FullScreen fullScreen;
};

TEST_F(FullScreenTest, AVisibleWindowTakesTheScreenAndComesBackToItsGeometry)
{
    window.show();
    QCoreApplication::processEvents();
    const QRect normal = window.geometry();
    fullScreen.Enter();
    QCoreApplication::processEvents();
    EXPECT_TRUE(fullScreen.IsOn());
    EXPECT_EQ(window.geometry(), window.screen()->geometry());
    fullScreen.Leave();
    EXPECT_FALSE(fullScreen.IsOn());
    EXPECT_EQ(window.geometry(), normal); // at once, for the layout
    QCoreApplication::processEvents();
    EXPECT_EQ(window.geometry(), normal);
}

TEST_F(FullScreenTest, AHiddenWindowComesUpOnTheWholeScreen)
{
    fullScreen.Enter();
    window.show();
    QCoreApplication::processEvents();
    EXPECT_TRUE(fullScreen.IsOn());
    EXPECT_EQ(window.geometry(), window.screen()->geometry());
    fullScreen.Leave();
    QCoreApplication::processEvents();
    EXPECT_EQ(window.size(), QSize(320, 240));
}

TEST_F(FullScreenTest, EnteringTwiceKeepsTheNormalGeometry)
{
    window.show();
    fullScreen.Enter();
    QCoreApplication::processEvents();
    fullScreen.Enter();
    fullScreen.Leave();
    EXPECT_EQ(window.size(), QSize(320, 240));
}

TEST_F(FullScreenTest, LeavingANormalWindowMovesNothing)
{
    window.show();
    QCoreApplication::processEvents();
    const QRect normal = window.geometry();
    fullScreen.Leave();
    EXPECT_EQ(window.geometry(), normal);
}

} // namespace
} // namespace lantern
