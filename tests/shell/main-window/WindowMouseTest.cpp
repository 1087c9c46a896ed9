// SPDX-License-Identifier: GPL-3.0-or-later
#include "WindowHand.h"

#include "ScreenMetrics.h"

namespace lantern {
namespace {

class WindowMouseTest : public WindowHand {
protected:
    // Where the pointer goes with the left button held, the window follows.
    QPoint DraggedBy(QPoint from, QPoint distance)
    {
        const QPoint before = window.pos();
        MouseDown(from);
        MouseMove(from + distance / 4);
        // The window has moved under the pointer by now or has not: ask where the pointer is.
        MouseMove(window.mapFromGlobal(before + from + distance));
        MouseUp(window.mapFromGlobal(before + from + distance));
        return window.pos() - before;
    }

    ctlFrame& TBar() { return PartNamed<ctlFrame>("TBar"); }
};

TEST_F(WindowMouseTest, TheWindowMovesByItsBody)
{
    Load();
    Press('C'); // the message line stands for three seconds
    const QPoint distance(-40, 60);
    EXPECT_EQ(DraggedBy(MiddleOf("pic"), distance), distance);
    EXPECT_EQ(DraggedBy(MiddleOf("SystemText"), -distance), -distance);
    for (const char* part : {"TBar", "TBar2"})
        EXPECT_EQ(DraggedBy(BarePlaceOf(part), distance), distance) << part;
    EXPECT_EQ(DraggedBy(MiddleOf("PlayTicker"), -distance), -distance);
}

TEST_F(WindowMouseTest, TheSkinMovesAndSizesTheWindow)
{
    Load();
    const QSize size = window.size();
    EXPECT_NE(DraggedBy({12, 200}, QPoint(40, 20)), QPoint(0, 0));
    EXPECT_EQ(window.size(), size);
    DraggedBy({window.width() - 1, window.height() - 1}, QPoint(80, 80));
    EXPECT_GT(window.width(), size.width());
    EXPECT_GT(window.height(), size.height());
}

TEST_F(WindowMouseTest, TheWindowIsNotSizedBelowItsMinimum)
{
    Load();
    DraggedBy({window.width() - 1, window.height() - 1}, QPoint(-600, -480));
    EXPECT_EQ(window.size(), QSize(338, 295));
}

TEST_F(WindowMouseTest, APressWithoutAMovementMovesNothing)
{
    Load();
    const QPoint before = window.pos();
    Click(MiddleOf("pic"));
    MouseMove(MiddleOf("pic") + QPoint(30, 30));
    EXPECT_EQ(window.pos(), before);
}

TEST_F(WindowMouseTest, OtherButtonsAndBothAtOnceMoveNothing)
{
    Load();
    const QPoint before = window.pos();
    const QPoint at = MiddleOf("pic");
    MouseDown(at, Qt::MiddleButton);
    MouseMove(at + QPoint(30, 30));
    MouseUp(at, Qt::MiddleButton);
    MouseDown(at);
    MouseDown(at, Qt::MiddleButton);
    MouseMove(at + QPoint(30, 30));
    MouseUp(at, Qt::MiddleButton);
    MouseUp(at);
    EXPECT_EQ(window.pos(), before);
}

// The toolkit knows the buttons at the side of a mouse, the window doesn't.
TEST_F(WindowMouseTest, AButtonWithoutNumberDoesNotHinderAMove)
{
    Load();
    const QPoint at = MiddleOf("pic");
    const QPoint distance(40, 40);
    MouseDown(at, Qt::BackButton);
    EXPECT_EQ(DraggedBy(at, distance), distance) << "held all the time";
    MouseUp(at, Qt::BackButton);

    const QPoint before = window.pos();
    MouseDown(at);
    MouseDown(at, Qt::BackButton);
    MouseUp(at, Qt::BackButton);
    MouseMove(at + QPoint(10, 10));
    MouseMove(at + distance);
    EXPECT_EQ(window.pos() - before, distance) << "clicked after the press";
    MouseUp(at);
}

TEST_F(WindowMouseTest, TheFullScreenDoesNotMove)
{
    Load();
    Press('F');
    Settle();
    EXPECT_EQ(DraggedBy(MiddleOf("pic"), QPoint(30, 30)), QPoint(0, 0));
    EXPECT_TRUE(window.isFullScreen());
}

TEST_F(WindowMouseTest, TheRightButtonOpensTheMenuOnEachBarePart)
{
    Load();
    Press('C');
    const auto opens = [this](QPoint at) {
        return WithMenu([&] { Click(at, Qt::RightButton); }, [](frmMenus&) {});
    };
    EXPECT_TRUE(opens(MiddleOf("pic")));
    EXPECT_TRUE(opens(MiddleOf("SystemText")));
    EXPECT_TRUE(opens(MiddleOf("PlayTicker")));
    EXPECT_TRUE(opens(BarePlaceOf("TBar")));
    EXPECT_TRUE(opens(BarePlaceOf("TBar2")));
    EXPECT_TRUE(opens({10, 100})) << "the skin";
    EXPECT_FALSE(opens(MiddleOf("tBtn(0)"))) << "a button has no menu";
    Press('F');
    Settle();
    EXPECT_TRUE(opens({5, 5})) << "the window itself";
}

TEST_F(WindowMouseTest, OneClickOpensOneMenu)
{
    Load();
    int menus = 0;
    QTimer poll;
    poll.callOnTimeout(&window, [&] {
        if (auto* menu = dynamic_cast<frmMenus*>(QApplication::activePopupWidget())) {
            ++menus;
            QTest::keyClick(menu, Qt::Key_Escape);
        }
    });
    poll.start(1);
    Click(MiddleOf("pic"), Qt::RightButton);
    QTest::qWait(30);
    EXPECT_EQ(menus, 1);
}

TEST_F(WindowMouseTest, ADoubleClickOnPictureAndSkinTogglesFullScreen)
{
    Load();
    for (const QPoint at : {MiddleOf("pic"), QPoint(12, 100)}) {
        QTest::mouseDClick(window.windowHandle(), Qt::LeftButton, {}, at);
        Settle();
        ASSERT_TRUE(window.isFullScreen());
        QTest::mouseDClick(window.windowHandle(), Qt::LeftButton, {}, {8, 8});
        Settle();
        ASSERT_FALSE(window.isFullScreen());
    }
    QTest::mouseDClick(window.windowHandle(), Qt::LeftButton, {}, BarePlaceOf("TBar"));
    EXPECT_FALSE(window.isFullScreen()) << "not by the bar";
    QMouseEvent right(QEvent::MouseButtonDblClick, {9, 9}, {9, 9}, Qt::RightButton, Qt::RightButton,
                      Qt::NoModifier);
    QCoreApplication::sendEvent(&PartNamed("pic"), &right);
    EXPECT_FALSE(window.isFullScreen()) << "nor with the other button";
}

TEST_F(WindowMouseTest, TheSecondPressOfADoubleClickOnTheBarMovesTheWindowLikeTheFirst)
{
    Load();
    const QPoint at = BarePlaceOf("TBar");
    const QPoint before = window.pos();
    const int moment = QTest::lastMouseTimestamp;
    Click(at);
    QTest::lastMouseTimestamp = moment + 2; // the hand is quick
    MouseDown(at);
    MouseMove(at + QPoint(10, 10));
    MouseMove(at + QPoint(40, 40));
    MouseUp(at);
    EXPECT_EQ(window.pos() - before, QPoint(40, 40));
    EXPECT_FALSE(window.isFullScreen());
}

TEST_F(WindowMouseTest, InFullScreenTheBarComesAndGoesWithThePointer)
{
    Load();
    MouseMove(MiddleOf("pic"));
    Press('F');
    Settle();
    const QRect without = PartNamed("pic").geometry();
    EXPECT_FALSE(TBar().isVisible());
    EXPECT_TRUE(IsPointerBlank(PartNamed("pic")));
    EXPECT_TRUE(IsPointerBlank(window));

    MouseMove({window.width() / 2, window.height() - 2});
    EXPECT_TRUE(TBar().isVisible());
    EXPECT_FALSE(IsPointerBlank(PartNamed("pic")));
    EXPECT_FALSE(IsPointerBlank(window));
    const QRect with = PartNamed("pic").geometry();
    EXPECT_LT(with.top(), without.top()) << "the picture gives way";
    EXPECT_LT(with.bottom(), TBar().y());

    MouseMove(MiddleOf("tBtn(0)"));
    EXPECT_TRUE(TBar().isVisible()) << "over the bar it stays";

    MouseMove(MiddleOf("pic"));
    EXPECT_FALSE(TBar().isVisible());
    EXPECT_TRUE(IsPointerBlank(window));
    EXPECT_EQ(PartNamed("pic").geometry(), without);
}

TEST_F(WindowMouseTest, TheBarComesAtItsTopEdgeAndNotAbove)
{
    Load();
    Press('F');
    Settle();
    const int top = DesktopRect().height() - 48 - 5;
    MouseMove({2, top});
    EXPECT_TRUE(TBar().isVisible());
    EXPECT_EQ(TBar().y(), top);
    MouseMove({2, top - 1});
    EXPECT_FALSE(TBar().isVisible());
}

TEST_F(WindowMouseTest, OutsideFullScreenThePointerHidesNothing)
{
    Load();
    MouseMove(MiddleOf("pic"));
    MouseMove({10, 100});
    EXPECT_TRUE(TBar().isVisible());
    EXPECT_TRUE(PartNamed("Skinner").isVisible());
}

TEST_F(WindowMouseTest, TheSkinIsHiddenInFullScreen)
{
    Load();
    EXPECT_EQ(PartNamed("Skinner").geometry(), window.rect());
    Press('F');
    Settle();
    EXPECT_FALSE(PartNamed("Skinner").isVisible());
    Press('2');
    Settle();
    EXPECT_TRUE(PartNamed("Skinner").isVisible());
    EXPECT_EQ(PartNamed("Skinner").geometry(), window.rect());
}

} // namespace
} // namespace lantern
