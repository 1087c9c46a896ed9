// SPDX-License-Identifier: GPL-3.0-or-later
#include "FullScreen.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QScreen>
#include <QWidget>
#include <QWindow>

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

TEST_F(FullScreenTest, AnOldGeometryThatComesBackLateIsReplacedByTheOneThatWasSet)
{
    window.show();
    QCoreApplication::processEvents();
    const QRect old = window.geometry();
    const QRect wanted(10, 20, 400, 300);
    fullScreen.Enter();
    QCoreApplication::processEvents();
    fullScreen.Leave();
    fullScreen.Place(wanted);
    QCoreApplication::processEvents();
    window.windowHandle()->setGeometry(old); // as the window system does
    QCoreApplication::processEvents();
    ASSERT_NE(window.geometry(), wanted);
    QElapsedTimer waited;
    waited.start();
    while (window.geometry() != wanted && waited.elapsed() < 5000)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
    EXPECT_EQ(window.geometry(), wanted);
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

TEST_F(FullScreenTest, ToggledFasterThanTheWindowSystemAnswersItKeepsTheNormalGeometry)
{
    window.show();
    QCoreApplication::processEvents();
    const QRect normal = window.geometry();
    fullScreen.Enter();
    QCoreApplication::processEvents();
    fullScreen.Leave();
    window.windowHandle()->setGeometry(window.screen()->geometry()); // of the full screen, late
    QCoreApplication::processEvents();
    ASSERT_NE(window.geometry(), normal);
    fullScreen.Enter();
    fullScreen.Leave();
    EXPECT_EQ(window.geometry(), normal);
}

TEST_F(FullScreenTest, AWindowWhoseScreenIsGoneComesBackOnOneThatIsThere)
{
    window.show();
    QCoreApplication::processEvents();
    window.setGeometry(20000, 300, 320, 240);
    QCoreApplication::processEvents();
    ASSERT_GT(window.x(), 10000);
    fullScreen.Enter();
    QCoreApplication::processEvents();
    fullScreen.Leave();
    EXPECT_TRUE(window.screen()->geometry().contains(window.geometry()));
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
