// SPDX-License-Identifier: GPL-3.0-or-later
// What both buttons make of the mouse.
#include "ButtonFixture.h"

namespace lantern {
namespace {

template <typename Button>
class ButtonMouse : public ButtonTest<Button> {
};
TYPED_TEST_SUITE(ButtonMouse, BothButtons);

TYPED_TEST(ButtonMouse, ThePointerMakesItHotAndTheTimerCoolsIt)
{
    this->MoveTo(this->kInside);
    EXPECT_EQ(this->button->look, ButtonLook::Hot);
    EXPECT_EQ(this->Logged(), Log{"MouseOver"});
    this->MoveTo(this->kInsideToo);
    this->WaitForTicks();
    EXPECT_EQ(this->Logged(), Log{}); // once
    EXPECT_EQ(this->button->drawn, 1);
    this->MoveTo(this->kAway);
    this->WaitForTicks();
    EXPECT_EQ(this->button->look, ButtonLook::Normal);
    EXPECT_EQ(this->Logged(), Log{"MouseOut"});
}

TYPED_TEST(ButtonMouse, TheTimerRunsOnlyWhileThePointerIsOverTheButton)
{
    this->WaitForTicks();
    EXPECT_EQ(this->button->ticks, 0);
    this->MoveTo(this->kInside);
    this->WaitForTicks();
    EXPECT_GE(this->button->ticks, 5); // of 66, but the machine may be busy
    this->MoveTo(this->kAway);
    this->WaitForTicks();
    const int ticks = this->button->ticks;
    this->WaitForTicks();
    EXPECT_EQ(this->button->ticks, ticks);
}

TYPED_TEST(ButtonMouse, EveryMoveIsRaisedWithItsButtons)
{
    std::vector<int> buttons;
    this->button->MouseMove = [&](const MouseReport& report) { buttons.push_back(report.button); };
    this->MoveTo(this->kInside);
    this->Press(this->kInside);
    this->MoveTo(this->kInsideToo);
    this->Press(this->kInsideToo, Qt::RightButton);
    this->MoveTo(this->kInside);
    EXPECT_EQ(buttons, (std::vector<int>{0, 1, 3}));
    this->Release(this->kInside, Qt::RightButton);
    this->Release(this->kInside);
}

TYPED_TEST(ButtonMouse, AClickIsAPressAndAReleaseAndThenTheClick)
{
    this->MoveTo(this->kInside);
    this->Logged();
    this->Press(this->kInside, Qt::LeftButton, Qt::ShiftModifier | Qt::AltModifier);
    EXPECT_EQ(this->button->look, ButtonLook::Down);
    EXPECT_EQ(this->Logged(), Log{"MouseDown 1 5 32,10"});
    this->Release(this->kInside);
    EXPECT_EQ(this->button->look, ButtonLook::Hot); // no move came in between
    EXPECT_EQ(this->Logged(), (Log{"MouseUp 1 0 32,10", "Click"}));
}

TYPED_TEST(ButtonMouse, AMoveDuringThePressCoolsItUntilTheNextMove)
{
    this->MoveTo(this->kInside);
    this->Press(this->kInside);
    this->MoveTo(this->kInsideToo);
    EXPECT_EQ(this->button->look, ButtonLook::Down);
    this->Logged();
    this->Release(this->kInsideToo);
    EXPECT_EQ(this->button->look, ButtonLook::Normal);
    this->MoveTo(this->kInside);
    EXPECT_EQ(this->button->look, ButtonLook::Hot);
    EXPECT_EQ(this->Logged(), (Log{"MouseUp 1 0 20,14", "Click", "MouseOver"}));
}

TYPED_TEST(ButtonMouse, DraggedOffItShowsItselfNormalAndDownAgainWhenThePointerIsBack)
{
    this->MoveTo(this->kInside);
    this->Press(this->kInside);
    this->MoveTo(this->kInsideToo);
    this->MoveTo(this->kAway);
    EXPECT_EQ(this->button->look, ButtonLook::Normal);
    this->MoveTo(this->kInside);
    EXPECT_EQ(this->button->look, ButtonLook::Down);
    this->Release(this->kInside);
    EXPECT_EQ(this->CountOf("Click"), 1);
}

// Pressed and dragged off without a move in between, it is left hot until the timer's next tick.
TYPED_TEST(ButtonMouse, AReleaseOutsideIsNoClick)
{
    this->MoveTo(this->kInside);
    this->Press(this->kInside);
    this->MoveTo(this->kAway);
    this->WaitForTicks();
    this->Logged();
    this->Release(this->kAway);
    EXPECT_EQ(this->button->look, ButtonLook::Normal);
    EXPECT_EQ(this->Logged(), Log{"MouseUp 1 0 212,122"});
}

TYPED_TEST(ButtonMouse, LeavingDuringAPressIsToldByTheTimerThatRanBefore)
{
    this->MoveTo(this->kInside);
    this->Press(this->kInside);
    this->MoveTo(this->kAway);
    this->WaitForTicks();
    EXPECT_EQ(this->CountOf("MouseOut"), 1);
    EXPECT_EQ(this->button->look, ButtonLook::Normal);
}

TYPED_TEST(ButtonMouse, TheRightEdgeIsOutside)
{
    this->MoveTo(QPoint(99, 53));
    EXPECT_EQ(this->Logged(), Log{"MouseOver"});
    this->Press(QPoint(99, 53));
    this->MoveTo(QPoint(100, 53));
    this->Release(QPoint(100, 53));
    EXPECT_EQ(this->CountOf("Click"), 0);
}

TYPED_TEST(ButtonMouse, TheRightButtonDrawsNothingAndClicksNothing)
{
    this->MoveTo(this->kInside);
    this->Logged();
    this->button->drawn = 0;
    this->Press(this->kInside, Qt::RightButton);
    EXPECT_EQ(this->button->drawn, 0);
    this->Release(this->kInside, Qt::RightButton);
    EXPECT_EQ(this->button->drawn, 0);
    EXPECT_EQ(this->Logged(), (Log{"MouseDown 2 0 32,10", "MouseUp 2 0 32,10"}));
}

TYPED_TEST(ButtonMouse, TheMiddleButtonDrawsButDoesNotClick)
{
    this->MoveTo(this->kInside);
    this->Logged();
    this->Press(this->kInside, Qt::MiddleButton);
    EXPECT_EQ(this->button->look, ButtonLook::Down);
    this->Release(this->kInside, Qt::MiddleButton);
    EXPECT_EQ(this->button->look, ButtonLook::Hot);
    EXPECT_EQ(this->Logged(), (Log{"MouseDown 4 0 32,10", "MouseUp 4 0 32,10"}));
}

TYPED_TEST(ButtonMouse, AButtonWithoutANumberDoesNothing)
{
    this->MoveTo(this->kInside);
    for (const Qt::MouseButton last : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton}) {
        this->Press(this->kInside, last);
        this->Release(this->kInside, last);
        this->Logged();
        this->button->drawn = 0;
        for (const Qt::MouseButton which : {Qt::BackButton, Qt::ForwardButton, Qt::TaskButton})
            QTest::mouseDClick(this->window.windowHandle(), which, {}, this->kInside);
        EXPECT_EQ(this->Logged(), Log{});
        EXPECT_EQ(this->button->drawn, 0);
    }
}

TYPED_TEST(ButtonMouse, AButtonWithoutANumberLeavesThePressOfAnotherAsItIs)
{
    this->MoveTo(this->kInside);
    this->Press(this->kInside);
    this->Logged();
    this->Press(this->kInside, Qt::BackButton);
    this->MoveTo(this->kInsideToo);
    EXPECT_EQ(this->button->look, ButtonLook::Down);
    this->Release(this->kInsideToo, Qt::BackButton);
    EXPECT_EQ(this->Logged(), Log{});
    EXPECT_EQ(this->button->look, ButtonLook::Down);
    this->Release(this->kInsideToo);
    EXPECT_EQ(this->Logged(), (Log{"MouseUp 1 0 20,14", "Click"}));
}

TYPED_TEST(ButtonMouse, AButtonWithoutANumberThatIsHeldTakesNoClickAway)
{
    this->MoveTo(this->kInside);
    this->Press(this->kInside, Qt::BackButton);
    this->Logged();
    this->Press(this->kInside);
    this->Release(this->kInside);
    EXPECT_EQ(this->Logged(), (Log{"MouseDown 1 0 32,10", "MouseUp 1 0 32,10", "Click"}));
    this->Release(this->kInside, Qt::BackButton);
    EXPECT_EQ(this->Logged(), Log{});
}

TYPED_TEST(ButtonMouse, MovesWithTheRightButtonHeldChangeNothing)
{
    this->MoveTo(this->kInside);
    this->Press(this->kInside, Qt::RightButton);
    this->button->drawn = 0;
    this->moves = 0;
    this->MoveTo(this->kInsideToo);
    EXPECT_GE(this->moves, 1);
    EXPECT_EQ(this->button->drawn, 0);
    EXPECT_EQ(this->CountOf("MouseOver"), 1); // of the move before the press
}

TYPED_TEST(ButtonMouse, ARightPressDuringALeftOneTakesTheClickAway)
{
    this->Press(this->kInside);
    this->Press(this->kInside, Qt::RightButton);
    this->Release(this->kInside, Qt::RightButton);
    this->Release(this->kInside);
    EXPECT_EQ(this->CountOf("Click"), 0);
    EXPECT_EQ(this->button->look, ButtonLook::Hot);
}

TYPED_TEST(ButtonMouse, TheSecondPressOfADoubleClickIsAPress)
{
    this->MoveTo(this->kInside);
    this->Logged();
    QTest::mouseDClick(this->window.windowHandle(), Qt::LeftButton, Qt::ControlModifier,
                       this->kInside);
    EXPECT_EQ(this->Logged(), (Log{"MouseDown 1 2 32,10", "MouseUp 1 2 32,10", "Click",
                                   "MouseDown 1 2 0,0", "MouseUp 1 2 32,10", "Click"}));
    EXPECT_EQ(this->button->look, ButtonLook::Hot);
}

TYPED_TEST(ButtonMouse, ADoubleClickLeavesItHot)
{
    this->MoveTo(this->kInside);
    QTest::mouseDClick(this->window.windowHandle(), Qt::LeftButton, {}, this->kInside);
    this->WaitForTicks();
    EXPECT_EQ(this->button->look, ButtonLook::Hot);
    EXPECT_EQ(this->CountOf("MouseOut"), 0);
}

TYPED_TEST(ButtonMouse, TheSecondPressOfARightDoubleClickIsNothing)
{
    this->MoveTo(this->kInside);
    this->Logged();
    QTest::mouseDClick(this->window.windowHandle(), Qt::RightButton, {}, this->kInside);
    EXPECT_EQ(this->Logged(),
              (Log{"MouseDown 2 0 32,10", "MouseUp 2 0 32,10", "MouseUp 2 0 32,10"}));
}

TYPED_TEST(ButtonMouse, AQuickPressOnAButtonThatTookAnothersPlaceIsItsFirst)
{
    TypeParam other(&this->window, TestAmbient());
    other.setGeometry(this->button->geometry());
    other.Click = [&other] { other.hide(); };
    other.show();
    this->MoveTo(this->kInside);
    this->Logged();
    QTest::mouseDClick(this->window.windowHandle(), Qt::LeftButton, {}, this->kInside);
    EXPECT_TRUE(other.isHidden());
    EXPECT_EQ(this->Logged(), (Log{"MouseDown 1 0 32,10", "MouseUp 1 0 32,10", "Click"}));
}

TYPED_TEST(ButtonMouse, ADisabledButtonTakesTheMouseInSilence)
{
    this->button->SetEnabled(false);
    this->Logged();
    this->MoveTo(this->kInside);
    QTest::mouseDClick(this->window.windowHandle(), Qt::LeftButton, {}, this->kInside);
    EXPECT_EQ(this->Logged(), Log{});
    EXPECT_EQ(this->moves, 0);
    EXPECT_EQ(this->button->look, ButtonLook::Disabled);
}

TYPED_TEST(ButtonMouse, DisablingDuringAPressLeavesThePressUnfinished)
{
    this->Press(this->kInside);
    this->button->SetEnabled(false);
    this->Logged();
    this->Release(this->kInside);
    EXPECT_EQ(this->Logged(), Log{});
}

TYPED_TEST(ButtonMouse, DisablingInMouseUpTakesTheClickAway)
{
    this->button->MouseUp = [this](const MouseReport&) { this->button->SetEnabled(false); };
    this->Press(this->kInside);
    this->Release(this->kInside);
    EXPECT_EQ(this->CountOf("Click"), 0);
}

TYPED_TEST(ButtonMouse, LeavingIsToldOfADisabledButtonThatWasHot)
{
    this->MoveTo(this->kInside);
    this->button->SetEnabled(false);
    this->Logged();
    this->MoveTo(this->kAway);
    this->WaitForTicks();
    EXPECT_EQ(this->Logged(), Log{"MouseOut"});
    EXPECT_EQ(this->button->look, ButtonLook::Disabled);
}

TYPED_TEST(ButtonMouse, AClickInvertsACheckBoxBeforeItIsTold)
{
    this->button->SetIsCheckBox(true);
    this->Logged();
    std::vector<bool> values;
    this->button->Click = [&] { values.push_back(this->button->Value()); };
    for (int i = 0; i < 2; ++i) {
        this->Press(this->kInside);
        this->Release(this->kInside);
        EXPECT_EQ(this->button->look, i == 0 ? ButtonLook::Down : ButtonLook::Hot);
    }
    EXPECT_EQ(values, (std::vector<bool>{true, false}));
    EXPECT_EQ(this->CountOf("Changed Value"), 0);
}

TYPED_TEST(ButtonMouse, ACheckedButtonStaysDownWhileThePointerComesAndGoes)
{
    this->button->SetIsCheckBox(true);
    this->button->SetValue(true);
    this->Logged();
    this->button->drawn = 0;
    this->MoveTo(this->kInside);
    EXPECT_EQ(this->button->look, ButtonLook::Down);
    this->MoveTo(this->kAway);
    this->WaitForTicks();
    EXPECT_EQ(this->button->drawn, 0); // it would have looked the same
    EXPECT_EQ(this->Logged(), (Log{"MouseOver", "MouseOut"}));
}

TYPED_TEST(ButtonMouse, WhatAMaskLeavesOutIsOutside)
{
    this->button->setMask(QRect(0, 0, 30, 24)); // of which kInsideToo is a part, kInside is not
    this->MoveTo(this->kInside);
    EXPECT_EQ(this->Logged(), Log{});
    this->MoveTo(this->kInsideToo);
    EXPECT_EQ(this->Logged(), Log{"MouseOver"});
    this->Press(this->kInsideToo);
    this->Release(this->kInside);
    EXPECT_EQ(this->CountOf("Click"), 0);
    this->Press(this->kInsideToo);
    this->Release(this->kInsideToo);
    EXPECT_EQ(this->CountOf("Click"), 1);
}

TYPED_TEST(ButtonMouse, AChildInFrontOfTheButtonIsOutside)
{
    QWidget child(this->button);
    child.setGeometry(0, 0, 30, 24);
    child.show();
    this->MoveTo(this->kInside); // beside the child
    EXPECT_EQ(this->Logged(), Log{"MouseOver"});
    this->MoveTo(QPoint(50, 40)); // on it
    this->WaitForTicks();
    EXPECT_EQ(this->Logged(), Log{"MouseOut"});
}

TYPED_TEST(ButtonMouse, WhatIsMovedOverARestingPointerIsNoticed)
{
    QWidget cover(&this->window);
    cover.setGeometry(150, 150, 60, 24);
    cover.show();
    this->MoveTo(this->kInside);
    this->Logged();
    cover.setGeometry(this->button->geometry());
    this->WaitForTicks();
    EXPECT_EQ(this->Logged(), Log{"MouseOut"});
}

TYPED_TEST(ButtonMouse, AButtonThatIsMovedAwayFromTheRestingPointerCools)
{
    this->MoveTo(this->kInside);
    this->Logged();
    this->button->move(150, 100);
    this->WaitForTicks();
    EXPECT_EQ(this->Logged(), Log{"MouseOut"});
    EXPECT_EQ(this->button->look, ButtonLook::Normal);
}

TYPED_TEST(ButtonMouse, AHiddenButtonCoolsToo)
{
    this->MoveTo(this->kInside);
    this->Logged();
    this->button->hide();
    this->WaitForTicks();
    EXPECT_EQ(this->Logged(), Log{"MouseOut"});
}

TYPED_TEST(ButtonMouse, ALeavingThatNoEventToldIsFoundByAskingTheWindowSystem)
{
    // A move that only the button heard of: the pointer itself is still away.
    QMouseEvent move(QEvent::MouseMove, QPointF(30, 10), this->button->mapToGlobal(QPointF(30, 10)),
                     Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(this->button, &move);
    EXPECT_EQ(this->Logged(), Log{"MouseOver"});
    EXPECT_TRUE(QTest::qWaitFor([this] { return this->CountOf("MouseOut") == 1; }, 2000));
}

TYPED_TEST(ButtonMouse, AnyEventMayDestroyTheButton)
{
    using Destroyer = std::function<void(Probe<TypeParam>&, std::function<void()>)>;
    const std::vector<Destroyer> events = {
        [](auto& b, auto end) { b.MouseDown = [end](const MouseReport&) { end(); }; },
        [](auto& b, auto end) { b.MouseMove = [end](const MouseReport&) { end(); }; },
        [](auto& b, auto end) { b.MouseUp = [end](const MouseReport&) { end(); }; },
        [](auto& b, auto end) { b.Click = end; },
        [](auto& b, auto end) { b.MouseOver = end; },
        [](auto& b, auto end) { b.MouseOut = end; },
    };
    for (const Destroyer& destroyer : events) {
        delete this->button;
        this->button = new Probe<TypeParam>(&this->window);
        this->button->setGeometry(40, 30, 60, 24);
        this->button->show();
        const QPointer<QWidget> alive(this->button);
        destroyer(*this->button, [this] { delete std::exchange(this->button, nullptr); });
        this->MoveTo(this->kInside);
        this->Press(this->kInside);
        this->MoveTo(this->kInsideToo);
        this->Release(this->kInsideToo);
        this->MoveTo(this->kAway);
        this->WaitForTicks();
        EXPECT_TRUE(alive.isNull());
    }
}

} // namespace
} // namespace lantern
