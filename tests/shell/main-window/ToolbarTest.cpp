// SPDX-License-Identifier: GPL-3.0-or-later
#include "ToolbarFixture.h"

#include <QAccessible>

#include <set>

namespace lantern {
namespace {

using Numbers = std::initializer_list<std::int16_t>;

class ToolbarTest : public ToolbarFixture {};

TEST_F(ToolbarTest, EveryButtonStandsWhereItWasDesigned)
{
    for (const ToolbarButton& row : kToolbarButtons) {
        const ctlPicBtn& button = toolbar.tBtn(row.index);
        EXPECT_EQ(button.size(), QSize(row.rect.width / 15, row.rect.height / 15)) << row.index;
        if (row.index != 2 && row.index != 20) {
            EXPECT_EQ(button.pos(), QPoint(row.rect.left / 15, row.rect.top / 15)) << row.index;
        }
    }
}

TEST_F(ToolbarTest, PauseAndRestoreTakeThePlaceOfPlayAndFullScreen)
{
    EXPECT_EQ(toolbar.tBtn(2).geometry(), toolbar.tBtn(1).geometry());
    EXPECT_EQ(toolbar.tBtn(20).geometry(), toolbar.tBtn(10).geometry());
}

TEST_F(ToolbarTest, AClickTellsTheNumberOfTheButton)
{
    Show();
    std::vector<std::int16_t> expected;
    for (const ToolbarButton& row : kToolbarButtons) {
        const bool isCovered = row.index == 1 || row.index == 10;
        if (isCovered)
            continue;
        ClickAt(FreePlaceOf(row.index));
        expected.push_back(row.index);
        ASSERT_EQ(clicks, expected);
    }
}

TEST_F(ToolbarTest, WhatIsHiddenBeforeTheWindowIsShownStaysHidden)
{
    toolbar.tBtn(2).setVisible(false);
    Show();
    EXPECT_FALSE(toolbar.tBtn(2).isVisible());
    EXPECT_TRUE(toolbar.tBtn(1).isVisible());
}

TEST_F(ToolbarTest, AWideBarShowsTheSizes)
{
    Show();
    EXPECT_TRUE(toolbar.TBarZoom().isVisible());
    EXPECT_EQ(toolbar.TBar().geometry(), QRect(10, kHeight - 58, kWide - 20, 48));
    EXPECT_EQ(toolbar.TBar2().geometry().right(), kWide - 20 - 1);
    EXPECT_EQ(toolbar.ctlSlider().geometry(), QRect(33, 31, kWide - 20 - 167, 12));
}

TEST_F(ToolbarTest, ANarrowBarHidesTheSizesAndNothingElse)
{
    SetWidth(kNarrow);
    Show();
    EXPECT_FALSE(toolbar.TBarZoom().isVisible());
    for (const std::int16_t index : Numbers{7, 8, 9, 21, 22, 10})
        EXPECT_FALSE(toolbar.tBtn(index).isVisible()) << index;
    for (const std::int16_t index : Numbers{41, 42, 16, 26, 14})
        EXPECT_TRUE(toolbar.tBtn(index).isVisible()) << index;
    SetWidth(kWide);
    EXPECT_TRUE(toolbar.tBtn(22).isVisible());
}

TEST_F(ToolbarTest, InANarrowWindowTheLeftGroupCanStillBeClicked)
{
    SetWidth(kNarrow);
    Show();
    for (const std::int16_t index : Numbers{0, 3, 6, 24, 4, 12, 14, 26, 41, 42, 16})
        ClickAt(FreePlaceOf(index));
    EXPECT_EQ(clicks, (std::vector<std::int16_t>{0, 3, 6, 24, 4, 12, 14, 26, 41, 42, 16}));
}

TEST_F(ToolbarTest, TheSliderCanBeDraggedAlongItsWholeLength)
{
    Show();
    ctlSlide& slider = toolbar.ctlSlider();
    slider.SetValues(0, 1000, 0);
    ClickAt(slider.mapTo(&window, QPoint(slider.width() - 2, 6)));
    EXPECT_EQ(slider.Value(), 1000);
    ClickAt(slider.mapTo(&window, QPoint(1, 6)));
    EXPECT_EQ(slider.Value(), 0);
    EXPECT_EQ(log, (std::vector<std::string>{"slider", "slider"}));
}

TEST_F(ToolbarTest, OnlyTheUsersMovesOfASliderAreTold)
{
    Show();
    toolbar.ctlSlider().SetValue(7);
    toolbar.ctlVolume().SetValue(7);
    EXPECT_TRUE(log.empty());
    ClickAt(toolbar.ctlVolume().mapTo(&window, QPoint(50, 6)));
    EXPECT_EQ(toolbar.ctlVolume().Value(), 50);
    EXPECT_EQ(log, std::vector<std::string>{"volume"});
}

TEST_F(ToolbarTest, WhateverGetsTheFocusHandsItToThePicture)
{
    Show();
    for (const ToolbarButton& row : kToolbarButtons) {
        window.setFocus();
        ASSERT_FALSE(pic.hasFocus());
        toolbar.tBtn(row.index).setFocus();
        ASSERT_TRUE(pic.hasFocus()) << row.index;
    }
    window.setFocus();
    ClickAt(CentreOf(toolbar.ctlVolume()));
    EXPECT_TRUE(pic.hasFocus());
}

TEST_F(ToolbarTest, ReleasingASkipOrWheelButtonGivesTheFocusToThePicture)
{
    Show();
    for (const std::int16_t index : kFocusingButtons) {
        const QPoint at = FreePlaceOf(index);
        Press(at);
        window.setFocus();
        Release(at);
        EXPECT_TRUE(pic.hasFocus()) << index;
    }
    const QPoint stop = FreePlaceOf(3);
    Press(stop);
    window.setFocus();
    Release(stop);
    EXPECT_FALSE(pic.hasFocus());
}

TEST_F(ToolbarTest, TheTabKeyFindsNothingOnTheBar)
{
    Show();
    pic.setFocus();
    for (int i = 0; i < 3; ++i) {
        QTest::keyClick(&pic, Qt::Key_Tab);
        EXPECT_TRUE(pic.hasFocus());
    }
}

TEST_F(ToolbarTest, ABareSurfaceIsNoneOfTheControls)
{
    for (QWidget* const surface : toolbar.BareSurfaces())
        EXPECT_EQ(dynamic_cast<ctlPicBtn*>(surface), nullptr);
}

TEST_F(ToolbarTest, AnOwnerWithoutHandlersIsNotMissed)
{
    toolbar.Click = nullptr;
    toolbar.SliderChange = nullptr;
    toolbar.VolumeChange = nullptr;
    Show();
    ClickAt(FreePlaceOf(3));
    ClickAt(CentreOf(toolbar.ctlVolume()));
    ClickAt(CentreOf(toolbar.ctlSlider()));
    ClickAt(CentreOf(toolbar.PlayTicker()));
}

TEST_F(ToolbarTest, EveryButtonTellsWhatItIsForAndByWhichKey)
{
    std::set<QString> toolTips;
    for (const ToolbarButton& row : kToolbarButtons) {
        const QString toolTip = toolbar.tBtn(row.index).toolTip();
        EXPECT_FALSE(toolTip.isEmpty()) << row.index;
        EXPECT_TRUE(toolTips.insert(toolTip).second) << row.index;
    }
    EXPECT_EQ(toolbar.tBtn(2).toolTip(), QStringLiteral("Pause (P)"));
    EXPECT_EQ(toolbar.tBtn(20).toolTip(), QStringLiteral("Restore Screen (F)"));
    EXPECT_EQ(toolbar.tBtn(33).toolTip(), QStringLiteral("Track (T) - Adjust With Wheel"));
}

TEST_F(ToolbarTest, AssistiveToolsHearANameForEverythingOnTheBar)
{
    const auto nameOf = [](QWidget& widget) {
        return QAccessible::queryAccessibleInterface(&widget)->text(QAccessible::Name);
    };
    std::set<QString> names;
    for (const ToolbarButton& row : kToolbarButtons) {
        const QString name = nameOf(toolbar.tBtn(row.index));
        EXPECT_FALSE(name.isEmpty()) << row.index;
        EXPECT_FALSE(name.contains(u'(')) << row.index;
        EXPECT_TRUE(names.insert(name).second) << row.index;
    }
    EXPECT_EQ(nameOf(toolbar.tBtn(14)), QStringLiteral("Options"));
    EXPECT_EQ(nameOf(toolbar.tBtn(32)), QStringLiteral("Key / Pitch - Adjust With Wheel"));
    EXPECT_EQ(nameOf(toolbar.TBar()), QStringLiteral("Toolbar"));
    EXPECT_EQ(nameOf(toolbar.TBarZoom()), QStringLiteral("Display size"));
    EXPECT_EQ(nameOf(toolbar.ctlSlider()), QStringLiteral("Track position"));
    EXPECT_EQ(nameOf(toolbar.ctlVolume()), QStringLiteral("Volume"));
    EXPECT_EQ(nameOf(toolbar.PlayTicker()), QStringLiteral("Time"));
}

TEST_F(ToolbarTest, AnAssistiveToolPressesAButtonAsTheMouseDoes)
{
    QAccessibleInterface& open = *QAccessible::queryAccessibleInterface(&toolbar.tBtn(0));
    open.actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QAccessibleInterface& volume = *QAccessible::queryAccessibleInterface(&toolbar.ctlVolume());
    volume.valueInterface()->setCurrentValue(30);
    EXPECT_EQ(clicks, std::vector<std::int16_t>{0});
    EXPECT_EQ(log, std::vector<std::string>{"volume"});
}

TEST(ToolTips, TheKeyIsLeftOutOfTheName)
{
    EXPECT_EQ(WithoutKey(u"Open (O)"), QStringLiteral("Open"));
    EXPECT_EQ(WithoutKey(u"Track (T) - Adjust With Wheel"),
              QStringLiteral("Track - Adjust With Wheel"));
    EXPECT_EQ(WithoutKey(u"Reduce Display Size (-)"), QStringLiteral("Reduce Display Size"));
    EXPECT_EQ(WithoutKey(u"No key"), QStringLiteral("No key"));
    EXPECT_EQ(WithoutKey(u"Half (open"), QStringLiteral("Half (open"));
    EXPECT_EQ(WithoutKey(u""), QString());
}

TEST_F(ToolbarTest, ANumberWithoutButtonEndsTheProgram)
{
    for (const std::int16_t number : Numbers{-1, 11, 43, 1000})
        EXPECT_DEATH(static_cast<void>(toolbar.tBtn(number)), "") << number;
}

} // namespace
} // namespace lantern
