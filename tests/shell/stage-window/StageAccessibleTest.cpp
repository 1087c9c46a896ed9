// SPDX-License-Identifier: GPL-3.0-or-later
// What assistive tools are told of the stage window.
#include "StageWindowFixture.h"

#include <QAccessible>

#include <gmock/gmock.h>

namespace lantern {
namespace {

using ::testing::ElementsAre;

class StageAccessibleTest : public StageWindowFixture {
protected:
    static QAccessibleInterface& StageKnownAs(QWidget& widget)
    {
        return *QAccessible::queryAccessibleInterface(&widget);
    }
    static std::string StageNameOf(QAccessibleInterface& known)
    {
        return known.text(QAccessible::Name).toStdString();
    }
};

TEST_F(StageAccessibleTest, TheWindowIsADialogOfGroups)
{
    ASSERT_NO_FATAL_FAILURE(Show());
    QAccessibleInterface& known = StageKnownAs(window);
    EXPECT_EQ(known.role(), QAccessible::Dialog);
    EXPECT_EQ(StageNameOf(known), "Lyric Lantern CDG Player Stage");
    ASSERT_EQ(known.childCount(), 1) << "the line around the focus is nothing to read";
    std::vector<std::string> groups;
    QAccessibleInterface& panel = *known.child(0);
    for (int i = 0; i < panel.childCount(); ++i) {
        if (panel.child(i)->role() == QAccessible::Grouping)
            groups.push_back(StageNameOf(*panel.child(i)));
    }
    EXPECT_THAT(groups,
                ElementsAre("Sound delay", "Voice guide", "Songs", "Picture", "Singer's screen"));
}

TEST_F(StageAccessibleTest, AChoiceTellsItsNameAndWhetherItHolds)
{
    ASSERT_NO_FATAL_FAILURE(Show());
    const char* const names[] = {"As recorded", "Left to both ears", "Right to both ears"};
    for (std::size_t i = 0; i < kStageChoices.size(); ++i) {
        QAccessibleInterface& known = StageKnownAs(window.Choice(i));
        EXPECT_EQ(known.role(), QAccessible::RadioButton);
        EXPECT_EQ(StageNameOf(known), names[i]);
        EXPECT_FALSE(known.text(QAccessible::Description).isEmpty());
        EXPECT_TRUE(known.state().checkable);
        EXPECT_TRUE(known.state().focusable);
        EXPECT_EQ(known.state().checked, i == 0);
    }
    EXPECT_EQ(StageNameOf(StageKnownAs(window.HideButton())), "Hide this window");
}

TEST_F(StageAccessibleTest, ASwitchTellsWhetherItIsOnAndAButtonWhatItDoes)
{
    ASSERT_NO_FATAL_FAILURE(Show());
    const char* const switches[] = {"Remember key and speed", "Even loudness", "Smooth letters"};
    for (std::size_t i = 0; i < kStageSwitches.size(); ++i) {
        QAccessibleInterface& known = StageKnownAs(window.Switch(i));
        EXPECT_EQ(known.role(), QAccessible::CheckBox);
        EXPECT_EQ(StageNameOf(known), switches[i]);
        EXPECT_FALSE(known.text(QAccessible::Description).isEmpty());
        EXPECT_FALSE(known.state().checked);
        window.Switch(i).Press();
        EXPECT_TRUE(known.state().checked);
    }
    const char* const buttons[] = {"Forget this song", "Forget all songs"};
    for (std::size_t i = 0; i < kStageButtons.size(); ++i) {
        QAccessibleInterface& known = StageKnownAs(window.Button(i));
        EXPECT_EQ(known.role(), QAccessible::Button);
        EXPECT_EQ(StageNameOf(known), buttons[i]);
        EXPECT_FALSE(known.text(QAccessible::Description).isEmpty());
        EXPECT_FALSE(known.state().disabled);
    }
}

TEST_F(StageAccessibleTest, TheDelayIsASliderOfMilliseconds)
{
    ASSERT_NO_FATAL_FAILURE(Show());
    QAccessibleInterface& slider = StageKnownAs(window.DelaySlider());
    EXPECT_EQ(slider.role(), QAccessible::Slider);
    EXPECT_EQ(StageNameOf(slider), "Sound delay");
    EXPECT_TRUE(slider.state().focusable);
    ASSERT_NE(slider.valueInterface(), nullptr);
    EXPECT_EQ(slider.valueInterface()->minimumValue().toInt(), -500);
    EXPECT_EQ(slider.valueInterface()->maximumValue().toInt(), 500);
    slider.valueInterface()->setCurrentValue(-75);
    QCoreApplication::processEvents();
    EXPECT_EQ(engine.DelayMs, -75);
    EXPECT_EQ(slider.valueInterface()->currentValue().toInt(), -75);
    EXPECT_EQ(StageNameOf(StageKnownAs(window.DelayValue())), "-75 ms");
    QAccessibleInterface& test = StageKnownAs(window.TestSwitch());
    EXPECT_EQ(test.role(), QAccessible::CheckBox);
    EXPECT_EQ(StageNameOf(test), "Click and flash");
}

TEST_F(StageAccessibleTest, TheSingersScreenIsAButtonWithAMenu)
{
    ASSERT_NO_FATAL_FAILURE(Show());
    const QString screen = QStringLiteral("A Maker of Large Screens Model 55");
    window.ShowSinger(screen, QStringLiteral("Not connected"));
    QAccessibleInterface& known = StageKnownAs(window.ScreenButton());
    EXPECT_EQ(known.role(), QAccessible::ButtonMenu);
    EXPECT_TRUE(known.state().hasPopup);
    EXPECT_TRUE(known.state().focusable);
    EXPECT_EQ(StageNameOf(known), screen.toStdString()) << "whole, whatever has room";
    EXPECT_NE(window.ScreenButton().Caption(), screen);
    EXPECT_FALSE(known.text(QAccessible::Description).isEmpty());
    EXPECT_EQ(StageNameOf(StageKnownAs(window.SingerStatus())), "Not connected");
}

TEST_F(StageAccessibleTest, AChoiceCanBeMade)
{
    ASSERT_NO_FATAL_FAILURE(Show());
    QAccessibleInterface& right = StageKnownAs(window.Choice(2));
    const QStringList actions = right.actionInterface()->actionNames();
    ASSERT_FALSE(actions.isEmpty());
    right.actionInterface()->doAction(actions.first());
    QCoreApplication::processEvents();
    EXPECT_EQ(engine.Guide, VoiceGuide::Right);
    EXPECT_TRUE(right.state().checked);
    EXPECT_FALSE(StageKnownAs(window.Choice(0)).state().checked);
}

} // namespace
} // namespace lantern
