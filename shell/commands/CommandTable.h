// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Application.h"
#include "AudioControl.h"
#include "Commands.h"
#include "Display.h"
#include "PlaybackClock.h"

#include <QStringView>

#include <algorithm>
#include <array>
#include <cstdint>

namespace lantern {

struct Command {
    std::int16_t number;
    QStringView toolTip;  // of the button with this number; ends in the key. Empty without one
    QStringView menuText; // "%1" is where the program's title goes. Empty for none
    void (*run)(const CommandTargets& to);
};

// The numbers are shared by buttons, menu items and keys.
inline constexpr std::array kCommandTable = {
    Command{0, u"Open (O)", u"Open ", [](const CommandTargets& to) { to.window.ShowOpenDialog(); }},
    Command{1, u"Play (P)", u"Play", [](const CommandTargets& to) { to.clock.PlayPause(); }},
    Command{2, u"Pause (P)", u"Pause", [](const CommandTargets& to) { to.clock.PlayPause(); }},
    Command{3, u"Stop (.)", u"Stop", [](const CommandTargets& to) { to.clock.StopPlaying(); }},
    Command{4, u"Forward 10 seconds (Right Arrow)", u"Forward +10 seconds ",
            [](const CommandTargets& to) { to.clock.SkipBy(10000); }},
    Command{5, u"Forward 60 seconds (Page Down)", u"Forward +60 seconds ",
            [](const CommandTargets& to) { to.clock.SkipBy(60000); }},
    Command{24, u"Rewind 10 seconds (Left Arrow)", u"Rewind 10 seconds ",
            [](const CommandTargets& to) { to.clock.SkipBy(-10000); }},
    Command{25, u"Rewind 60 seconds (Page Up)", u"Rewind 60 seconds ",
            [](const CommandTargets& to) { to.clock.SkipBy(-60000); }},
    Command{6, u"Custom Speed/Quick Play (Q)", u"",
            [](const CommandTargets& to) { to.audio.ToggleSpeed(false); }},
    Command{26, u"Mute/Restore Audio (M)", u"",
            [](const CommandTargets& to) { to.audio.ToggleVolume(false); }},
    Command{7, u"View at 1x size (1)", u"",
            [](const CommandTargets& to) { to.display.SetZoom(1, 1.0F); }},
    Command{8, u"View at 2x size (2)", u"",
            [](const CommandTargets& to) { to.display.SetZoom(2, 1.0F); }},
    Command{9, u"View at 3x size (3)", u"",
            [](const CommandTargets& to) { to.display.SetZoom(3, 1.0F); }},
    Command{21, u"View at 4x size (4)", u"",
            [](const CommandTargets& to) { to.display.SetZoom(4, 1.0F); }},
    Command{22, u"View at 5x size (5)", u"",
            [](const CommandTargets& to) { to.display.SetZoom(5, 1.0F); }},
    Command{10, u"Full Screen (F)", u"Full Screen",
            [](const CommandTargets& to) { to.display.SetZoom(kFullScreenStep, 1.0F); }},
    Command{20, u"Restore Screen (F)", u"",
            [](const CommandTargets& to) { to.display.SetZoom(kFullScreenStep, 1.0F); }},
    Command{12, u"Copy Screen to ClipBoard (C)", u"Copy Screen",
            [](const CommandTargets& to) { to.display.CopyToClipboard(); }},
    Command{14, u"Options (ESC)", u"",
            [](const CommandTargets& to) { to.window.ToggleOptions(false); }},
    Command{15, u"", u"About %1 ", [](const CommandTargets& to) { to.window.ShowAbout(); }},
    Command{16, u"Exit (Alt+F4)", u"Exit %1", [](const CommandTargets& to) { to.window.Exit(); }},
    Command{31, u"Balance (B) - Adjust With Wheel", u"",
            [](const CommandTargets& to) { to.audio.SetWheelType(1); }},
    Command{32, u"Key / Pitch (K) - Adjust With Wheel", u"",
            [](const CommandTargets& to) { to.audio.SetWheelType(2); }},
    Command{33, u"Track (T) - Adjust With Wheel", u"",
            [](const CommandTargets& to) { to.audio.SetWheelType(3); }},
    Command{34, u"Volume (V) - Adjust With Wheel", u"",
            [](const CommandTargets& to) { to.audio.SetWheelType(4); }},
    Command{35, u"Speed (S) - Adjust With Wheel", u"",
            [](const CommandTargets& to) { to.audio.SetWheelType(5); }},
    Command{41, u"Increase Display Size (+)", u"Increase Display Size",
            [](const CommandTargets& to) { to.display.ZoomIn(); }},
    Command{42, u"Reduce Display Size (-)", u"Reduce Display Size",
            [](const CommandTargets& to) { to.display.ZoomOut(); }},
    Command{44, u"", u"Go to the Lyric Lantern web site",
            [](const CommandTargets& to) { to.window.OpenWebSite(); }},
};

// A number that isn't in the table has no texts.
constexpr QStringView ToolTipOf(std::int16_t number)
{
    const auto* const command = std::ranges::find(kCommandTable, number, &Command::number);
    return command == kCommandTable.end() ? QStringView() : command->toolTip;
}

inline QString MenuTextOf(std::int16_t number)
{
    const auto* const command = std::ranges::find(kCommandTable, number, &Command::number);
    if (command == kCommandTable.end())
        return {};
    return command->menuText.toString().replace(QStringLiteral("%1"), kApplicationTitle);
}

} // namespace lantern
