// SPDX-License-Identifier: GPL-3.0-or-later
// What both buttons make of keys and of the focus.
#include "ButtonFixture.h"

#include <QKeyEvent>

namespace lantern {
namespace {

template <typename Button>
class ButtonKeys : public ButtonTest<Button> {
protected:
    ButtonKeys() { this->button->setFocus(); }

    bool SendKey(QEvent::Type type, Qt::Key key, const char* text = "", bool repeats = false)
    {
        QKeyEvent event(type, key, Qt::NoModifier, QString::fromUtf8(text), repeats);
        event.accept();
        static_cast<QObject*>(this->button)->event(&event);
        return event.isAccepted();
    }
};
TYPED_TEST_SUITE(ButtonKeys, BothButtons);

TYPED_TEST(ButtonKeys, TheSpaceBarPressesAndItsReleaseClicks)
{
    QTest::keyPress(this->button, Qt::Key_Space, Qt::ControlModifier);
    EXPECT_EQ(this->button->look, ButtonLook::Down);
    EXPECT_EQ(this->Logged(), (Log{"KeyDown 17 2", "KeyDown 32 2", "KeyPress 32"}));
    QTest::keyRelease(this->button, Qt::Key_Space);
    EXPECT_EQ(this->button->look, ButtonLook::Normal);
    EXPECT_EQ(this->Logged(), (Log{"KeyUp 32 0", "Click"}));
}

TYPED_TEST(ButtonKeys, ASpaceBarThatRepeatsClicksOnce)
{
    this->SendKey(QEvent::KeyPress, Qt::Key_Space, " ");
    for (int i = 0; i < 3; ++i) {
        this->SendKey(QEvent::KeyRelease, Qt::Key_Space, " ", true);
        this->SendKey(QEvent::KeyPress, Qt::Key_Space, " ", true);
    }
    EXPECT_EQ(this->CountOf("Click"), 0);
    EXPECT_EQ(this->CountOf("KeyDown 32 0"), 4);
    this->SendKey(QEvent::KeyRelease, Qt::Key_Space, " ");
    EXPECT_EQ(this->CountOf("Click"), 1);
}

TYPED_TEST(ButtonKeys, TheReleaseOfAnotherKeyDoesNotClick)
{
    QTest::keyPress(this->button, Qt::Key_Space);
    QTest::keyRelease(this->button, Qt::Key_A);
    EXPECT_EQ(this->CountOf("Click"), 0);
    EXPECT_EQ(this->button->look, ButtonLook::Down);
}

TYPED_TEST(ButtonKeys, TheReleaseOfTheSpaceBarAfterAnotherKeyDoesNotClick)
{
    QTest::keyPress(this->button, Qt::Key_Space);
    QTest::keyPress(this->button, Qt::Key_A);
    QTest::keyRelease(this->button, Qt::Key_Space);
    EXPECT_EQ(this->CountOf("Click"), 0);
}

TYPED_TEST(ButtonKeys, TheSpaceBarInvertsACheckBox)
{
    this->button->SetIsCheckBox(true);
    this->Type(Qt::Key_Space);
    EXPECT_TRUE(this->button->Value());
    EXPECT_EQ(this->button->look, ButtonLook::Down);
    this->Type(Qt::Key_Space);
    EXPECT_FALSE(this->button->Value());
    EXPECT_EQ(this->button->look, ButtonLook::Normal);
    EXPECT_EQ(this->CountOf("Click"), 2);
}

TYPED_TEST(ButtonKeys, TheKeyThatTheHandlerLeftIsWhatCounts)
{
    this->button->KeyDown = [](KeyCode& code, ShiftBits) { code = KeyCode::Blank; };
    EXPECT_TRUE(this->SendKey(QEvent::KeyPress, Qt::Key_A));
    EXPECT_EQ(this->button->look, ButtonLook::Down);
    this->button->KeyUp = [](KeyCode& code, ShiftBits) { code = KeyCode::None; };
    EXPECT_TRUE(this->SendKey(QEvent::KeyRelease, Qt::Key_Space));
    EXPECT_EQ(this->CountOf("Click"), 0);
    this->button->KeyUp = [](KeyCode& code, ShiftBits) { code = KeyCode::Blank; };
    this->SendKey(QEvent::KeyRelease, Qt::Key_A);
    EXPECT_EQ(this->CountOf("Click"), 1);
}

TYPED_TEST(ButtonKeys, OnlyTheLowByteOfTheLastKeyIsKept)
{
    this->button->KeyDown = [](KeyCode& code, ShiftBits) { code = static_cast<KeyCode>(0x120); };
    this->SendKey(QEvent::KeyPress, Qt::Key_A);
    EXPECT_EQ(this->button->look, ButtonLook::Normal); // 0x120 is no space bar
    this->SendKey(QEvent::KeyRelease, Qt::Key_Space);
    EXPECT_EQ(this->CountOf("Click"), 1); // but was kept as one
}

TYPED_TEST(ButtonKeys, TheArrowsWalkTheFocus)
{
    Probe<TypeParam> second(&this->window);
    Probe<TypeParam> third(&this->window);
    second.show();
    third.show();
    const auto focusAfter = [](QWidget* from, Qt::Key key) {
        from->setFocus();
        QTest::keyClick(from, key);
        QCoreApplication::processEvents();
        return QApplication::focusWidget();
    };
    EXPECT_EQ(focusAfter(&second, Qt::Key_Right), &third);
    EXPECT_EQ(focusAfter(&second, Qt::Key_Down), &third);
    EXPECT_EQ(focusAfter(&second, Qt::Key_Left), this->button);
    EXPECT_EQ(focusAfter(&second, Qt::Key_Up), this->button);
    EXPECT_EQ(focusAfter(&third, Qt::Key_Down), this->button); // around the end
    EXPECT_EQ(this->CountOf("Click"), 0);
}

TYPED_TEST(ButtonKeys, KeysWithoutUseGoOnToTheWindow)
{
    EXPECT_FALSE(this->SendKey(QEvent::KeyPress, Qt::Key_Escape));
    EXPECT_FALSE(this->SendKey(QEvent::KeyRelease, Qt::Key_Escape));
    EXPECT_TRUE(this->SendKey(QEvent::KeyPress, Qt::Key_Space, " "));
    EXPECT_TRUE(this->SendKey(QEvent::KeyRelease, Qt::Key_Space, " "));
}

TYPED_TEST(ButtonKeys, KeyPressTellsWhatTheKeyWrites)
{
    this->SendKey(QEvent::KeyPress, Qt::Key_A, "a");
    this->SendKey(QEvent::KeyPress, Qt::Key_Return, "\r");
    this->SendKey(QEvent::KeyPress, Qt::Key_F4, "");
    this->SendKey(QEvent::KeyPress, Qt::Key_Delete, "\x7F");
    EXPECT_EQ(this->Logged(), (Log{"KeyDown 65 0", "KeyPress 97", "KeyDown 0 0", "KeyPress 13",
                                   "KeyDown 115 0", "KeyDown 0 0"}));
}

TYPED_TEST(ButtonKeys, ADisabledButtonLeavesAllKeysToTheWindow)
{
    this->button->SetEnabled(false);
    this->Logged();
    EXPECT_FALSE(this->SendKey(QEvent::KeyPress, Qt::Key_Space, " "));
    EXPECT_FALSE(this->SendKey(QEvent::KeyRelease, Qt::Key_Space, " "));
    EXPECT_FALSE(this->SendKey(QEvent::KeyPress, Qt::Key_Left));
    EXPECT_EQ(this->Logged(), Log{});
}

TYPED_TEST(ButtonKeys, FocusThatComesAndGoesChangesNothingThatIsSeen)
{
    QTest::keyPress(this->button, Qt::Key_Space);
    const QImage down = this->button->SurfaceImage().copy();
    this->button->clearFocus();
    EXPECT_EQ(this->button->SurfaceImage(), down);
    this->button->setFocus();
    EXPECT_EQ(this->button->SurfaceImage(), down);
    EXPECT_EQ(this->button->look, ButtonLook::Down);
}

TYPED_TEST(ButtonKeys, TheAccessKeyOfTheCaptionClicksEvenWhileDisabled)
{
    this->button->SetIsCheckBox(true);
    this->button->SetCaption(QStringLiteral("&Go"));
    this->Logged();
    QTest::keyClick(&this->window, Qt::Key_G, Qt::AltModifier);
    EXPECT_EQ(this->Logged(), Log{"Click"});
    this->button->SetEnabled(false);
    this->Logged();
    QTest::keyClick(&this->window, Qt::Key_G, Qt::AltModifier);
    EXPECT_EQ(this->Logged(), Log{"Click"});
    EXPECT_FALSE(this->button->Value());
}

TYPED_TEST(ButtonKeys, ANewCaptionHasAnotherAccessKeyOrNone)
{
    this->button->SetCaption(QStringLiteral("&Go"));
    this->button->SetCaption(QStringLiteral("S&top"));
    this->Logged();
    QTest::keyClick(&this->window, Qt::Key_G, Qt::AltModifier);
    EXPECT_EQ(this->CountOf("Click"), 0);
    QTest::keyClick(&this->window, Qt::Key_T, Qt::AltModifier);
    EXPECT_EQ(this->CountOf("Click"), 1);
    this->button->SetCaption(QStringLiteral("Sing && Play"));
    this->Logged();
    QTest::keyClick(&this->window, Qt::Key_T, Qt::AltModifier);
    EXPECT_EQ(this->CountOf("Click"), 0);
}

TYPED_TEST(ButtonKeys, AnyKeyEventMayDestroyTheButton)
{
    using Destroyer = std::function<void(Probe<TypeParam>&, std::function<void()>)>;
    const std::vector<Destroyer> events = {
        [](auto& b, auto end) { b.KeyDown = [end](KeyCode&, ShiftBits) { end(); }; },
        [](auto& b, auto end) { b.KeyPress = [end](std::int16_t) { end(); }; },
        [](auto& b, auto end) { b.KeyUp = [end](KeyCode&, ShiftBits) { end(); }; },
        [](auto& b, auto end) { b.Click = end; },
    };
    for (const Destroyer& destroyer : events) {
        delete this->button;
        this->button = new Probe<TypeParam>(&this->window);
        this->button->show();
        const QPointer<QWidget> alive(this->button);
        destroyer(*this->button, [this] { delete std::exchange(this->button, nullptr); });
        for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "));
            if (alive)
                QCoreApplication::sendEvent(alive, &event);
        }
        EXPECT_TRUE(alive.isNull());
    }
}

} // namespace
} // namespace lantern
