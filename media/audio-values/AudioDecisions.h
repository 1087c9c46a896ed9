// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>

// What the audio control and the wheel decide, from values to values.
namespace lantern {

// The four values that the user adjusts while a track plays.
enum class AudioValue { Balance, KeyPitch, Speed, Volume };

// What the mouse wheel changes. A number without a name here changes nothing.
enum class WheelMode : std::int16_t {
    Balance = 1,
    KeyPitch = 2,
    TrackPosition = 3,
    Volume = 4,
    Speed = 5,
};

// Decimal text of at most 7 significant digits, without trailing zeros and without an exponent.
QString NumberText(float number);

// Within the limits of the value; what is no number becomes the neutral value.
float ClampAudioValue(AudioValue value, float number);
// "MUTE", "DEFAULT", or the number with its sign and unit.
QString AudioValueText(AudioValue value, float number);
// The same behind the value's name, as the status line shows it.
QString AudioStatusText(AudioValue value, float number);

WheelMode WheelModeOf(AudioValue value);
// The value that the wheel changes; nothing for the track position and for unknown numbers.
std::optional<AudioValue> WheelValue(WheelMode mode);

// Where a toggle goes, and what it remembers as the custom value.
struct ToggleStep {
    double value = 0;
    double custom = 0;

    bool operator==(const ToggleStep&) const = default;
};
// Current is the value as a whole number. Leaves 0 for the custom value, or the value's own
// choice if that is 0, and any other value for 0; toDefault always goes to the neutral value.
ToggleStep Toggled(AudioValue value, std::int32_t current, double custom, bool toDefault);

// The value after a turn of the wheel: direction is -1, 0 or 1. Balance and volume go on from
// whole numbers.
float AfterWheel(AudioValue value, float current, int direction);

// The last device of that name, letter case not counting; 0, which is never compared, if there
// is none.
int ChosenDevice(const QStringList& deviceNames, const QString& wanted);

} // namespace lantern
