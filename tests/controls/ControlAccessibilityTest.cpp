// SPDX-License-Identifier: GPL-3.0-or-later
#include "ControlAccessibility.h"

#include "OwnerDrawn.h"

#include <QAccessible>
#include <QAccessibleWidget>

#include <gtest/gtest.h>

namespace lantern {
namespace {

QString Spoken(const char* caption, const char* toolTip = "")
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
    EXPECT_EQ(Spoken("&Audio Device", "tip"), QStringLiteral("Audio Device"));
    EXPECT_EQ(Spoken("Sing && Play"), QStringLiteral("Sing & Play"));
    EXPECT_EQ(Spoken("Odd&"), QStringLiteral("Odd"));
    EXPECT_EQ(Spoken(" Options "), QStringLiteral("Options"));
}

TEST(ControlAccessibility, ABlankCaptionLeavesItToTheToolTip)
{
    EXPECT_EQ(Spoken("", "Play/Pause (P)"), QStringLiteral("Play/Pause (P)"));
    EXPECT_EQ(Spoken("  ", "Stop"), QStringLiteral("Stop"));
    EXPECT_EQ(Spoken("", ""), QString());
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
}

} // namespace
} // namespace lantern
