// SPDX-License-Identifier: GPL-3.0-or-later
#include "StageWindowFixture.h"

#include <QApplication>
#include <QScreen>

#include <gmock/gmock.h>

#include <utility>

namespace lantern {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using frmStageTest = StageWindowFixture;

TEST_F(frmStageTest, ItComesIntoBeingHiddenAndInTheMiddleOfTheScreen)
{
    EXPECT_FALSE(window.isVisible());
    const QRect screen = QGuiApplication::primaryScreen()->geometry();
    EXPECT_LE((window.geometry().center() - screen.center()).manhattanLength(), 2);
    EXPECT_TRUE(window.windowFlags().testFlag(Qt::FramelessWindowHint));
}

TEST_F(frmStageTest, WhatIsInAGroupLiesWithinItAndNothingOverlaps)
{
    ASSERT_NO_FATAL_FAILURE(Show());
    for (const StageGroupRow& row : kStageGroups) {
        const ctlFrame& group = window.Group(row.group);
        EXPECT_TRUE(window.rect().adjusted(5, 20, -5, -5).contains(group.geometry()));
        EXPECT_FALSE(group.geometry().intersects(window.HideButton().geometry()));
        QList<const QWidget*> parts;
        for (const QWidget* part : group.findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
            if (!dynamic_cast<const FocusMark*>(part))
                parts += part;
        }
        for (const QWidget* part : parts) {
            EXPECT_TRUE(group.rect().adjusted(3, 3, -3, -3).contains(part->geometry()));
            if (const auto* const button = dynamic_cast<const ctlPicBtn*>(part)) {
                const int text = QFontMetrics(button->Font()).horizontalAdvance(button->Caption());
                EXPECT_LE(20 + text, button->width()) << button->Caption().toStdString();
            }
            for (const QWidget* other : parts)
                EXPECT_TRUE(other == part || !part->geometry().intersects(other->geometry()));
        }
    }
}

// Tab reaches every control, shows where it is, and comes back to the first.
TEST_F(frmStageTest, TheKeyboardAloneReachesAllAndActs)
{
    ASSERT_NO_FATAL_FAILURE(Show());
    const auto* const mark = window.findChild<FocusMark*>();
    ASSERT_NE(mark, nullptr);
    std::vector<QWidget*> walk;
    do {
        walk.push_back(QApplication::focusWidget());
        EXPECT_EQ(mark->widget(), walk.back());
        EXPECT_TRUE(mark->isVisible());
        Type(Qt::Key_Tab);
    } while (QApplication::focusWidget() != walk.front() && walk.size() < 50);
    EXPECT_THAT(walk, ElementsAre(&window.DelaySlider(), &window.TestSwitch(), &window.Choice(0),
                                  &window.Choice(1), &window.Choice(2), &window.Switch(0),
                                  &window.Switch(1), &window.Button(0), &window.Button(1),
                                  &window.Switch(2), &window.ScreenButton(), &window.HideButton()));
    for (int i = 0; i < 3; ++i)
        Type(Qt::Key_Tab);
    Type(Qt::Key_Space);
    EXPECT_EQ(engine.Guide, VoiceGuide::Left);
    EXPECT_TRUE(window.Choice(1).Value());
    EXPECT_FALSE(window.Choice(0).Value());
    Type(Qt::Key_Space);
    EXPECT_EQ(engine.Guide, VoiceGuide::Left) << "one of them always holds";
    EXPECT_TRUE(window.Choice(1).Value());
    Type(Qt::Key_Right);
    EXPECT_EQ(QApplication::focusWidget(), &window.Choice(2));
    Type(Qt::Key_Space);
    EXPECT_EQ(engine.Guide, VoiceGuide::Right);
    EXPECT_THAT(player.TakeCalls(), IsEmpty());
}

TEST_F(frmStageTest, SwitchesActAndSongsCanBeForgotten)
{
    ASSERT_NO_FATAL_FAILURE(Show());
    std::vector<StageDeed> deeds;
    window.Do = [&](StageDeed deed) { deeds.push_back(deed); };
    for (const std::size_t one : {0U, 1U}) {
        window.Switch(one).setFocus();
        Type(Qt::Key_Space);
        EXPECT_TRUE(stage.Settings().*kStageSwitches.at(one).field);
        Type(Qt::Key_Space);
    }
    EXPECT_EQ(stage.Settings(), StageSettings());
    QTest::mouseClick(&window.Button(1), Qt::LeftButton);
    QTest::mouseClick(&window.Button(0), Qt::LeftButton);
    EXPECT_THAT(deeds, ElementsAre(StageDeed::ForgetAllSongs, StageDeed::ForgetSong));
}

TEST_F(frmStageTest, TheArrowKeysMoveTheDelayOfTheDevice)
{
    ASSERT_NO_FATAL_FAILURE(Show());
    EXPECT_EQ(window.DelayValue().text(), QStringLiteral("0 ms"));
    EXPECT_EQ(window.DelayDevice().text(), QStringLiteral("Default"));
    const std::pair<Qt::Key, int> keys[] = {
        {Qt::Key_Right, 5},   {Qt::Key_Up, 10},        {Qt::Key_PageUp, 60},
        {Qt::Key_Left, 55},   {Qt::Key_Down, 50},      {Qt::Key_End, 500},
        {Qt::Key_Right, 500}, {Qt::Key_PageDown, 450}, {Qt::Key_Home, -500}};
    for (const auto& [key, delay] : keys) {
        Type(key);
        EXPECT_EQ(engine.DelayMs, delay) << key;
        EXPECT_EQ(window.DelaySlider().Value(), delay);
    }
    EXPECT_EQ(window.DelayValue().text(), QStringLiteral("-500 ms"));
    Type(Qt::Key_PageUp);
    Type(Qt::Key_Escape);
    EXPECT_EQ(folder.Written(), "delay.built-in\t-450\r\n");
    EXPECT_THAT(player.TakeCalls(), IsEmpty());
}

TEST_F(frmStageTest, TheMouseMovesTheDelayToo)
{
    ASSERT_NO_FATAL_FAILURE(Show());
    ctlSlide& slider = window.DelaySlider();
    QTest::mouseClick(&slider, Qt::LeftButton, {}, {slider.width() - 1, 6});
    EXPECT_EQ(engine.DelayMs, 500);
    EXPECT_EQ(window.DelayValue().text(), QStringLiteral("+500 ms"));
    QTest::mouseClick(&slider, Qt::LeftButton, {}, {slider.width() / 2, 6});
    EXPECT_EQ(engine.DelayMs, 0);
}

TEST_F(frmStageTest, AnotherDeviceHasItsOwnDelay)
{
    ASSERT_NO_FATAL_FAILURE(Show());
    Type(Qt::Key_PageUp);
    engine.Device = {QStringLiteral("hdmi"), QString(100, u'W')};
    for (int tick = 0; tick < 20; ++tick)
        stage.Follow(true);
    EXPECT_EQ(window.DelaySlider().Value(), 0);
    EXPECT_EQ(window.DelayValue().text(), QStringLiteral("0 ms"));
    EXPECT_LE(window.DelayDevice().sizeHint().width(), window.DelayDevice().width());
    EXPECT_EQ(window.DelayDevice().toolTip(), engine.Device.name);
    engine.Device = {};
    for (int tick = 0; tick < 20; ++tick)
        stage.Follow(true);
    EXPECT_EQ(window.DelayDevice().text(), QStringLiteral("No sound device"));
    Type(Qt::Key_PageUp);
    EXPECT_EQ(engine.DelayMs, 0);
    EXPECT_EQ(window.DelaySlider().Value(), 0);
}

TEST_F(frmStageTest, TheTestBeginsByItsSwitchAndEndsByEscapeBeforeTheWindowCloses)
{
    std::vector<bool> asked;
    window.Test = [&](bool isOn) {
        asked.push_back(isOn);
        window.ShowTest(isOn);
    };
    ASSERT_NO_FATAL_FAILURE(Show());
    Type(Qt::Key_Tab);
    Type(Qt::Key_Space);
    EXPECT_EQ(asked, std::vector{true});
    EXPECT_EQ(QApplication::focusWidget(), &window.DelaySlider());
    Type(Qt::Key_Right);
    EXPECT_EQ(engine.DelayMs, 5);
    Type(Qt::Key_Escape);
    EXPECT_EQ(asked, (std::vector{true, false}));
    EXPECT_FALSE(window.TestSwitch().Value());
    EXPECT_TRUE(window.isVisible());
    window.TestSwitch().Press();
    window.ShowForm(false);
    EXPECT_EQ(asked, (std::vector{true, false, true, false}));
    Show();
    Type(Qt::Key_Escape);
    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(asked.size(), 4U);
}

// The clicks are no song to remember anything of.
TEST_F(frmStageTest, TheTestEndsBeforeAnythingIsDoneToTheSong)
{
    ASSERT_NO_FATAL_FAILURE(Show());
    std::vector<std::string> order;
    window.Test = [&](bool isOn) {
        order.emplace_back(isOn ? "test" : "song");
        window.ShowTest(isOn);
    };
    window.Do = [&](StageDeed) { order.emplace_back("deed"); };
    stage.Changed = [&](const StageSettings&) { order.emplace_back("change"); };
    window.TestSwitch().Press();
    window.Switch(0).Press();
    window.TestSwitch().Press();
    window.Button(0).Press();
    EXPECT_THAT(order, ElementsAre("test", "song", "change", "test", "song", "deed"));
}

TEST_F(frmStageTest, EscapeAndItsButtonHideItAndKeepWhatWasChosen)
{
    ASSERT_NO_FATAL_FAILURE(Show());
    QTest::mouseClick(&window.Choice(2), Qt::LeftButton);
    Type(Qt::Key_Escape);
    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(folder.Written(), "voiceguide\tright\r\n");
    ASSERT_NO_FATAL_FAILURE(Show());
    QTest::mouseClick(&window.Choice(0), Qt::LeftButton);
    QTest::mouseClick(&window.HideButton(), Qt::LeftButton);
    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(folder.Written(), "");
    ASSERT_NO_FATAL_FAILURE(Show());
    window.close();
    EXPECT_FALSE(window.isVisible());
    EXPECT_THAT(player.TakeCalls(), IsEmpty());
}

TEST_F(frmStageTest, OtherKeysAndTheWheelAreThePlayers)
{
    ASSERT_NO_FATAL_FAILURE(Show());
    Type(Qt::Key_P);
    Type(Qt::Key_F2);
    EXPECT_THAT(player.TakeCalls(), ElementsAre("down 80", "stage"));
    QWheelEvent turn({10, 10}, window.mapToGlobal(QPointF(10, 10)), {}, {0, 120}, {}, {},
                     Qt::NoScrollPhase, false);
    QApplication::sendEvent(&window, &turn);
    EXPECT_THAT(player.TakeCalls(), ElementsAre("wheel 1"));
    int menus = 0;
    window.RightButtonUp = [&] { ++menus; };
    QTest::mouseClick(&window.Group(StageGroup::VoiceGuide), Qt::RightButton, {}, {3, 3});
    QTest::mouseClick(window.Group(StageGroup::VoiceGuide).parentWidget(), Qt::RightButton, {},
                      {100, 30});
    EXPECT_EQ(menus, 2);
}

TEST_F(frmStageTest, ASwitchActsAtOnceAndIsKept)
{
    ASSERT_NO_FATAL_FAILURE(Show());
    EXPECT_FALSE(window.Switch(2).Value());
    QTest::mouseClick(&window.Switch(2), Qt::LeftButton);
    EXPECT_TRUE(stage.Settings().smoothLetters);
    EXPECT_TRUE(window.Switch(2).Value());
    Type(Qt::Key_Escape);
    EXPECT_EQ(folder.Written(), "smoothletters\tY\r\n");
    ASSERT_NO_FATAL_FAILURE(Show());
    QTest::mouseClick(&window.Switch(2), Qt::LeftButton);
    EXPECT_FALSE(stage.Settings().smoothLetters);
    QTest::mouseClick(&window.HideButton(), Qt::LeftButton);
    EXPECT_EQ(folder.Written(), "");
}

TEST_F(frmStageTest, ItShowsWhatWasChosenBefore)
{
    folder.Write("voiceguide\tleft\r\nsmoothletters\tY\r\n");
    stage.Load();
    frmStage next(mainWindow, player, stage, TwipsPerPixel{15, 15});
    EXPECT_TRUE(next.Choice(1).Value());
    EXPECT_FALSE(next.Choice(0).Value());
    EXPECT_TRUE(next.Switch(2).Value());
}

} // namespace
} // namespace lantern
