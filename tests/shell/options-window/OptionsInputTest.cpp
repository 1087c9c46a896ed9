// SPDX-License-Identifier: GPL-3.0-or-later
#include "OptionsWindowFixture.h"

#include <QWheelEvent>

#include <gmock/gmock.h>

#include <algorithm>

namespace lantern {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using OptionsInputTest = OptionsWindowFixture;

TEST_F(OptionsInputTest, TheButtonsLeadFromPanelToPanelAndHide)
{
    ShowOptions();
    Click(options.cmd(1));
    EXPECT_FALSE(IsOptionsInFront());
    Click(options.cmd(3));
    EXPECT_TRUE(IsOptionsInFront());
    Click(options.cmd(0));
    EXPECT_FALSE(options.isVisible());
    ShowAbout();
    Click(options.cmd(2));
    EXPECT_FALSE(options.isVisible());
    EXPECT_THAT(Done(), IsEmpty());
    EXPECT_THAT(player.Calls, IsEmpty());
}

TEST_F(OptionsInputTest, TheCustomButtonsToggleTheirValues)
{
    ShowOptions();
    audio.CustomBalance = -30;
    audio.CustomKeyPitch = 4;
    audio.CustomSpeed = 25;
    Click(options.cmd(5));
    EXPECT_EQ(engine.Balance, -30);
    EXPECT_EQ(audio.WheelType, WheelMode::Balance);
    Click(options.cmd(6));
    EXPECT_EQ(engine.Pitch, 4);
    EXPECT_EQ(audio.WheelType, WheelMode::KeyPitch);
    Click(options.cmd(7));
    EXPECT_EQ(engine.Tempo, 25);
    EXPECT_EQ(audio.WheelType, WheelMode::Speed);
    Click(options.cmd(8));
    EXPECT_EQ(engine.Volume, 0);
    EXPECT_EQ(audio.WheelType, WheelMode::Volume);
    for (const std::size_t again : {5u, 6u, 7u, 8u})
        Click(options.cmd(again));
    EXPECT_EQ(engine.Balance, 0);
    EXPECT_EQ(engine.Pitch, 0);
    EXPECT_EQ(engine.Tempo, 0);
    EXPECT_EQ(engine.Volume, 100);
}

TEST_F(OptionsInputTest, TheCheckButtonDecidesWhetherTheDeviceIsRemembered)
{
    ShowOptions();
    for (const bool isOn : {true, false}) {
        Click(options.cmd(4));
        EXPECT_EQ(options.cmd(4).Value(), isOn);
        EXPECT_EQ(audio.AudioSave, isOn);
    }
}

TEST_F(OptionsInputTest, EitherDeviceButtonOpensTheMenuOfDevicesAndGivesTheFocusBack)
{
    ShowOptions();
    for (const std::size_t index : {0u, 1u}) {
        player.Calls.clear();
        options.dev(index).setFocus();
        Click(options.dev(index));
        EXPECT_THAT(player.Calls, ElementsAre("device menu"));
        EXPECT_EQ(options.focusWidget(), &options.SpecPic());
        EXPECT_FALSE(options.dev(index).Value());
    }
}

// The window's value, then the wheel's current value once more, as the user touches it.
TEST_F(OptionsInputTest, ASliderTakesTheWheelAndThenSetsItsValue)
{
    ShowOptions();
    options.ctlBalance().ScrollTo(-20);
    EXPECT_THAT(audioHost.Statuses, ElementsAre("Balance: DEFAULT", "Balance: -20"));
    EXPECT_EQ(audio.WheelType, WheelMode::Balance);
    options.ctlKeyPitch().ScrollTo(3);
    EXPECT_EQ(audio.WheelType, WheelMode::KeyPitch);
    options.ctlSpeed().ScrollTo(12);
    EXPECT_EQ(audio.WheelType, WheelMode::Speed);
    options.ctlVolume().ScrollTo(45);
    EXPECT_EQ(audio.WheelType, WheelMode::Volume);
    EXPECT_EQ(audioHost.Statuses.back(), "Volume: 45%");
    EXPECT_EQ(engine.Balance, -20);
    EXPECT_EQ(engine.Pitch, 3);
    EXPECT_EQ(engine.Tempo, 12);
    EXPECT_EQ(engine.Volume, 45);
}

TEST_F(OptionsInputTest, ThePressOfTheMouseOnASliderIsHeard)
{
    ShowOptions();
    Mouse(options.ctlVolume(), QEvent::MouseButtonPress, {100, 6}, Qt::LeftButton, Qt::LeftButton);
    EXPECT_EQ(engine.Volume, 50);
    Mouse(options.ctlVolume(), QEvent::MouseMove, {300, 6}, Qt::NoButton, Qt::LeftButton);
    EXPECT_EQ(engine.Volume, 100);
    Mouse(options.ctlVolume(), QEvent::MouseMove, {-9, 6}, Qt::NoButton, Qt::LeftButton);
    EXPECT_EQ(engine.Volume, 0);
    EXPECT_EQ(options.size(), QSize(412, 220));
}

TEST_F(OptionsInputTest, AValueThatASliderHoldsAlreadyIsNotSetAgain)
{
    options.ctlVolume().SetValue(100);
    options.ctlBalance().SetValue(0);
    EXPECT_THAT(Done(), IsEmpty());
    EXPECT_EQ(audio.WheelType, WheelMode::Volume);
}

TEST_F(OptionsInputTest, TheSlidersHaveTheRangesOfTheirValues)
{
    const auto rangeOf = [](const ctlSlide& slider) {
        return std::vector<std::int32_t>{slider.Min(), slider.Max(), slider.Value()};
    };
    EXPECT_THAT(rangeOf(options.ctlBalance()), ElementsAre(-50, 50, 0));
    EXPECT_THAT(rangeOf(options.ctlKeyPitch()), ElementsAre(-10, 10, 0));
    EXPECT_THAT(rangeOf(options.ctlSpeed()), ElementsAre(-90, 90, 0));
    EXPECT_THAT(rangeOf(options.ctlVolume()), ElementsAre(0, 100, 100));
    EXPECT_EQ(options.ctlVolume().SliderBack(), 4210752u);
    EXPECT_EQ(options.ctlBalance().SliderBack(), 568319u);
}

TEST_F(OptionsInputTest, KeysGoToThePlayerWhateverHasTheFocus)
{
    ShowOptions();
    QWidget* const targets[] = {&options, &PanelInFront(), &options.SpecPic(), &options.ctlSpeed(),
                                &options.dev(1)};
    for (QWidget* target : targets) {
        player.Calls.clear();
        Key(*target, QEvent::KeyPress, Qt::Key_M, false, Qt::ControlModifier);
        Key(*target, QEvent::KeyRelease, Qt::Key_M);
        EXPECT_THAT(player.Calls, ElementsAre("down 77 2", "up 77 0"));
    }
}

TEST_F(OptionsInputTest, AHeldKeyActsOnceUnlessItIsOneThatRepeats)
{
    ShowOptions();
    for (const int key : {Qt::Key_Escape, Qt::Key_Up}) {
        Key(options, QEvent::KeyPress, key);
        for (int i = 0; i < 2; ++i) {
            Key(options, QEvent::KeyRelease, key, true);
            Key(options, QEvent::KeyPress, key, true);
        }
        Key(options, QEvent::KeyRelease, key);
    }
    EXPECT_THAT(player.Calls, ElementsAre("down 27 0", "up 27 0", "down 38 0", "down 38 0",
                                          "down 38 0", "up 38 0"));
}

TEST_F(OptionsInputTest, RepeatsWithoutTheirMarkAreKnownByTheirMoment)
{
    ShowOptions();
    QKeyEvent down(QEvent::KeyPress, Qt::Key_M, Qt::NoModifier);
    down.setTimestamp(1000);
    QApplication::sendEvent(&options.SpecPic(), &down);
    for (quint64 moment = 1300; moment < 1400; moment += 40) {
        QKeyEvent release(QEvent::KeyRelease, Qt::Key_M, Qt::NoModifier);
        release.setTimestamp(moment);
        QApplication::sendEvent(&options.SpecPic(), &release);
        QKeyEvent press(QEvent::KeyPress, Qt::Key_M, Qt::NoModifier);
        press.setTimestamp(moment);
        QApplication::sendEvent(&options.SpecPic(), &press);
    }
    EXPECT_EQ(std::ranges::count(player.Calls, "down 77 0"), 1);
}

TEST_F(OptionsInputTest, TheWheelGoesToThePlayerNotchByNotch)
{
    ShowOptions();
    for (const int angle : {120, -120, 60, 60, 240}) {
        QWheelEvent turn(QPointF(5, 5), options.mapToGlobal(QPointF(5, 5)), {}, {0, angle},
                         Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&options, &turn);
    }
    EXPECT_THAT(player.Calls, ElementsAre("wheel 1", "wheel -1", "wheel 1", "wheel 1"));
}

TEST_F(OptionsInputTest, TheRightButtonOpensThePlayersMenuAnywhereButOnControls)
{
    ShowOptions();
    std::vector<QWidget*> surfaces = Surfaces();
    surfaces.push_back(options.cmd(0).parentWidget());
    surfaces.push_back(options.cmd(2).parentWidget());
    for (QWidget* surface : surfaces) {
        player.Calls.clear();
        Press(*surface, Qt::RightButton);
        EXPECT_THAT(player.Calls, IsEmpty()) << "it is the release that opens it";
        Release(*surface, Qt::RightButton);
        EXPECT_THAT(player.Calls, ElementsAre("menu"));
    }
    player.Calls.clear();
    for (QWidget* control :
         {static_cast<QWidget*>(&options.ctlSpeed()), static_cast<QWidget*>(&options.cmd(5)),
          static_cast<QWidget*>(&options.dev(0))})
        Click(*control, Qt::RightButton);
    EXPECT_THAT(player.Calls, IsEmpty());
}

TEST_F(OptionsInputTest, TheAddressOpensTheWebSiteAndOtherButtonsTheMenu)
{
    ShowAbout();
    Click(Url());
    EXPECT_THAT(player.Calls, ElementsAre("web site"));
    Click(Url(), Qt::MiddleButton);
    EXPECT_THAT(player.Calls, ElementsAre("web site", "menu"));
    Click(options.lab(0), Qt::MiddleButton);
    Click(LabInfo());
    Click(Url(), Qt::BackButton); // which has no number
    EXPECT_THAT(player.Calls, ElementsAre("web site", "menu"));
}

TEST_F(OptionsInputTest, AnySurfaceMovesTheWindowWithTheLeftButtonAlone)
{
    ShowOptions();
    std::vector<QWidget*> surfaces = Surfaces();
    surfaces.push_back(options.cmd(0).parentWidget());
    for (QWidget* surface : surfaces) {
        const std::string name = surface->accessibleName().toStdString();
        EXPECT_EQ(Dragged(*surface, {30, 20}, Qt::LeftButton), QPoint(30, 20)) << name;
        EXPECT_EQ(Dragged(*surface, {-30, -20}, Qt::LeftButton), QPoint(-30, -20)) << name;
        EXPECT_EQ(Dragged(*surface, {30, 20}, Qt::LeftButton | Qt::RightButton), QPoint()) << name;
        EXPECT_EQ(Dragged(*surface, {30, 20}, Qt::RightButton), QPoint()) << name;
    }
    EXPECT_EQ(std::ranges::count(player.Calls, "web site"), 2)
        << "a drag of the address doesn't open it, what is no drag does";
}

TEST_F(OptionsInputTest, NoEdgeOfItSizesIt)
{
    for (const char* word : {"OPTIONS", "ABOUT"}) {
        Show(word);
        const QSize size = options.size();
        QWidget& panel = PanelInFront();
        const QPoint corner = panel.rect().bottomRight();
        const QPoint start = panel.mapToGlobal(corner);
        Mouse(panel, QEvent::MouseButtonPress, corner, Qt::LeftButton, Qt::LeftButton);
        for (const QPoint& way : {QPoint(1, 1), QPoint(40, 30)})
            Mouse(panel, QEvent::MouseMove, panel.mapFromGlobal(start + way), Qt::NoButton,
                  Qt::LeftButton);
        Mouse(panel, QEvent::MouseButtonRelease, corner, Qt::LeftButton, Qt::NoButton);
        EXPECT_EQ(options.size(), size) << word;
    }
}

TEST_F(OptionsInputTest, ControlsDoNotMoveTheWindow)
{
    ShowOptions();
    for (QWidget* control :
         {static_cast<QWidget*>(&options.ctlSpeed()), static_cast<QWidget*>(&options.dev(1))})
        EXPECT_EQ(Dragged(*control, {30, 20}, Qt::LeftButton), QPoint());
}

TEST_F(OptionsInputTest, TheFocusRestsOnTheSpectrum)
{
    ShowOptions();
    EXPECT_EQ(options.focusWidget(), &options.SpecPic());
    for (std::size_t i = 0; i < kOptionsCommands; ++i) {
        options.ctlSpeed().setFocus();
        options.cmd(i).setFocus();
        EXPECT_EQ(options.focusWidget(), &options.SpecPic());
    }
    options.ctlSpeed().setFocus();
    QEvent activation(QEvent::WindowActivate);
    QApplication::sendEvent(&options, &activation);
    EXPECT_EQ(options.focusWidget(), &options.SpecPic());
}

} // namespace
} // namespace lantern
