// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AudioDecisions.h"

#include <QString>
#include <QStringList>

#include <cstdint>

namespace lantern {

class AudioEngine;

// What the audio control asks of the windows around it.
class AudioControlHost {
public:
    virtual ~AudioControlHost() = default;

    virtual void ShowStatus(const QString& text) = 0;
    // The value as text, on its label in the options window.
    virtual void SetValueText(AudioValue value, const QString& text) = 0;
    // The chosen device, on its button in the options window.
    virtual void SetDeviceText(const QString& name) = 0;
};

// The user's side of volume, balance, key, speed and output device. The engine holds the current
// values; here are the procedures that change and show them, and the custom values that the
// toggles switch to.
class AudioControl {
public:
    // Both are borrowed and outlive the control.
    AudioControl(AudioEngine& engine, AudioControlHost& host);

    // Starts the engine. The result is a message for the user, empty on success; the program
    // can't go on without it.
    [[nodiscard]] QString StartEngine();

    // Each clamps, tells the engine and shows the value's text.
    void SetVolume(float value, bool showStatus);
    void SetBalance(float value, bool showStatus);
    void SetPitch(std::int32_t value, bool showStatus);
    void SetSpeed(float value, bool showStatus);

    // Each goes to the neutral value (the volume: to silence), or to the custom value if it is
    // there already. toDefault always goes to the neutral value.
    void ToggleVolume(bool toDefault);
    void ToggleBalance(bool toDefault);
    void TogglePitch(bool toDefault);
    void ToggleSpeed(bool toDefault);

    // The device of that name; the system's default if there is none.
    void SetAudioDevice(const QString& name);
    QStringList DeviceNames() const; // in the order of the engine's devices
    // Whether the device is kept from run to run.
    void ToggleDeviceSave(bool isOn);

    // What the wheel changes from now on; shows its current value on the status line. Any number
    // is stored, but only those with a name do anything.
    void SetWheelType(WheelMode mode);

    // Moves the value by one turn of the wheel: direction is -1, 0 or 1.
    void TurnWheel(AudioValue value, int direction);

    float CustomVolume = 100;
    float CustomSpeed = 20;
    std::int32_t CustomKeyPitch = -2;
    float CustomBalance = -50;
    QString AudioDevice; // the chosen device's name, as the engine reports it
    bool AudioSave = false;
    WheelMode WheelType = WheelMode::Volume;

private:
    float CurrentValue(AudioValue value);
    void Set(AudioValue value, float number, bool showStatus);
    ToggleStep Toggle(AudioValue value, double custom, bool toDefault);
    void EndToggle(AudioValue value, const ToggleStep& step);

    AudioEngine& m_engine;
    AudioControlHost& m_host;
};

} // namespace lantern
