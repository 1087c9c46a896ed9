// SPDX-License-Identifier: GPL-3.0-or-later
#include "ControlRefresh.h"

#include "AudioControl.h"
#include "AudioEngine.h"
#include "Rounding.h"
#include "Toolbar.h"
#include "Track.h"
#include "frmOptions.h"

namespace lantern {
namespace {

ctlSlide& SliderOf(frmOptions& options, AudioValue value)
{
    switch (value) {
    case AudioValue::Balance:
        return options.ctlBalance();
    case AudioValue::KeyPitch:
        return options.ctlKeyPitch();
    case AudioValue::Speed:
        return options.ctlSpeed();
    case AudioValue::Volume:
        break;
    }
    return options.ctlVolume();
}

} // namespace

ControlRefresh::ControlRefresh(Toolbar& toolbar, AudioEngine& engine, const AudioControl& audio,
                               const Track& track)
    : m_toolbar(toolbar), m_engine(engine), m_audio(audio), m_track(track)
{
}

void ControlRefresh::SetOptions(frmOptions* options)
{
    m_options = options;
    if (!m_options)
        return;
    const PlayerState now = CurrentState(0, false, false);
    for (const CheckRule& rule : kCheckRules) {
        if (!rule.value || !Applies(rule, now))
            continue;
        ctlSlide& slider = SliderOf(*m_options, *rule.value);
        slider.SetValues(slider.Min(), slider.Max(), ValueIn(now, *rule.value));
    }
}

PlayerState ControlRefresh::CurrentState(std::int32_t positionMs, bool isPlaying,
                                         bool isMaximised) const
{
    const auto whole = [](float value) { return RoundToEven(static_cast<double>(value)); };
    return {.balance = whole(m_engine.GetEngineBalance()),
            .keyPitch = m_engine.GetEnginePitch(),
            .speed = whole(m_engine.GetEngineTempo()),
            .volume = whole(m_engine.GetEngineVolume()),
            .isTempoHeld = m_track.TempoHeld,
            .isDeviceSaved = m_audio.AudioSave,
            .areOptionsVisible = m_options && m_options->isVisible(),
            .wheelType = m_audio.WheelType,
            .hasMedia = !m_track.CurrentMedia.isEmpty(),
            .isPlaying = isPlaying,
            .positionMs = positionMs,
            .clipCount = m_track.ClipCount(),
            .isMaximised = isMaximised};
}

void ControlRefresh::Refresh(std::int32_t positionMs, bool isPlaying, bool isMaximised)
{
    PlayerState now = CurrentState(positionMs, isPlaying, isMaximised);
    for (const CheckRule& rule : kCheckRules) {
        if (!Applies(rule, now))
            continue;
        if (rule.value)
            ShowValue(*rule.value, ValueIn(now, *rule.value));
        now.wheelType = m_audio.WheelType; // it goes with a slider of the options that moved
        SetCheckState(rule.toolbarButton, rule.optionIndex, rule.isDown(now));
    }
    ReturnFocusToPicture(now.wheelType);
    for (const ButtonRule& rule : kButtonRules) {
        const std::int16_t visible = rule.isVisible ? rule.isVisible(now) : kLeaveVisible;
        SetButtonState(rule.button, rule.isEnabled(now), visible);
    }
}

void ControlRefresh::ShowValue(AudioValue value, std::int32_t number)
{
    if (value == AudioValue::Volume)
        SetControlValue(m_toolbar.ctlVolume(), number);
    if (m_options)
        SetControlValue(SliderOf(*m_options, value), number);
}

// The button of the wheel's mode hands the focus on to the picture, so that no control keeps the
// keys. A wheel type may be any number, and those without a mode have no button.
void ControlRefresh::ReturnFocusToPicture(WheelMode wheelType)
{
    if (wheelType >= WheelMode::Balance && wheelType <= WheelMode::Speed)
        m_toolbar.tBtn(WheelCommand(wheelType)).setFocus();
}

void ControlRefresh::SetControlValue(ctlSlide& slider, std::int32_t value)
{
    if (slider.Value() != value)
        slider.SetValue(value);
}

void ControlRefresh::SetCheckState(std::optional<CommandId> toolbarButton,
                                   std::optional<std::size_t> optionIndex, bool state)
{
    const auto set = [state](ctlPicBtn& button) {
        if (button.Value() != state)
            button.SetValue(state);
    };
    if (toolbarButton)
        set(m_toolbar.tBtn(*toolbarButton));
    if (optionIndex && m_options)
        set(m_options->cmd(*optionIndex));
}

void ControlRefresh::SetButtonState(CommandId command, bool enabled, std::int16_t visible)
{
    ctlPicBtn& button = m_toolbar.tBtn(command);
    if (button.Enabled() != enabled)
        button.SetEnabled(enabled);
    // What counts is whether the button itself is hidden: the bar around it may be.
    if (visible != kLeaveVisible && button.isHidden() == (visible != 0))
        button.setVisible(visible != 0);
}

} // namespace lantern
