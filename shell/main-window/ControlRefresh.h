// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ControlStates.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace lantern {

class AudioControl;
class AudioEngine;
class Toolbar;
class ctlSlide;
class frmOptions;
struct Track;

// Brings the controls of both windows to what the player is doing, a hundred times a second. Each
// write compares first: a control that shows it already is not touched, and raises no event.
//
// Life cycle: construct when all it works on exists; Refresh at each tick. Everything runs on the
// user-interface thread.
class ControlRefresh {
public:
    // All are borrowed and outlive the refresh.
    ControlRefresh(Toolbar& toolbar, AudioEngine& engine, const AudioControl& audio,
                   const Track& track);

    // The options window, borrowed; null while there is none. A new one takes the current values
    // at once, without an event: nobody has moved its sliders.
    void SetOptions(frmOptions* options);

    // The position is that of the tick, in milliseconds.
    void Refresh(std::int32_t positionMs, bool isPlaying, bool isMaximised);

    static void SetControlValue(ctlSlide& slider, std::int32_t value);
    // Of the button of the toolbar, the one of the options, or both.
    void SetCheckState(std::optional<CommandId> toolbarButton,
                       std::optional<std::size_t> optionIndex, bool state);
    static constexpr std::int16_t kLeaveVisible = -99;
    // Visible is a boolean, or kLeaveVisible.
    void SetButtonState(CommandId command, bool enabled, std::int16_t visible = kLeaveVisible);

private:
    PlayerState CurrentState(std::int32_t positionMs, bool isPlaying, bool isMaximised) const;
    void ShowValue(AudioValue value, std::int32_t number);
    void ReturnFocusToPicture(WheelMode wheelType);

    Toolbar& m_toolbar;
    AudioEngine& m_engine;
    const AudioControl& m_audio;
    const Track& m_track;
    frmOptions* m_options = nullptr;
};

} // namespace lantern
