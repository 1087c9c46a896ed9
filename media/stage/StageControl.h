// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "StageSettings.h"
#include "clsINI.h"

#include <QTimer>

#include <functional>

namespace lantern {

// The choices of the stage window, as they act: each at once, on the engine and on whoever listens,
// and each is kept, in a file of its own beside the player's settings. A player for whom nothing
// was ever chosen has no such file.
//
// Life cycle: construct, set the two functions, Load once the engine runs, then any call at any
// time, Save at the end. Everything runs on the user-interface thread.
class StageControl : private FileErrorHost {
public:
    // The engine is borrowed and outlives the control. The folder ends in a slash.
    StageControl(AudioEngine& engine, const QString& userDataPath);

    // Told what holds from now on: by Load, at each change, and for another device.
    std::function<void(const StageSettings&)> Changed;
    // Told once that the choices can't be kept, for a message box.
    std::function<void(const QString& detail, const QString& head, const QString& title)>
        SaveFailed;

    void Load();
    // What has not been saved yet. A change is saved a moment after the last one, too.
    void Save();

    const StageSettings& Settings() const { return m_settings; }
    template <typename Value>
    void Set(Value StageSettings::*field, const Value& value)
    {
        if (m_settings.*field == value)
            return;
        m_settings.*field = value;
        NoteChange();
    }

    // The device in use, as last looked at, and how late its sound is.
    const SoundDevice& Device() const { return m_device; }
    std::int32_t DelayMs() const { return DelayOf(m_settings, m_device.id); }
    void SetDelayMs(std::int32_t ms); // clamped; where there is no device, nothing
    // At each tick: another device has another delay. Where neither a device has one nor anybody
    // looks, the engine isn't asked.
    void Follow(bool isWatched);

private:
    void ShowFileError(const QString& detail, const QString& head, const QString& title) override;
    void Act();
    void NoteChange();

    AudioEngine& m_engine;
    clsINI m_store;
    StageSettings m_settings;
    SoundDevice m_device;
    int m_ticksToLook = 0;
    bool m_isUnsaved = false;
    QTimer m_saveTimer;
};

} // namespace lantern
