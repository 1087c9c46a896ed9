// SPDX-License-Identifier: GPL-3.0-or-later
#include "PlayerSettings.h"

#include "AudioControl.h"
#include "AudioEngine.h"
#include "Rounding.h"
#include "Track.h"
#include "clsINI.h"

#include <cmath>
#include <limits>
#include <string_view>

namespace lantern {
namespace {

using Row = PlayerSettingRow;

// What would end a value in the store's file.
constexpr std::u16string_view kNotHeld = u"\t\r\n";

// No name holds it: only bytes above 127 ride in the text of a name.
QChar Rider(char16_t character)
{
    return QChar(static_cast<char16_t>(0xDC00 + character));
}

// The largest number that a whole or a broken setting can hold, by the type of its field.
double LimitOf(std::int32_t PlayerSettings::*)
{
    return std::numeric_limits<std::int32_t>::max();
}

double LimitOf(float PlayerSettings::*)
{
    return static_cast<double>(std::numeric_limits<float>::max());
}

template <typename Number>
void Read(const QString& text, const Row& row, Number PlayerSettings::*field,
          PlayerSettings& values)
{
    bool isNumber = false;
    double number = text.toDouble(&isNumber);
    // This also sorts out the infinities and what is "nan".
    if (!isNumber || !(std::abs(number) <= LimitOf(field)))
        number = row.fallback;
    if constexpr (std::is_integral_v<Number>)
        number = RoundToEven(number);
    if (number < row.lowest || number > row.highest)
        number = row.fallback;
    values.*field = static_cast<Number>(number);
}

void Read(const QString& text, const Row&, QString PlayerSettings::*field, PlayerSettings& values)
{
    values.*field = text;
}

void Read(const QString& text, const Row&, bool PlayerSettings::*field, PlayerSettings& values)
{
    values.*field = !text.isEmpty();
}

QString Written(const Row&, const QString& value)
{
    return value;
}

QString Written(const Row&, bool value)
{
    return value ? QStringLiteral("Y") : QString();
}

QString Written(const Row&, std::int32_t value)
{
    return QString::number(value);
}

QString Written(const Row& row, float value)
{
    if (row.form == NumberForm::Rounded)
        return QString::number(RoundToEven(static_cast<double>(value)));
    return NumberText(value);
}

} // namespace

PlayerSettings ReadPlayerSettings(const clsINI& settings)
{
    PlayerSettings values;
    for (const Row& row : kPlayerSettings) {
        const QString text = settings.GetSetting(row.key.toString(), {});
        std::visit([&](auto field) { Read(text, row, field, values); }, row.field);
    }
    for (const char16_t character : kNotHeld)
        values.LastPlayed.replace(Rider(character), character);
    if (!values.AudioSave)
        values.AudioDevice.clear();
    return values;
}

void WritePlayerSettings(clsINI& settings, const PlayerSettings& values)
{
    for (const Row& row : kPlayerSettings) {
        if (row.key == kLastPlayedKey)
            continue;
        settings.SetSetting(
            row.key.toString(),
            std::visit([&](auto field) { return Written(row, values.*field); }, row.field));
    }
}

void RememberLastPlayed(clsINI& settings, const QString& path)
{
    QString value = path;
    for (const char16_t character : kNotHeld)
        value.replace(character, Rider(character));
    settings.SetSetting(kLastPlayedKey.toString(), value);
}

void LoadPlayerSettings(const clsINI& settings, Track& track, std::int32_t& zoomStep,
                        AudioControl& audio)
{
    const PlayerSettings values = ReadPlayerSettings(settings);
    track.CurrentMedia = values.LastPlayed;
    zoomStep = values.Zoom;
    audio.SetBalance(values.Balance, true);
    audio.SetPitch(values.KeyPitch, true);
    audio.SetSpeed(values.Speed, true);
    audio.SetVolume(values.Volume, true);
    audio.CustomBalance = values.CustomBalance;
    audio.CustomKeyPitch = values.CustomKeyPitch;
    audio.CustomSpeed = values.CustomSpeed;
    audio.CustomVolume = values.CustomVolume;
    audio.AudioSave = values.AudioSave;
    audio.AudioDevice = values.AudioDevice;
}

void SaveSettingsToStore(clsINI& settings, std::int32_t nearestZoom, AudioEngine& engine,
                         const AudioControl& audio)
{
    PlayerSettings values;
    values.Zoom = nearestZoom;
    values.Balance = engine.GetEngineBalance();
    values.KeyPitch = engine.GetEnginePitch();
    values.Speed = engine.GetEngineTempo();
    values.Volume = engine.GetEngineVolume();
    values.CustomBalance = audio.CustomBalance;
    values.CustomKeyPitch = audio.CustomKeyPitch;
    values.CustomSpeed = audio.CustomSpeed;
    values.CustomVolume = audio.CustomVolume;
    values.AudioSave = audio.AudioSave;
    values.AudioDevice = audio.AudioSave ? audio.AudioDevice : QString();
    WritePlayerSettings(settings, values);
    settings.SaveSettings();
}

} // namespace lantern
