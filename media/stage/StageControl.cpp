// SPDX-License-Identifier: GPL-3.0-or-later
#include "StageControl.h"

#include <utility>

namespace lantern {
namespace {

// A file that is written at each step of a slider would hold the player up.
constexpr int kSaveDelayMs = 1000;

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

void StageControl::Act()
{
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
