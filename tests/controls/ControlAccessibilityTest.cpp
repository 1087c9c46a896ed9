// SPDX-License-Identifier: GPL-3.0-or-later
#include "ControlAccessibility.h"

#include "OwnerDrawn.h"
#include "ctlPicBtn.h"
#include "ctlSlide.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QApplication>
#include <QTest>

#include <gtest/gtest.h>

#include <array>

namespace lantern {
namespace {

QString NameSpoken(const char* caption, const char* toolTip = "")
{
    return SpokenName(QString::fromUtf8(caption), QString::fromUtf8(toolTip));
}

class Silent : public OwnerDrawn {
public:
    using OwnerDrawn::OwnerDrawn;

protected:
    void SurfaceResized() override {}
};

class Dial : public Silent {
public:
    using Silent::Silent;
    QAccessibleInterface* MakeAccessible() override
    {
        return new QAccessibleWidget(this, QAccessible::Dial);
    }
};

TEST(ControlAccessibility, ACaptionIsReadWithoutItsAccessKey)
{
    EXPECT_EQ(NameSpoken("&Audio Device", "tip"), QStringLiteral("Audio Device"));
    EXPECT_EQ(NameSpoken("Sing && Play"), QStringLiteral("Sing & Play"));
    EXPECT_EQ(NameSpoken("Odd&"), QStringLiteral("Odd"));
    EXPECT_EQ(NameSpoken(" Options "), QStringLiteral("Options"));
}

TEST(ControlAccessibility, ABlankCaptionLeavesItToTheToolTip)
{
    EXPECT_EQ(NameSpoken("", "Play/Pause (P)"), QStringLiteral("Play/Pause (P)"));
    EXPECT_EQ(NameSpoken("  ", "Stop"), QStringLiteral("Stop"));
    EXPECT_EQ(NameSpoken("", ""), QString());
}

TEST(ControlAccessibility, AControlThatDescribesItselfIsKnownByThat)
{
    Dial dial(nullptr);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&dial)->role(), QAccessible::Dial);
}

TEST(ControlAccessibility, AControlThatDoesNotIsKnownAsAnyWidget)
{
    Silent silent(nullptr);
    const QAccessibleInterface* known = QAccessible::queryAccessibleInterface(&silent);
    ASSERT_NE(known, nullptr);
    EXPECT_EQ(known->object(), &silent);
    EXPECT_EQ(known->role(), QAccessible::Client);
}

// A window in which a slider and a button hand the focus on to a picture, and a button keeps it.
class FocusAccessibility : public ::testing::Test {
protected:
    FocusAccessibility()
    {
        picture.setFocusPolicy(Qt::StrongFocus);
        slide.setFocusProxy(&picture);
        proxied.setFocusProxy(&picture);
        window.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&window));
        QApplication::setActiveWindow(&window);
    }

    static QAccessibleInterface& Known(QWidget& widget)
    {
        return *QAccessible::queryAccessibleInterface(&widget);
    }
    static bool IsFocused(QWidget& widget) { return Known(widget).state().focused; }
    std::array<bool, 4> Focused()
    {
        return {IsFocused(picture), IsFocused(slide), IsFocused(proxied), IsFocused(keeper)};
    }

    QWidget window;
    QWidget picture{&window};
    ctlSlide slide{&window};
    ctlPicBtn proxied{&window};
    ctlPicBtn keeper{&window};
};

TEST_F(FocusAccessibility, OnlyTheOneThatHasTheFocusSaysSo)
{
    proxied.setFocus();
    EXPECT_EQ(Focused(), (std::array{true, false, false, false}));
    slide.setFocus();
    EXPECT_EQ(Focused(), (std::array{true, false, false, false}));
    keeper.setFocus();
    EXPECT_EQ(Focused(), (std::array{false, false, false, true}));
}

TEST_F(FocusAccessibility, AControlThatNeverKeepsTheFocusDoesNotOfferToTakeIt)
{
    const QString setFocus = QAccessibleActionInterface::setFocusAction();
    EXPECT_FALSE(Known(proxied).state().focusable);
    EXPECT_FALSE(Known(proxied).actionInterface()->actionNames().contains(setFocus));
    EXPECT_TRUE(Known(keeper).state().focusable);
    EXPECT_TRUE(Known(keeper).actionInterface()->actionNames().contains(setFocus));
}

TEST_F(FocusAccessibility, WhatAMaskLeavesOutOfAControlIsNotItsPlace)
{
    window.resize(200, 100);
    proxied.setGeometry(20, 10, 40, 30);
    EXPECT_EQ(Known(proxied).rect(), QRect(window.mapToGlobal(QPoint(20, 10)), QSize(40, 30)));
    proxied.setMask(QRect(5, 6, 7, 8));
    EXPECT_EQ(Known(proxied).rect(), QRect(window.mapToGlobal(QPoint(25, 16)), QSize(7, 8)));
    proxied.hide();
    EXPECT_TRUE(Known(proxied).rect().isEmpty());
}

} // namespace
} // namespace lantern
