// SPDX-License-Identifier: GPL-3.0-or-later
#include "ButtonFixture.h"
#include "ToldToTools.h"

#include <QAccessible>

namespace lantern {
namespace {

template <typename Button>
class ButtonAccessibility : public ButtonTest<Button> {
protected:
    QAccessibleInterface& Known() { return *QAccessible::queryAccessibleInterface(this->button); }
    QAccessibleActionInterface& Actions() { return *Known().actionInterface(); }
};
TYPED_TEST_SUITE(ButtonAccessibility, BothButtons);

TYPED_TEST(ButtonAccessibility, ItIsAButtonOrACheckBox)
{
    EXPECT_EQ(this->Known().role(), QAccessible::Button);
    this->button->SetIsCheckBox(true);
    EXPECT_EQ(this->Known().role(), QAccessible::CheckBox);
    EXPECT_TRUE(this->Known().state().checkable);
}

TYPED_TEST(ButtonAccessibility, ItsNameIsItsCaptionOrElseItsToolTip)
{
    this->button->SetCaption(QString());
    this->button->setToolTip(QStringLiteral("Play (P)"));
    EXPECT_EQ(this->Known().text(QAccessible::Name), QStringLiteral("Play (P)"));
    this->button->SetCaption(QStringLiteral("&Play"));
    EXPECT_EQ(this->Known().text(QAccessible::Name), QStringLiteral("Play"));
    EXPECT_EQ(this->Known().text(QAccessible::Accelerator), QStringLiteral("Alt+P"));
    this->button->setAccessibleName(QStringLiteral("Start"));
    EXPECT_EQ(this->Known().text(QAccessible::Name), QStringLiteral("Start"));
}

TYPED_TEST(ButtonAccessibility, ItsStateIsTold)
{
    EXPECT_FALSE(this->Known().state().disabled);
    EXPECT_TRUE(this->Known().state().focusable);
    this->MoveTo(this->kInside);
    this->Press(this->kInside);
    EXPECT_TRUE(this->Known().state().pressed);
    this->Release(this->kInside);
    EXPECT_FALSE(this->Known().state().pressed);
    this->button->SetIsCheckBox(true);
    this->button->SetValue(true);
    EXPECT_TRUE(this->Known().state().checked);
    EXPECT_FALSE(this->Known().state().pressed);
    this->button->SetIsCheckBox(false);
    EXPECT_FALSE(this->Known().state().checked);
    this->button->SetEnabled(false);
    EXPECT_TRUE(this->Known().state().disabled);
}

TYPED_TEST(ButtonAccessibility, ItCanBePressedAndToggled)
{
    EXPECT_EQ(this->Actions().actionNames().first(), QAccessibleActionInterface::pressAction());
    this->Actions().doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(this->Logged(), Log{}) << "what it opens is not waited for";
    QCoreApplication::processEvents();
    EXPECT_EQ(this->Logged(), Log{"Click"});
    this->button->SetIsCheckBox(true);
    this->Logged();
    EXPECT_EQ(this->Actions().actionNames().first(), QAccessibleActionInterface::toggleAction());
    this->Actions().doAction(QAccessibleActionInterface::toggleAction());
    QCoreApplication::processEvents();
    EXPECT_EQ(this->Logged(), Log{"Click"});
    EXPECT_TRUE(this->button->Value());
}

TYPED_TEST(ButtonAccessibility, DisabledItOffersNoPress)
{
    this->button->SetEnabled(false);
    this->Logged();
    EXPECT_FALSE(this->Actions().actionNames().contains(QAccessibleActionInterface::pressAction()));
    this->Actions().doAction(QAccessibleActionInterface::pressAction());
    QCoreApplication::processEvents();
    EXPECT_EQ(this->Logged(), Log{});
}

TYPED_TEST(ButtonAccessibility, OtherActionsAreThoseOfAnyWidget)
{
    const QString setFocus = QAccessibleActionInterface::setFocusAction();
    EXPECT_TRUE(this->Actions().actionNames().contains(setFocus));
    this->Actions().doAction(setFocus);
    EXPECT_TRUE(this->button->hasFocus());
    this->Actions().doAction(QString());
    this->Actions().doAction(QAccessibleActionInterface::toggleAction());
    QCoreApplication::processEvents();
    EXPECT_EQ(this->Logged(), Log{});
}

TYPED_TEST(ButtonAccessibility, TheAccessKeyBelongsToThePress)
{
    const QString press = QAccessibleActionInterface::pressAction();
    EXPECT_TRUE(this->Actions().keyBindingsForAction(press).isEmpty());
    this->button->SetCaption(QStringLiteral("&Play"));
    EXPECT_EQ(this->Actions().keyBindingsForAction(press), QStringList{QStringLiteral("Alt+P")});
    EXPECT_TRUE(this->Actions()
                    .keyBindingsForAction(QAccessibleActionInterface::setFocusAction())
                    .isEmpty());
}

TYPED_TEST(ButtonAccessibility, ItHasNoNumberForAValue)
{
    EXPECT_EQ(this->Known().valueInterface(), nullptr);
    EXPECT_EQ(this->Known().text(QAccessible::Value), QString());
}

TYPED_TEST(ButtonAccessibility, ItsDescriptionIsItsToolTip)
{
    this->button->setToolTip(QStringLiteral("Play (P)"));
    EXPECT_EQ(this->Known().text(QAccessible::Description), QStringLiteral("Play (P)"));
}

TYPED_TEST(ButtonAccessibility, EachChangeIsToldOnce)
{
    this->button->SetIsCheckBox(true);
    ToldToTools told;
    for (int i = 0; i < 2; ++i)
        this->button->SetCaption(QStringLiteral("New"));
    ASSERT_EQ(told.Types(), std::vector{QAccessible::NameChanged});
    told.Forget();
    for (int i = 0; i < 2; ++i)
        this->button->SetValue(true);
    ASSERT_EQ(told.Types(), std::vector{QAccessible::StateChanged});
    EXPECT_TRUE(told.Events()[0].changed.checked);
    EXPECT_FALSE(told.Events()[0].changed.disabled);
    told.Forget();
    this->button->Press();
    ASSERT_EQ(told.Types(), std::vector{QAccessible::StateChanged});
    EXPECT_TRUE(told.Events()[0].changed.checked);
    told.Forget();
    for (int i = 0; i < 2; ++i)
        this->button->SetEnabled(false);
    ASSERT_EQ(told.Types(), std::vector{QAccessible::StateChanged});
    EXPECT_TRUE(told.Events()[0].changed.disabled);
    EXPECT_EQ(told.Events()[0].object, this->button);
}

TYPED_TEST(ButtonAccessibility, AValueThatNobodySeesIsNotTold)
{
    const ToldToTools told;
    this->button->SetValue(true);
    EXPECT_TRUE(told.Events().empty());
}

TYPED_TEST(ButtonAccessibility, ThePressMayDestroyTheButton)
{
    const QPointer<QWidget> alive(this->button);
    this->button->Click = [this] { delete std::exchange(this->button, nullptr); };
    this->Actions().doAction(QAccessibleActionInterface::pressAction());
    this->Actions().doAction(QAccessibleActionInterface::pressAction());
    QCoreApplication::processEvents();
    EXPECT_TRUE(alive.isNull());
}

} // namespace
} // namespace lantern
