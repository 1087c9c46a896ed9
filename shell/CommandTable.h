// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AudioControl.h"
#include "Commands.h"
#include "Display.h"
#include "PlaybackClock.h"

#include <array>
#include <cstdint>

namespace lantern {

struct Command {
    std::int16_t number;
    void (*run)(const CommandTargets& to);
};

// The numbers are shared by buttons, menu items and keys.
inline constexpr std::array kCommandTable = {
    Command{0, [](const CommandTargets& to) { to.window.ShowOpenDialog(); }},
    Command{1, [](const CommandTargets& to) { to.clock.PlayPause(); }},
    Command{2, [](const CommandTargets& to) { to.clock.PlayPause(); }},
    Command{3, [](const CommandTargets& to) { to.clock.StopPlaying(); }},
    Command{4, [](const CommandTargets& to) { to.clock.SkipBy(10000); }},
    Command{5, [](const CommandTargets& to) { to.clock.SkipBy(60000); }},
    Command{24, [](const CommandTargets& to) { to.clock.SkipBy(-10000); }},
    Command{25, [](const CommandTargets& to) { to.clock.SkipBy(-60000); }},
    Command{6, [](const CommandTargets& to) { to.audio.ToggleSpeed(false); }},
    Command{26, [](const CommandTargets& to) { to.audio.ToggleVolume(false); }},
    Command{7, [](const CommandTargets& to) { to.display.SetZoom(1, 1.0F); }},
    Command{8, [](const CommandTargets& to) { to.display.SetZoom(2, 1.0F); }},
    Command{9, [](const CommandTargets& to) { to.display.SetZoom(3, 1.0F); }},
    Command{21, [](const CommandTargets& to) { to.display.SetZoom(4, 1.0F); }},
    Command{22, [](const CommandTargets& to) { to.display.SetZoom(5, 1.0F); }},
    Command{10, [](const CommandTargets& to) { to.display.SetZoom(kFullScreenStep, 1.0F); }},
    Command{20, [](const CommandTargets& to) { to.display.SetZoom(kFullScreenStep, 1.0F); }},
    Command{12, [](const CommandTargets& to) { to.display.CopyToClipboard(); }},
    Command{16, [](const CommandTargets& to) { to.window.Exit(); }},
    Command{31, [](const CommandTargets& to) { to.audio.SetWheelType(1); }},
    Command{32, [](const CommandTargets& to) { to.audio.SetWheelType(2); }},
    Command{33, [](const CommandTargets& to) { to.audio.SetWheelType(3); }},
    Command{34, [](const CommandTargets& to) { to.audio.SetWheelType(4); }},
    Command{35, [](const CommandTargets& to) { to.audio.SetWheelType(5); }},
    Command{41, [](const CommandTargets& to) { to.display.ZoomIn(); }},
    Command{42, [](const CommandTargets& to) { to.display.ZoomOut(); }},
};

} // namespace lantern
