// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CommandId.h"
#include "KeyCodes.h"

#include <cstdint>

namespace lantern {

class AudioControl;
class AudioEngine;
class Display;
class PlaybackClock;
class WheelControl;
struct Track;

// What commands ask of the window itself.
class CommandWindow {
public:
    virtual ~CommandWindow() = default;
    virtual void ShowOpenDialog() = 0; // and opens what the user chose
    // To a neighbour of the track in its folder: 1 for the next one, -1 for the one before it.
    virtual void GoToTrack(int places) = 0;
    // Shows the options, or hides them if they are shown. With force they are shown in any case.
    virtual void ToggleOptions(bool force) = 0;
    virtual bool IsAboutShown() = 0; // in the place of the options
    virtual void ShowAbout() = 0;
    virtual void OpenWebSite() = 0;
    virtual void Exit() = 0;
};

// All that a command can act on.
struct CommandTargets {
    CommandWindow& window;
    const Track& track;
    AudioEngine& engine;
    PlaybackClock& clock;
    Display& display;
    AudioControl& audio;
    WheelControl& wheel;
};

// The way from a command or a key to what it does. The tables are in CommandTable.h and
// KeyMap.h.
class Commands {
public:
    explicit Commands(const CommandTargets& targets);

    // Runs a command; a number without one does nothing.
    void MainPopup(CommandId command);

    // Most keys act once per press; a few repeat for as long as they are held. While a track is
    // being opened no key does anything.
    void DoKeyDown(KeyCode keyCode, ShiftBits shift);
    void DoKeyUp(KeyCode keyCode, ShiftBits shift);

private:
    void RunKey(KeyCode keyCode, ShiftBits shift);

    CommandTargets m_targets;
    bool m_keyHeld = false; // a key that doesn't repeat was pressed and not released
};

} // namespace lantern
