// SPDX-License-Identifier: GPL-3.0-or-later
#include "InteractiveMove.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>

#include <gtest/gtest.h>

#include <array>
#include <memory>

namespace lantern {
namespace {

constexpr QRect kStart(100, 200, 300, 150);
constexpr QSize kMinimum(120, 80);
constexpr QSize kMaximum(500, 400);

constexpr std::array kCodes = {HitCode::Caption, HitCode::Left,       HitCode::Right,
                               HitCode::Top,     HitCode::TopLeft,    HitCode::TopRight,
                               HitCode::Bottom,  HitCode::BottomLeft, HitCode::BottomRight};

QRect Dragged(HitCode code, int dx, int dy)
{
    return DraggedGeometry(kStart, QPoint(dx, dy), code, kMinimum, kMaximum);
}

TEST(DraggedGeometry, EachCodeMovesWhatThePointerHolds)
{
    EXPECT_EQ(Dragged(HitCode::Caption, 10, -20), QRect(110, 180, 300, 150));
    EXPECT_EQ(Dragged(HitCode::Left, 10, -20), QRect(110, 200, 290, 150));
    EXPECT_EQ(Dragged(HitCode::Right, 10, -20), QRect(100, 200, 310, 150));
    EXPECT_EQ(Dragged(HitCode::Top, 10, -20), QRect(100, 180, 300, 170));
    EXPECT_EQ(Dragged(HitCode::TopLeft, 10, -20), QRect(110, 180, 290, 170));
    EXPECT_EQ(Dragged(HitCode::TopRight, 10, -20), QRect(100, 180, 310, 170));
    EXPECT_EQ(Dragged(HitCode::Bottom, 10, -20), QRect(100, 200, 300, 130));
    EXPECT_EQ(Dragged(HitCode::BottomLeft, 10, -20), QRect(110, 200, 290, 130));
    EXPECT_EQ(Dragged(HitCode::BottomRight, 10, -20), QRect(100, 200, 310, 130));
}

TEST(DraggedGeometry, AtTheLimitsTheOtherEdgesStayFixed)
{
    for (const HitCode code : kCodes) {
        for (int dx = -600; dx <= 600; dx += 40) {
            for (int dy = -600; dy <= 600; dy += 40) {
                const QRect rect = Dragged(code, dx, dy);
                const Qt::Edges edges = EdgesOf(code);
                if (!edges) {
                    EXPECT_EQ(rect.size(), kStart.size());
                    continue;
                }
                EXPECT_EQ(rect.size(), rect.size().expandedTo(kMinimum).boundedTo(kMaximum));
                if (!edges.testFlag(Qt::LeftEdge)) {
                    EXPECT_EQ(rect.left(), kStart.left());
                }
                if (!edges.testFlag(Qt::RightEdge)) {
                    EXPECT_EQ(rect.right(), kStart.right());
                }
                if (!edges.testFlag(Qt::TopEdge)) {
                    EXPECT_EQ(rect.top(), kStart.top());
                }
                if (!edges.testFlag(Qt::BottomEdge)) {
                    EXPECT_EQ(rect.bottom(), kStart.bottom());
                }
            }
        }
    }
}

TEST(DraggedGeometry, WithoutAMinimumOnePixelIsLeft)
{
    EXPECT_EQ(DraggedGeometry(kStart, {-900, -900}, HitCode::BottomRight, {0, 0}, kMaximum),
              QRect(100, 200, 1, 1));
}

TEST(EndsOperation, AnyOfTheFiveSignsEndsIt)
{
    for (const QEvent::Type type : {QEvent::MouseButtonRelease, QEvent::MouseButtonPress,
                                    QEvent::MouseButtonDblClick, QEvent::Enter, QEvent::Hide})
        EXPECT_TRUE(EndsOperation(type, Qt::NoButton, false)) << type;
    EXPECT_TRUE(EndsOperation(QEvent::MouseMove, Qt::NoButton, false));
    EXPECT_TRUE(EndsOperation(QEvent::WindowActivate, Qt::NoButton, true));
}

TEST(EndsOperation, WhatBelongsToItDoesNot)
{
    EXPECT_FALSE(EndsOperation(QEvent::MouseMove, Qt::LeftButton, true));
    EXPECT_FALSE(EndsOperation(QEvent::WindowDeactivate, Qt::NoButton, false));
    // The click that begins it may activate the window a little later.
    EXPECT_FALSE(EndsOperation(QEvent::WindowActivate, Qt::NoButton, false));
    for (const QEvent::Type type : {QEvent::Move, QEvent::Resize, QEvent::Leave, QEvent::Paint})
        EXPECT_FALSE(EndsOperation(type, Qt::NoButton, true)) << type;
}

// On a platform without a window manager, where the drag is our own.
class InteractiveMoveTest : public ::testing::Test {
protected:
    InteractiveMoveTest()
    {
        window.setWindowFlag(Qt::FramelessWindowHint);
        window.setMinimumSize(kMinimum);
        window.setGeometry(kStart);
        window.show();
        QCoreApplication::processEvents();
    }

