// SPDX-License-Identifier: GPL-3.0-or-later
#include "ControlAccessibility.h"
#include "ToolbarFixture.h"

#include <QAccessible>

#include <map>
#include <set>

namespace lantern {
namespace {

using CommandList = std::initializer_list<CommandId>;

class ToolbarTest : public ToolbarFixture {};

TEST_F(ToolbarTest, EveryButtonStandsWhereItWasDesigned)
{
    for (const ToolbarButton& row : kToolbarButtons) {
        const ctlPicBtn& button = toolbar.tBtn(row.command);
        EXPECT_EQ(button.size(), QSize(row.rect.width / 15, row.rect.height / 15))
            << NumberOf(row.command);
        if (row.command != CommandId::Pause && row.command != CommandId::RestoreScreen) {
            EXPECT_EQ(button.pos(), QPoint(row.rect.left / 15, row.rect.top / 15))
                << NumberOf(row.command);
        }
    }
}

TEST_F(ToolbarTest, PauseAndRestoreTakeThePlaceOfPlayAndFullScreen)
{
    EXPECT_EQ(toolbar.tBtn(CommandId::Pause).geometry(), toolbar.tBtn(CommandId::Play).geometry());
    EXPECT_EQ(toolbar.tBtn(CommandId::RestoreScreen).geometry(),
              toolbar.tBtn(CommandId::FullScreen).geometry());
}

TEST_F(ToolbarTest, AClickTellsTheCommandOfTheButton)
{
    Show();
    std::vector<CommandId> expected;
    for (const ToolbarButton& row : kToolbarButtons) {
        const bool isCovered =
            row.command == CommandId::Play || row.command == CommandId::FullScreen;
        if (isCovered)
            continue;
        ClickAt(FreePlaceOf(row.command));
        expected.push_back(row.command);
        ASSERT_EQ(clicks, expected);
    }
}

TEST_F(ToolbarTest, EachHalfOfASkipPairBelongsToItsOwnButton)
{
    Show();
    for (const SkipPair& pair : kSkipPairs) {
        const QRect back = toolbar.tBtn(pair.back).geometry();
        const QRect both = back.united(toolbar.tBtn(pair.forward).geometry());
        const QPoint corner = toolbar.TBar().mapTo(&window, both.topLeft());
        for (int x = 0; x < both.width(); ++x) {
            const CommandId owner = x < both.width() / 2 ? pair.back : pair.forward;
            for (const int y : {0, both.height() - 1}) {
                const QPoint at = corner + QPoint(x, y);
                ASSERT_EQ(window.childAt(at), &toolbar.tBtn(owner)) << x << ',' << y;
                ClickAt(at);
                ASSERT_EQ(clicks, std::vector<CommandId>{owner}) << x << ',' << y;
                clicks.clear();
            }
        }
    }
}

TEST_F(ToolbarTest, WhatIsHiddenBeforeTheWindowIsShownStaysHidden)
{
    toolbar.tBtn(CommandId::Pause).setVisible(false);
    Show();
    EXPECT_FALSE(toolbar.tBtn(CommandId::Pause).isVisible());
    EXPECT_TRUE(toolbar.tBtn(CommandId::Play).isVisible());
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
    for (const CommandId command :
         CommandList{CommandId::Size1, CommandId::Size2, CommandId::Size3, CommandId::Size4,
                     CommandId::Size5, CommandId::FullScreen})
        EXPECT_FALSE(toolbar.tBtn(command).isVisible()) << NumberOf(command);
    for (const CommandId command :
         CommandList{CommandId::Larger, CommandId::Smaller, CommandId::Exit, CommandId::Mute,
                     CommandId::Options})
        EXPECT_TRUE(toolbar.tBtn(command).isVisible()) << NumberOf(command);
    SetWidth(kWide);
    EXPECT_TRUE(toolbar.tBtn(CommandId::Size5).isVisible());
}

TEST_F(ToolbarTest, InANarrowWindowTheLeftGroupCanStillBeClicked)
{
    SetWidth(kNarrow);
    Show();
    for (const CommandId command : CommandList{
             CommandId::Open, CommandId::Stop, CommandId::QuickPlay, CommandId::Back10Seconds,
             CommandId::Forward10Seconds, CommandId::CopyPicture, CommandId::Options,
             CommandId::Mute, CommandId::Larger, CommandId::Smaller, CommandId::Exit})
        ClickAt(FreePlaceOf(command));
    EXPECT_EQ(clicks,
              (std::vector<CommandId>{CommandId::Open, CommandId::Stop, CommandId::QuickPlay,
                                      CommandId::Back10Seconds, CommandId::Forward10Seconds,
                                      CommandId::CopyPicture, CommandId::Options, CommandId::Mute,
                                      CommandId::Larger, CommandId::Smaller, CommandId::Exit}));
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
        toolbar.tBtn(row.command).setFocus();
        ASSERT_TRUE(pic.hasFocus()) << NumberOf(row.command);
    }
    window.setFocus();
    ClickAt(CentreOf(toolbar.ctlVolume()));
    EXPECT_TRUE(pic.hasFocus());
}

TEST_F(ToolbarTest, ReleasingASkipOrWheelButtonGivesTheFocusToThePicture)
{
    Show();
    for (const CommandId command : kFocusingButtons) {
        const QPoint at = FreePlaceOf(command);
        Press(at);
        window.setFocus();
        Release(at);
        EXPECT_TRUE(pic.hasFocus()) << NumberOf(command);
    }
    const QPoint stop = FreePlaceOf(CommandId::Stop);
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
    ClickAt(FreePlaceOf(CommandId::Stop));
    ClickAt(CentreOf(toolbar.ctlVolume()));
    ClickAt(CentreOf(toolbar.ctlSlider()));
    ClickAt(CentreOf(toolbar.PlayTicker()));
}

TEST_F(ToolbarTest, EveryButtonTellsWhatItIsForAndByWhichKey)
{
    const std::map<std::int16_t, const char*> expected = {
        {0, "Open (O)"},
        {1, "Play (P)"},
        {2, "Pause (P)"},
        {3, "Stop (.)"},
        {4, "Forward 10 seconds (Right Arrow)"},
        {5, "Forward 60 seconds (Page Down)"},
        {6, "Custom Speed/Quick Play (Q)"},
        {7, "View at 1x size (1)"},
        {8, "View at 2x size (2)"},
        {9, "View at 3x size (3)"},
        {10, "Full Screen (F)"},
        {12, "Copy Screen to ClipBoard (C)"},
        {14, "Options (ESC)"},
        {16, "Exit (Alt+F4)"},
        {20, "Restore Screen (F)"},
        {21, "View at 4x size (4)"},
        {22, "View at 5x size (5)"},
        {24, "Rewind 10 seconds (Left Arrow)"},
        {25, "Rewind 60 seconds (Page Up)"},
        {26, "Mute/Restore Audio (M)"},
        {31, "Balance (B) - Adjust With Wheel"},
        {32, "Key / Pitch (K) - Adjust With Wheel"},
        {33, "Track (T) - Adjust With Wheel"},
        {34, "Volume (V) - Adjust With Wheel"},
        {35, "Speed (S) - Adjust With Wheel"},
        {41, "Increase Display Size (+)"},
        {42, "Reduce Display Size (-)"},
    };
    ASSERT_EQ(expected.size(), kToolbarButtons.size());
    for (const auto& [index, toolTip] : expected)
        EXPECT_EQ(toolbar.tBtn(static_cast<CommandId>(index)).toolTip(), QLatin1StringView(toolTip))
            << index;
}

TEST_F(ToolbarTest, AssistiveToolsHearANameForEverythingOnTheBar)
{
    const auto nameOf = [](QWidget& widget) {
        return QAccessible::queryAccessibleInterface(&widget)->text(QAccessible::Name);
    };
    std::set<QString> names;
    for (const ToolbarButton& row : kToolbarButtons) {
        const QString name = nameOf(toolbar.tBtn(row.command));
        EXPECT_FALSE(name.isEmpty()) << NumberOf(row.command);
        EXPECT_FALSE(name.contains(u'(')) << NumberOf(row.command);
        EXPECT_TRUE(names.insert(name).second) << NumberOf(row.command);
    }
    EXPECT_EQ(nameOf(toolbar.tBtn(CommandId::Options)), QStringLiteral("Options"));
    EXPECT_EQ(nameOf(toolbar.tBtn(CommandId::WheelKey)),
              QStringLiteral("Key / Pitch - Adjust With Wheel"));
    EXPECT_EQ(nameOf(toolbar.TBar()), QStringLiteral("Toolbar"));
    EXPECT_EQ(nameOf(toolbar.TBarZoom()), QStringLiteral("Display size"));
    EXPECT_EQ(nameOf(toolbar.ctlSlider()), QStringLiteral("Track position"));
    EXPECT_EQ(nameOf(toolbar.ctlVolume()), QStringLiteral("Volume"));
    EXPECT_EQ(nameOf(toolbar.PlayTicker()), QStringLiteral("Time"));
}

TEST_F(ToolbarTest, AssistiveToolsFindTheFocusInOnePlace)
{
    Show();
    toolbar.tBtn(CommandId::WheelVolume).setFocus();
    const auto isFocused = [](QWidget& widget) {
        return QAccessible::queryAccessibleInterface(&widget)->state().focused;
    };
    EXPECT_TRUE(isFocused(pic));
    for (const ToolbarButton& row : kToolbarButtons)
        EXPECT_FALSE(isFocused(toolbar.tBtn(row.command))) << NumberOf(row.command);
    EXPECT_FALSE(isFocused(toolbar.ctlSlider()));
    EXPECT_FALSE(isFocused(toolbar.ctlVolume()));
}

TEST_F(ToolbarTest, AssistiveToolsAreNotToldOfEachTick)
{
    toolbar.ctlSlider().SetValues(0, 240000, 0);
    std::vector<const QObject*> told;
    SetToolListener([&](const QAccessibleEvent& event) { told.push_back(event.object()); });
    for (int positionMs = 10; positionMs < 1000; positionMs += 10)
        toolbar.ctlSlider().SetValue(positionMs);
    toolbar.ctlVolume().SetValue(51);
    toolbar.ctlVolume().SetValue(52);
    toolbar.ctlSlider().SetValue(11000); // ten seconds on
    SetToolListener({});
    EXPECT_EQ(told, (std::vector<const QObject*>{&toolbar.ctlVolume(), &toolbar.ctlVolume(),
                                                 &toolbar.ctlSlider()}));
}

TEST_F(ToolbarTest, AnAssistiveToolPressesAButtonAsTheMouseDoes)
{
    QAccessibleInterface& open =
        *QAccessible::queryAccessibleInterface(&toolbar.tBtn(CommandId::Open));
    open.actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QAccessibleInterface& volume = *QAccessible::queryAccessibleInterface(&toolbar.ctlVolume());
    volume.valueInterface()->setCurrentValue(30);
    QCoreApplication::processEvents();
    EXPECT_EQ(clicks, std::vector<CommandId>{CommandId::Open});
    EXPECT_EQ(log, std::vector<std::string>{"volume"});
}

TEST_F(ToolbarTest, ANumberWithoutButtonEndsTheProgram)
{
    for (const std::int16_t number : std::initializer_list<std::int16_t>{-1, 11, 43, 1000})
        EXPECT_DEATH(static_cast<void>(toolbar.tBtn(CommandId{number})), "") << number;
}

} // namespace
} // namespace lantern
