// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Application.h"
#include "AudioControl.h"
#include "CommandId.h"
#include "Commands.h"
#include "Display.h"
#include "PlaybackClock.h"

#include <QStringView>

#include <algorithm>
#include <array>

namespace lantern {

struct Command {
    CommandId id;
    QStringView toolTip;  // of the button of this command; ends in the key. Empty without one
    QStringView menuText; // "%1" is where the program's title goes. Empty for none
    void (*run)(const CommandTargets& to);
};

inline constexpr std::array kCommandTable = {
    Command{CommandId::Open, u"Open (O)", u"Open ",
            [](const CommandTargets& to) { to.window.ShowOpenDialog(); }},
    Command{CommandId::Play, u"Play (P)", u"Play",
            [](const CommandTargets& to) { to.clock.PlayPause(); }},
    Command{CommandId::Pause, u"Pause (P)", u"Pause",
            [](const CommandTargets& to) { to.clock.PlayPause(); }},
    Command{CommandId::Stop, u"Stop (.)", u"Stop",
            [](const CommandTargets& to) { to.clock.StopPlaying(); }},
    Command{CommandId::Forward10Seconds, u"Forward 10 seconds (Right Arrow)",
            u"Forward +10 seconds ", [](const CommandTargets& to) { to.clock.SkipBy(10000); }},
    Command{CommandId::Forward60Seconds, u"Forward 60 seconds (Page Down)", u"Forward +60 seconds ",
            [](const CommandTargets& to) { to.clock.SkipBy(60000); }},
    Command{CommandId::Back10Seconds, u"Rewind 10 seconds (Left Arrow)", u"Rewind 10 seconds ",
            [](const CommandTargets& to) { to.clock.SkipBy(-10000); }},
    Command{CommandId::Back60Seconds, u"Rewind 60 seconds (Page Up)", u"Rewind 60 seconds ",
            [](const CommandTargets& to) { to.clock.SkipBy(-60000); }},
    Command{CommandId::QuickPlay, u"Custom Speed/Quick Play (Q)", u"",
            [](const CommandTargets& to) { to.audio.ToggleSpeed(false); }},
    Command{CommandId::Mute, u"Mute/Restore Audio (M)", u"",
            [](const CommandTargets& to) { to.audio.ToggleVolume(false); }},
    Command{CommandId::Size1, u"View at 1x size (1)", u"",
            [](const CommandTargets& to) { to.display.SetZoom(1, 1.0F); }},
    Command{CommandId::Size2, u"View at 2x size (2)", u"",
            [](const CommandTargets& to) { to.display.SetZoom(2, 1.0F); }},
    Command{CommandId::Size3, u"View at 3x size (3)", u"",
            [](const CommandTargets& to) { to.display.SetZoom(3, 1.0F); }},
    Command{CommandId::Size4, u"View at 4x size (4)", u"",
            [](const CommandTargets& to) { to.display.SetZoom(4, 1.0F); }},
    Command{CommandId::Size5, u"View at 5x size (5)", u"",
            [](const CommandTargets& to) { to.display.SetZoom(5, 1.0F); }},
    Command{CommandId::FullScreen, u"Full Screen (F)", u"Full Screen",
            [](const CommandTargets& to) { to.display.SetZoom(kFullScreenStep, 1.0F); }},
    Command{CommandId::RestoreScreen, u"Restore Screen (F)", u"",
            [](const CommandTargets& to) { to.display.SetZoom(kFullScreenStep, 1.0F); }},
    Command{CommandId::CopyPicture, u"Copy Screen to ClipBoard (C)", u"Copy Screen",
            [](const CommandTargets& to) { to.display.CopyToClipboard(); }},
    Command{CommandId::Options, u"Options (ESC)", u"",
            [](const CommandTargets& to) { to.window.ToggleOptions(to.window.IsAboutShown()); }},
    Command{CommandId::About, u"", u"About %1 ",
            [](const CommandTargets& to) { to.window.ShowAbout(); }},
    Command{CommandId::Exit, u"Exit (Alt+F4)", u"Exit %1",
            [](const CommandTargets& to) { to.window.Exit(); }},
    Command{CommandId::WheelBalance, u"Balance (B) - Adjust With Wheel", u"",
            [](const CommandTargets& to) { to.audio.SetWheelType(WheelMode::Balance); }},
    Command{CommandId::WheelKey, u"Key / Pitch (K) - Adjust With Wheel", u"",
            [](const CommandTargets& to) { to.audio.SetWheelType(WheelMode::KeyPitch); }},
    Command{CommandId::WheelTrack, u"Track (T) - Adjust With Wheel", u"",
            [](const CommandTargets& to) { to.audio.SetWheelType(WheelMode::TrackPosition); }},
    Command{CommandId::WheelVolume, u"Volume (V) - Adjust With Wheel", u"",
            [](const CommandTargets& to) { to.audio.SetWheelType(WheelMode::Volume); }},
    Command{CommandId::WheelSpeed, u"Speed (S) - Adjust With Wheel", u"",
            [](const CommandTargets& to) { to.audio.SetWheelType(WheelMode::Speed); }},
    Command{CommandId::Larger, u"Increase Display Size (+)", u"Increase Display Size",
            [](const CommandTargets& to) { to.display.ZoomIn(); }},
    Command{CommandId::Smaller, u"Reduce Display Size (-)", u"Reduce Display Size",
            [](const CommandTargets& to) { to.display.ZoomOut(); }},
    Command{CommandId::WebSite, u"", u"Go to the Lyric Lantern web site",
            [](const CommandTargets& to) { to.window.OpenWebSite(); }},
};

// A command that isn't in the table has no texts.
constexpr QStringView ToolTipOf(CommandId id)
{
    const auto* const command = std::ranges::find(kCommandTable, id, &Command::id);
    return command == kCommandTable.end() ? QStringView() : command->toolTip;
}

inline QString MenuTextOf(CommandId id)
{
    const auto* const command = std::ranges::find(kCommandTable, id, &Command::id);
    if (command == kCommandTable.end())
        return {};
    return command->menuText.toString().replace(QStringLiteral("%1"), kApplicationTitle);
}

} // namespace lantern
