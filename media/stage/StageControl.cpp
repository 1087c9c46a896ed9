// SPDX-License-Identifier: GPL-3.0-or-later
#include "StageControl.h"

#include <utility>

namespace lantern {
namespace {

// A file that is written at each step of a slider would hold the player up.
constexpr int kSaveDelayMs = 1000;

// Nobody moves a sound to another device, and sees at once that the picture is not in step.
constexpr int kTicksBetweenLooks = 10;

} // namespace

StageControl::StageControl(AudioEngine& engine, const QString& userDataPath)
    : m_engine(engine), m_store(userDataPath, *this)
{
    m_saveTimer.setSingleShot(true);
    m_saveTimer.setInterval(kSaveDelayMs);
    m_saveTimer.callOnTimeout(&m_saveTimer, [this] { Save(); });
}

void StageControl::Load()
{
    m_store.LoadSettings(kStageSection.toString());
    m_settings = ReadStageSettings(m_store);
    if (!m_settings.delays.empty())
        m_device = m_engine.DeviceInUse();
    Act();
}

void StageControl::Save()
{
    m_saveTimer.stop();
    if (!std::exchange(m_isUnsaved, false))
        return;
    WriteStageSettings(m_store, m_settings);
    m_store.SaveSettings();
}

void StageControl::SetDelayMs(std::int32_t ms)
{
    StageSettings changed = m_settings;
    SetDelay(changed, m_device.id, ms);
    if (changed == m_settings)
        return;
    m_settings = changed;
    NoteChange();
}

void StageControl::Follow(bool isWatched)
{
    if (!isWatched && m_settings.delays.empty())
        return;
    if (m_ticksToLook-- > 0)
        return;
    m_ticksToLook = kTicksBetweenLooks;
    const SoundDevice device = m_engine.DeviceInUse();
    if (device == m_device)
        return;
    m_device = device;
    Act();
}

void StageControl::NoteChange()
{
    m_isUnsaved = true;
    Act();
    m_saveTimer.start();
}

void StageControl::Act()
{
    m_engine.SetSoundDelay(DelayMs());
    m_engine.SetVoiceGuide(m_settings.voiceGuide);
    if (Changed)
        Changed(m_settings);
}

// A folder that can't be written stays so for a while: each save tries, and only the first tells.
void StageControl::ShowFileError(const QString& detail, const QString& head, const QString& title)
{
    m_isUnsaved = true;
    if (const auto tell = std::exchange(SaveFailed, nullptr))
        tell(detail, head, title);
}

} // namespace lantern
