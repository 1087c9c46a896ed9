// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AudioEngine.h"
#include "ScreenIdentity.h"

#include <QString>
#include <QStringView>

#include <array>
#include <cstdint>
#include <map>
#include <variant>

namespace lantern {

class clsINI;

// Every choice of the stage window. As it is made, nothing is changed: the player is what it is
// for those who never open the window.
struct StageSettings {
    // Milliseconds by which the sound of a device reaches the ear later than the system says, by
    // DelayKey of the device. One that is none is missing.
    std::map<QString, std::int32_t> delays;
    VoiceGuide voiceGuide = VoiceGuide::Both;
    bool remembersTunes = false; // each song's own key and speed
    bool evensLoudness = false;
    bool smoothLetters = false;
    ScreenIdentity singerScreen; // that shows the picture alone, if any

    bool operator==(const StageSettings&) const = default;
};

// The section of the settings that they are kept in, and so the name of their file.
inline constexpr QStringView kStageSection = u"stage";

struct StageSettingRow {
    QStringView key;
    std::variant<bool StageSettings::*, VoiceGuide StageSettings::*,
                 ScreenIdentity StageSettings::*>
        field;
};

// Each field that is one value, by its key in the file.
inline constexpr std::array kStageSettings = {
    StageSettingRow{u"VoiceGuide", &StageSettings::voiceGuide},
    StageSettingRow{u"RememberTunes", &StageSettings::remembersTunes},
    StageSettingRow{u"EvenLoudness", &StageSettings::evensLoudness},
    StageSettingRow{u"SmoothLetters", &StageSettings::smoothLetters},
    StageSettingRow{u"SingerScreen", &StageSettings::singerScreen},
};

// What a device is called in the settings, whose keys know neither capitals nor every character.
QString DelayKey(const QString& deviceId);
std::int32_t DelayOf(const StageSettings& settings, const QString& deviceId);
// Clamped; nothing for a device that has no name.
void SetDelay(StageSettings& settings, const QString& deviceId, std::int32_t ms);

// From the store. What is missing there, or is none of the values that a field can have, is as in
// StageSettings. Keys that nobody knows stay in the store, for the version of the player that does.
StageSettings ReadStageSettings(const clsINI& settings);
// Into the store. What changes nothing leaves no key.
void WriteStageSettings(clsINI& settings, const StageSettings& values);

} // namespace lantern
