// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringView>

#include <array>
#include <cstdint>
#include <limits>
#include <variant>

namespace lantern {

class AudioControl;
class AudioEngine;
class clsINI;
struct Track;

// What the player keeps from one run to the next. The values of a first start stand in the table.
struct PlayerSettings {
    QString LastPlayed;
    std::int32_t Zoom = 0;
    float Balance = 0;
    std::int32_t KeyPitch = 0;
    float Speed = 0;
    float Volume = 0;
    float CustomBalance = 0;
    std::int32_t CustomKeyPitch = 0;
    float CustomSpeed = 0;
    float CustomVolume = 0;
    bool AudioSave = false;
    QString AudioDevice; // empty unless AudioSave is set

    bool operator==(const PlayerSettings&) const = default;
};

inline constexpr QStringView kPlayerSection = u"player";
inline constexpr QStringView kLastPlayedKey = u"LastPlayed";
inline constexpr QStringView kPlayerPathKey = u"PlayerPath";

// How a number is written at exit.
enum class NumberForm { AsItIs, Rounded };

struct PlayerSettingRow {
    QStringView key;
    std::variant<QString PlayerSettings::*, std::int32_t PlayerSettings::*, float PlayerSettings::*,
                 bool PlayerSettings::*>
        field;
    double fallback = 0; // for a number that is missing, out of range, or none at all
    double lowest = -std::numeric_limits<double>::infinity();
    double highest = std::numeric_limits<double>::infinity();
    NumberForm form = NumberForm::AsItIs;
};

// Every setting of the player, in the order in which they are read and written. Balance, key,
// speed and volume have no limits here: AudioControl clamps them.
inline constexpr std::array<PlayerSettingRow, 12> kPlayerSettings = {{
    {kLastPlayedKey, &PlayerSettings::LastPlayed},
    {u"Zoom", &PlayerSettings::Zoom, 2, 0, 5},
    {.key = u"Balance", .field = &PlayerSettings::Balance, .form = NumberForm::Rounded},
    {u"KeyPitch", &PlayerSettings::KeyPitch},
    {.key = u"Speed", .field = &PlayerSettings::Speed, .form = NumberForm::Rounded},
    {.key = u"Volume",
     .field = &PlayerSettings::Volume,
     .fallback = 100,
     .form = NumberForm::Rounded},
    {u"Custom_Balance", &PlayerSettings::CustomBalance, -50},
    {u"Custom_KeyPitch", &PlayerSettings::CustomKeyPitch, -2},
    {u"Custom_Speed", &PlayerSettings::CustomSpeed, 20},
    {u"Custom_Volume", &PlayerSettings::CustomVolume, 100},
    {u"AudioSave", &PlayerSettings::AudioSave},
    {u"AudioDevice", &PlayerSettings::AudioDevice},
}};

// From the store. A number that isn't one, or doesn't fit, becomes its fallback.
PlayerSettings ReadPlayerSettings(const clsINI& settings);
// Into the store, all but LastPlayed.
void WritePlayerSettings(clsINI& settings, const PlayerSettings& values);
// What each successful load puts into the store. The path is the setting as it is; only tabs and
// line ends, which the store can't hold, ride in it as the lone surrogates of their bytes.
void RememberLastPlayed(clsINI& settings, const QString& path);

// Gives what the store holds to the track, the zoom step and the audio control. The engine must
// be running. The output device is only named: it is chosen later in the load of the window.
void LoadPlayerSettings(const clsINI& settings, Track& track, std::int32_t& zoomStep,
                        AudioControl& audio);
// Takes what the player has come to, and saves the store.
void SaveSettingsToStore(clsINI& settings, std::int32_t nearestZoom, AudioEngine& engine,
                         const AudioControl& audio);

} // namespace lantern
