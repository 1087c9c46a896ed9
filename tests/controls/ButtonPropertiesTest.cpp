// SPDX-License-Identifier: GPL-3.0-or-later
// Properties, life cycle and drawing on demand of both buttons.
#include "ButtonFixture.h"

#include <QPainter>

namespace lantern {
namespace {

template <typename Button>
class ButtonProperties : public ButtonTest<Button> {
protected:
    void SetAllShared()
    {
        this->button->SetCaption(QStringLiteral("Sing"));
        this->button->SetEnabled(true);
        this->button->SetFont(this->button->Font());
        this->button->SetMousePointer(9);
        this->button->SetMouseIcon(m_picture);
        this->button->SetPicture(m_picture);
        this->button->SetIsCheckBox(false);
        this->button->SetValue(false);
    }

    PictureReference m_picture = PlainPicture(kBlue);
};
TYPED_TEST_SUITE(ButtonProperties, BothButtons);

TYPED_TEST(ButtonProperties, AFirstButtonIsAsItsHostIs)
{
    Ambient ambient = TestAmbient();
    ambient.displayName = QStringLiteral("Button 1");
    const TypeParam made(nullptr, ambient);
    EXPECT_EQ(made.size(), QSize(320, 240));
    EXPECT_EQ(made.Caption(), QStringLiteral("Button 1"));
    EXPECT_EQ(made.Font(), ambient.font);
    EXPECT_TRUE(made.Enabled());
    EXPECT_FALSE(made.IsCheckBox());
    EXPECT_FALSE(made.Value());
    EXPECT_EQ(made.MousePointer(), 0);
    EXPECT_EQ(made.MouseIcon(), nullptr);
    EXPECT_EQ(made.Picture(), nullptr);
}

TYPED_TEST(ButtonProperties, EachSetIsReportedByItsName)
{
    this->SetAllShared();
    EXPECT_EQ(this->Logged(),
              (Log{"Changed Caption", "Changed Enabled", "Changed Font", "Changed MousePointer",
                   "Changed MouseIcon", "Changed Picture", "Changed IsCheckBox", "Changed Value"}));
    EXPECT_EQ(this->button->Caption(), QStringLiteral("Sing"));
    EXPECT_EQ(this->button->cursor().shape(), Qt::SizeHorCursor);
    EXPECT_EQ(this->button->Picture(), this->m_picture);
}

TYPED_TEST(ButtonProperties, TheSameValueAgainIsReportedButNotDrawn)
{
    this->SetAllShared();
    this->Logged();
    this->button->drawn = 0;
    this->SetAllShared();
    EXPECT_EQ(this->log.size(), 8U);
    EXPECT_EQ(this->button->drawn, 0);
}

TYPED_TEST(ButtonProperties, TheSameCaptionEndsThePressThatIsSeen)
{
    this->Press(this->kInside);
    this->MoveTo(this->kInsideToo);
    ASSERT_EQ(this->button->look, ButtonLook::Down);
    this->button->SetCaption(this->button->Caption());
    EXPECT_EQ(this->button->look, ButtonLook::Normal);
}

TYPED_TEST(ButtonProperties, APictureKeepsThePressThatIsSeen)
{
    this->Press(this->kInside);
    this->button->SetPicture(this->m_picture);
    EXPECT_EQ(this->button->look, ButtonLook::Down);
}

TYPED_TEST(ButtonProperties, AttributesOfTheFontAreDrawnButNotReported)
{
    this->button->SetCaption(QStringLiteral("Sing"));
    this->Logged();
    this->button->drawn = 0;
    this->button->SetFontBold(true);
    this->button->SetFontItalic(true);
    this->button->SetFontUnderline(true);
    this->button->SetFontSize(12);
    this->button->SetFontName(QStringLiteral("Liberation Serif"));
    EXPECT_EQ(this->button->drawn, 5);
    EXPECT_EQ(this->Logged(), Log{});
    EXPECT_TRUE(this->button->FontBold());
    EXPECT_TRUE(this->button->FontItalic());
    EXPECT_TRUE(this->button->FontUnderline());
    EXPECT_EQ(this->button->FontSize(), 12.0);
    EXPECT_EQ(this->button->FontName(), QStringLiteral("Liberation Serif"));
    EXPECT_EQ(this->button->Font().pixelSize(), 16);
}

TYPED_TEST(ButtonProperties, ASizeOfTheFontIsOneOfWholePixels)
{
    this->button->SetFontSize(8);
    EXPECT_EQ(this->button->FontSize(), 8.25);
    for (const int size : {0, -5, INT16_MIN, INT16_MAX}) {
        this->button->SetCaption(QString::number(size));
        this->button->SetFontSize(static_cast<std::int16_t>(size));
        EXPECT_GT(this->button->FontSize(), 0.0);
    }
}

TYPED_TEST(ButtonProperties, ThePointersOwnShapeIsItsIcon)
{
    this->button->SetMouseIcon(this->m_picture);
    EXPECT_EQ(this->button->cursor().shape(), Qt::ArrowCursor);
    this->button->SetMousePointer(99);
    EXPECT_EQ(this->button->cursor().shape(), Qt::BitmapCursor);
    this->button->SetMouseIcon(nullptr);
    EXPECT_EQ(this->button->cursor().shape(), Qt::ArrowCursor);
    this->button->SetMousePointer(-7);
    EXPECT_EQ(this->button->cursor().shape(), Qt::ArrowCursor);
}

TYPED_TEST(ButtonProperties, ValueIsSeenOnlyInACheckBox)
{
    this->button->SetValue(true);
    EXPECT_EQ(this->button->drawn, 0);
    EXPECT_EQ(this->Logged(), Log{"Changed Value"});
    this->button->SetIsCheckBox(true);
    EXPECT_EQ(this->button->look, ButtonLook::Down);
    this->button->SetEnabled(false);
    EXPECT_EQ(this->button->look, ButtonLook::Disabled);
    this->button->SetEnabled(true);
    this->button->SetValue(false);
    EXPECT_EQ(this->button->look, ButtonLook::Normal);
}

TYPED_TEST(ButtonProperties, SetsBetweenDisableRefreshAndRefreshAreOneDrawing)
{
    this->button->DisableRefresh();
    this->SetAllShared();
    this->button->SetFontBold(true);
    this->button->SetIsCheckBox(true);
    this->button->SetValue(true);
    EXPECT_EQ(this->button->drawn, 0);
    this->button->Refresh();
    EXPECT_EQ(this->button->drawn, 1);
    EXPECT_EQ(this->button->look, ButtonLook::Down);
}

TYPED_TEST(ButtonProperties, WhileNothingMayBeDrawnTheMouseDrawsNothingAndEventsGoOn)
{
    this->button->DisableRefresh();
    this->MoveTo(this->kInside);
    this->Press(this->kInside);
    this->Release(this->kInside);
    EXPECT_EQ(this->button->drawn, 0);
    EXPECT_EQ(this->CountOf("Click"), 1);
}

TYPED_TEST(ButtonProperties, AShownButtonIsDrawnNormalAndMayBeDrawnAgain)
{
    this->Press(this->kInside);
    this->MoveTo(this->kInsideToo); // no longer hot
    this->button->hide();
    this->button->SetCaption(QStringLiteral("unseen"));
    this->button->drawn = 0;
    this->button->SetCaption(QStringLiteral("unseen too"));
    EXPECT_EQ(this->button->drawn, 0);
    this->button->show();
    EXPECT_EQ(this->button->drawn, 1);
    EXPECT_EQ(this->button->look, ButtonLook::Normal);
}

TYPED_TEST(ButtonProperties, ResizingDrawsItNormal)
{
    this->Press(this->kInside);
    this->MoveTo(this->kInsideToo); // no longer hot
    this->button->resize(80, 30);
    QCoreApplication::processEvents();
    EXPECT_EQ(this->button->look, ButtonLook::Normal);
    EXPECT_EQ(this->button->SurfaceImage().size(),
              QSize(80, 30) * this->button->devicePixelRatioF());
}

TYPED_TEST(ButtonProperties, AButtonOfNoHeightDrawsNothing)
{
    this->button->resize(60, 0);
    QCoreApplication::processEvents();
    this->button->drawn = 0;
    this->button->SetCaption(QStringLiteral("Sing"));
    this->button->SetEnabled(false);
    EXPECT_EQ(this->button->drawn, 0);
}

TYPED_TEST(ButtonProperties, AnAmbientChangeThatChangesNothingDrawsNothing)
{
    this->button->SetAmbient(TestAmbient());
    EXPECT_EQ(this->button->drawn, 0);
}

TYPED_TEST(ButtonProperties, WhatWasSavedIsLoadedInSilence)
{
    this->button->SetCaption(QStringLiteral("&Sing"));
    this->button->SetEnabled(false);
    this->button->SetFontBold(true);
    this->button->SetMousePointer(7);
    this->button->SetMouseIcon(this->m_picture);
    this->button->SetPicture(this->m_picture);
    this->button->SetIsCheckBox(true);
    this->button->SetValue(true);
    this->button->Refresh(); // lays a check box out, which setting it does not
    PropertyBag bag;
    this->button->Save(bag);

    Probe<TypeParam> loaded(&this->window);
    this->LogEvents(loaded);
    this->Logged();
    loaded.Load(bag);
    EXPECT_EQ(this->Logged(), Log{});
    EXPECT_EQ(loaded.Caption(), QStringLiteral("&Sing"));
    EXPECT_FALSE(loaded.Enabled());
    EXPECT_TRUE(loaded.Font().bold());
    EXPECT_EQ(loaded.MousePointer(), 7);
    EXPECT_EQ(loaded.cursor().shape(), Qt::SizeVerCursor);
    EXPECT_EQ(loaded.MouseIcon(), this->m_picture);
    EXPECT_EQ(loaded.Picture(), this->m_picture);
    EXPECT_TRUE(loaded.IsCheckBox());
    EXPECT_TRUE(loaded.Value());
    loaded.setGeometry(this->button->geometry());
    loaded.show();
    EXPECT_EQ(loaded.SurfaceImage(), this->button->SurfaceImage());
}

TYPED_TEST(ButtonProperties, AMissingKeyIsTheDefault)
{
    Ambient ambient = TestAmbient();
    ambient.displayName = QStringLiteral("Button 1");
    ambient.font.setPixelSize(17);
    TypeParam made(nullptr, ambient);
    made.SetValue(true);
    made.SetFontBold(true);
    made.Load(PropertyBag());
    EXPECT_EQ(made.Caption(), QString());
    EXPECT_EQ(made.Font(), ambient.font);
    EXPECT_TRUE(made.Enabled());
    EXPECT_FALSE(made.Value());
}

TYPED_TEST(ButtonProperties, AReportMayDestroyTheButton)
{
    const std::vector<std::function<void(TypeParam&)>> sets = {
        [](auto& b) { b.SetCaption(QStringLiteral("x")); },
        [](auto& b) { b.SetEnabled(false); },
        [](auto& b) { b.SetPicture(nullptr); },
        [](auto& b) { b.SetValue(true); },
        [](auto& b) {
            if constexpr (std::is_same_v<TypeParam, ctlBtn>)
                b.SetPicturePosition(3);
            else
                b.SetOverColor(0);
        },
    };
    for (const auto& set : sets) {
        auto* made = new TypeParam(&this->window);
        const QPointer<QWidget> alive(made);
        made->PropertyChanged = [made](const QString&) { delete made; };
        set(*made);
        EXPECT_TRUE(alive.isNull());
    }
}

TYPED_TEST(ButtonProperties, TheLookFollowsFromStateAndValues)
{
    EXPECT_EQ(LookOf(ButtonState::Normal, true, false), ButtonLook::Normal);
    EXPECT_EQ(LookOf(ButtonState::Normal, true, true), ButtonLook::Hot);
    for (const bool isHot : {false, true}) {
        EXPECT_EQ(LookOf(ButtonState::Down, true, isHot), ButtonLook::Down);
        EXPECT_EQ(LookOf(ButtonState::Normal, false, isHot), ButtonLook::Disabled);
        EXPECT_EQ(LookOf(ButtonState::Down, false, isHot), ButtonLook::Disabled);
    }
}

} // namespace
} // namespace lantern
