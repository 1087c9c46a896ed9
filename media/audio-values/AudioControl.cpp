// SPDX-License-Identifier: GPL-3.0-or-later
#include "AudioControl.h"

#include "AudioEngine.h"
#include "Rounding.h"

namespace lantern {

AudioControl::AudioControl(AudioEngine& engine, AudioControlHost& host)
    : m_engine(engine), m_host(host)
{
}

QString AudioControl::StartEngine()
{
    if (m_engine.GetDeviceCount() == 0)
        return QStringLiteral("No audio device/speakers detected/connected.");
    if (!m_engine.EngineInit())
        return QStringLiteral("One of the audio devices may be locked by another application.");
    return {};
}

void AudioControl::SetVolume(float value, bool showStatus)
{
    Set(AudioValue::Volume, value, showStatus);
}

void AudioControl::SetBalance(float value, bool showStatus)
{
    Set(AudioValue::Balance, value, showStatus);
}

void AudioControl::SetPitch(std::int32_t value, bool showStatus)
{
    Set(AudioValue::KeyPitch, static_cast<float>(value), showStatus);
}

void AudioControl::SetSpeed(float value, bool showStatus)
{
    Set(AudioValue::Speed, value, showStatus);
}

void AudioControl::Set(AudioValue value, float number, bool showStatus)
{
    const float clamped = ClampAudioValue(value, number);
    switch (value) {
    case AudioValue::Balance:
        m_engine.SetEngineBalance(clamped);
        break;
    case AudioValue::KeyPitch:
        m_engine.SetEnginePitch(static_cast<int>(clamped));
        break;
    case AudioValue::Speed:
        m_engine.SetEngineTempo(clamped);
        break;
    case AudioValue::Volume:
        m_engine.SetEngineVolume(clamped);
        break;
    }
    m_host.SetValueText(value, AudioValueText(value, clamped));
    if (showStatus)
        m_host.ShowStatus(AudioStatusText(value, clamped));
}

float AudioControl::CurrentValue(AudioValue value)
{
    switch (value) {
    case AudioValue::Balance:
        return m_engine.GetEngineBalance();
    case AudioValue::KeyPitch:
        return static_cast<float>(m_engine.GetEnginePitch());
    case AudioValue::Speed:
        return m_engine.GetEngineTempo();
    case AudioValue::Volume:
        return m_engine.GetEngineVolume();
    }
    return 0;
}

void AudioControl::ToggleVolume(bool toDefault)
{
    const ToggleStep step =
        Toggle(AudioValue::Volume, static_cast<double>(CustomVolume), toDefault);
    CustomVolume = static_cast<float>(step.custom);
    EndToggle(AudioValue::Volume, step);
}

void AudioControl::ToggleBalance(bool toDefault)
{
    const ToggleStep step =
        Toggle(AudioValue::Balance, static_cast<double>(CustomBalance), toDefault);
    CustomBalance = static_cast<float>(step.custom);
    EndToggle(AudioValue::Balance, step);
}

void AudioControl::TogglePitch(bool toDefault)
{
    const ToggleStep step = Toggle(AudioValue::KeyPitch, CustomKeyPitch, toDefault);
    CustomKeyPitch = RoundToEven(step.custom);
    EndToggle(AudioValue::KeyPitch, step);
}

void AudioControl::ToggleSpeed(bool toDefault)
{
    const ToggleStep step = Toggle(AudioValue::Speed, static_cast<double>(CustomSpeed), toDefault);
    CustomSpeed = static_cast<float>(step.custom);
    EndToggle(AudioValue::Speed, step);
}

ToggleStep AudioControl::Toggle(AudioValue value, double custom, bool toDefault)
{
    return Toggled(value, RoundToEven(static_cast<double>(CurrentValue(value))), custom, toDefault);
}

// The wheel goes on to change what was just toggled.
void AudioControl::EndToggle(AudioValue value, const ToggleStep& step)
{
    Set(value, static_cast<float>(step.value), true);
    SetWheelType(WheelModeOf(value));
}

void AudioControl::SetAudioDevice(const QString& name)
{
    const int chosen = ChosenDevice(DeviceNames(), name);
    AudioDevice = m_engine.GetDeviceName(chosen);
    m_host.SetDeviceText(AudioDevice);
    m_engine.SelectDevice(chosen);
}

QStringList AudioControl::DeviceNames() const
{
    QStringList names;
    const int count = m_engine.GetDeviceCount();
    for (int i = 0; i < count; ++i)
        names += m_engine.GetDeviceName(i);
    return names;
}

void AudioControl::ToggleDeviceSave(bool isOn)
{
    AudioSave = isOn;
}

void AudioControl::SetWheelType(WheelMode mode)
{
    WheelType = mode;
    if (const std::optional<AudioValue> value = WheelValue(mode))
        TurnWheel(*value, 0);
    else if (mode == WheelMode::TrackPosition)
        m_host.ShowStatus(QStringLiteral("Track Position"));
}

void AudioControl::TurnWheel(AudioValue value, int direction)
{
    Set(value, AfterWheel(value, CurrentValue(value), direction), true);
}

} // namespace lantern
