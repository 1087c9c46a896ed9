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
    FullScreenTest() : fullScreen(window)
    {
        window.setWindowFlag(Qt::FramelessWindowHint);
        window.setGeometry(40, 50, 320, 240);
    }

    // As a user sizes the window, long after it has come up.
    QRect ShowAt(const QRect& geometry)
    {
        window.show();
        QCoreApplication::processEvents();
        window.windowHandle()->setGeometry(geometry);
        QCoreApplication::processEvents();
        return window.geometry();
    }

    // Past the window itself, as its manager does.
    void ManagerSets(Qt::WindowState state)
    {
        window.windowHandle()->setWindowState(state);
        QCoreApplication::processEvents();
    }

    static void Wait(int milliseconds)
    {
        QElapsedTimer waited;
        waited.start();
        while (waited.elapsed() < milliseconds)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    }

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

TEST_F(FullScreenTest, AFullScreenByTheWindowManagerIsLeftToTheGeometryOfBefore)
{
    fullScreen.Place({0, 0, 320, 240});
    const QRect normal = ShowAt({30, 40, 500, 400});
    ManagerSets(Qt::WindowFullScreen);
    ASSERT_TRUE(fullScreen.IsOn());
    ASSERT_EQ(window.geometry(), window.screen()->geometry());
    fullScreen.Leave();
    EXPECT_FALSE(fullScreen.IsOn());
    EXPECT_EQ(window.geometry(), normal);
    Wait(400);
    EXPECT_EQ(window.geometry(), normal);
}

TEST_F(FullScreenTest, ASizeThatComesBeforeTheStateIsNotTakenForTheNormalOne)
{
    const QRect normal = ShowAt({30, 40, 500, 400});
    window.windowHandle()->setGeometry(window.screen()->geometry());
    QCoreApplication::processEvents();
    ManagerSets(Qt::WindowFullScreen);
    fullScreen.Leave();
    EXPECT_EQ(window.geometry(), normal);
}

// A window manager sizes it at once, and the state is told when it is shown again.
TEST_F(FullScreenTest, AMinimisedWindowThatWasMadeFullKeepsTheNormalGeometry)
{
    const QRect normal = ShowAt({30, 40, 500, 400});
    window.windowHandle()->setGeometry(window.screen()->geometry());
    window.setWindowState(Qt::WindowMinimized); // this platform sizes no minimised window
    Wait(400);
    ManagerSets(Qt::WindowFullScreen);
    ASSERT_TRUE(fullScreen.IsOn());
    fullScreen.Leave();
    Wait(400);
    EXPECT_EQ(window.geometry(), normal);
}

TEST_F(FullScreenTest, AStateThatEndsBeforeItsSizeKeepsTheNormalGeometry)
{
    const QRect normal = ShowAt({30, 40, 500, 400});
    const QRect whole = window.screen()->geometry();
    ManagerSets(Qt::WindowFullScreen);
    window.windowHandle()->setWindowState(Qt::WindowNoState);
    window.windowHandle()->setGeometry(whole);
    QCoreApplication::processEvents();
    ASSERT_EQ(window.size(), whole.size());
    ManagerSets(Qt::WindowFullScreen);
    fullScreen.Leave();
    EXPECT_EQ(window.geometry(), normal);
}

TEST_F(FullScreenTest, AWindowAsLargeAsTheScreenIsANormalOneOnceItStaysSo)
{
    ShowAt({30, 40, 500, 400});
    const QRect larger = window.screen()->geometry().translated(7, 9);
    window.windowHandle()->setGeometry(larger);
    Wait(400);
    ManagerSets(Qt::WindowFullScreen);
    fullScreen.Leave();
    EXPECT_EQ(window.geometry(), larger);
}

TEST_F(FullScreenTest, AMaximisedWindowComesBackToTheGeometryBeforeItWasMaximised)
{
    const QRect normal = ShowAt({30, 40, 500, 400});
    ManagerSets(Qt::WindowMaximized);
    ASSERT_NE(window.geometry(), normal);
    fullScreen.Enter();
    QCoreApplication::processEvents();
    fullScreen.Leave();
    EXPECT_EQ(window.geometry(), normal);
    EXPECT_FALSE(window.isMaximized());
}

TEST_F(FullScreenTest, AManagerThatMaximisesItAgainOnTheWayBackIsCorrected)
{
    const QRect normal = ShowAt({30, 40, 500, 400});
    ManagerSets(Qt::WindowMaximized);
    fullScreen.Enter();
    QCoreApplication::processEvents();
    fullScreen.Leave();
    ManagerSets(Qt::WindowMaximized);
    QCoreApplication::processEvents();
    EXPECT_FALSE(window.isMaximized());
    EXPECT_EQ(window.geometry(), normal);
    Wait(600);
    EXPECT_EQ(window.geometry(), normal);
    ManagerSets(Qt::WindowMaximized);
    Wait(400);
    EXPECT_TRUE(window.isMaximized()) << "that is the user's wish";
}

TEST_F(FullScreenTest, AMoveJustAfterTheWayBackIsKept)
{
    const QRect normal = ShowAt({30, 40, 500, 400});
    fullScreen.Enter();
    QCoreApplication::processEvents();
    fullScreen.Leave();
    const QRect moved = normal.translated(20, 10);
    window.windowHandle()->setGeometry(moved);
    Wait(400);
    ASSERT_EQ(window.geometry(), moved);
    ManagerSets(Qt::WindowFullScreen);
    fullScreen.Leave();
    EXPECT_EQ(window.geometry(), moved);
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