    void Start(HitCode code)
    {
        move->Start(window, code, kPointer, [this] { ++ended; });
    }
    void Mouse(QEvent::Type type, QPoint distance, Qt::MouseButton button, Qt::MouseButtons buttons)
    {
        const QPointF global = kPointer + distance;
        QMouseEvent event(type, window.mapFromGlobal(global), global, button, buttons,
                          Qt::NoModifier);
        QApplication::sendEvent(&window, &event);
    }
    void MoveBy(int dx, int dy)
    {
        Mouse(QEvent::MouseMove, {dx, dy}, Qt::NoButton, Qt::LeftButton);
    }
    void Release(int dx, int dy)
    {
        Mouse(QEvent::MouseButtonRelease, {dx, dy}, Qt::LeftButton, Qt::NoButton);
    }

    static constexpr QPoint kPointer{150, 250};

    class Window : public QWidget {
    public:
        int mouseEvents = 0;

    protected:
        void mouseMoveEvent(QMouseEvent*) override { ++mouseEvents; }
        void mouseReleaseEvent(QMouseEvent*) override { ++mouseEvents; }
    };
    Window window;
    int ended = 0;
    std::unique_ptr<InteractiveMove> move = std::make_unique<InteractiveMove>();
};

TEST_F(InteractiveMoveTest, TheWindowFollowsThePointerUntilTheRelease)
{
    Start(HitCode::Caption);
    EXPECT_TRUE(move->IsRunning());
    MoveBy(10, 5);
    EXPECT_EQ(window.geometry(), kStart.translated(10, 5));
    MoveBy(-30, 40);
    EXPECT_EQ(window.geometry(), kStart.translated(-30, 40));
    EXPECT_EQ(ended, 0);
    Release(-30, 40);
    EXPECT_EQ(ended, 1);
    EXPECT_FALSE(move->IsRunning());
    EXPECT_EQ(window.mouseEvents, 0); // not even the release
    MoveBy(100, 100);
    EXPECT_EQ(window.geometry(), kStart.translated(-30, 40));
    EXPECT_EQ(window.mouseEvents, 1);
}

TEST_F(InteractiveMoveTest, AnEdgeStopsAtTheMinimumSize)
{
    Start(HitCode::TopLeft);
    MoveBy(1000, 1000);
    EXPECT_EQ(window.geometry(), QRect(280, 270, 120, 80));
    EXPECT_EQ(window.geometry().bottomRight(), kStart.bottomRight());
    Release(1000, 1000);
    EXPECT_EQ(ended, 1);
}

TEST_F(InteractiveMoveTest, EscapeGivesTheGeometryBack)
{
    Start(HitCode::Bottom);
    MoveBy(0, 60);
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QApplication::sendEvent(&window, &escape);
    EXPECT_EQ(window.geometry(), kStart);
    EXPECT_EQ(ended, 1);
}

TEST_F(InteractiveMoveTest, AMoveWithoutButtonEndsItToo)
{
    Start(HitCode::Caption);
    Mouse(QEvent::MouseMove, {7, 7}, Qt::NoButton, Qt::NoButton);
    EXPECT_EQ(window.geometry(), kStart);
    EXPECT_EQ(ended, 1);
}

TEST_F(InteractiveMoveTest, ASecondStartWaitsForTheEndOfTheFirst)
{
    Start(HitCode::Caption);
    Start(HitCode::Right);
    MoveBy(10, 10);
    EXPECT_EQ(window.geometry(), kStart.translated(10, 10));
    Release(10, 10);
    EXPECT_EQ(ended, 1);
}

TEST_F(InteractiveMoveTest, AHiddenWindowIsNotMoved)
{
    window.hide();
    Start(HitCode::Caption);
    EXPECT_FALSE(move->IsRunning());
    EXPECT_EQ(ended, 1);
}

TEST_F(InteractiveMoveTest, HidingTheWindowEndsIt)
{
    Start(HitCode::Caption);
    window.hide();
    EXPECT_FALSE(move->IsRunning());
    EXPECT_EQ(ended, 1);
}

TEST_F(InteractiveMoveTest, TheEndMayDestroyIt)
{
    move->Start(window, HitCode::Caption, kPointer, [this] { move.reset(); });
    Release(0, 0);
    EXPECT_EQ(move, nullptr);
}

TEST_F(InteractiveMoveTest, DestroyedInMidDragItLeavesTheMouseAlone)
{
    Start(HitCode::Caption);
    move.reset();
    MoveBy(5, 5);
    EXPECT_EQ(window.geometry(), kStart);
    EXPECT_EQ(window.mouseEvents, 1);
    EXPECT_EQ(ended, 0);
}

} // namespace
} // namespace lantern
