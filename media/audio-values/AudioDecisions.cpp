// SPDX-License-Identifier: GPL-3.0-or-later
#include "AudioDecisions.h"

#include "Rounding.h"

#include <QStringView>

#include <algorithm>
#include <array>
#include <cmath>

namespace lantern {
namespace {

struct ValueTraits {
    double minimum;
    double maximum;
    double neutral;
    double customIfZero;
    double wheelStep;
    WheelMode wheelMode;
    bool plusSign;
    QStringView zeroText;
    QStringView unit;
    QStringView statusPrefix;
};

// In the order of AudioValue.
constexpr std::array<ValueTraits, 4> kTraits = {{
    {-50, 50, 0, 50, 2, WheelMode::Balance, true, u"DEFAULT", u"", u"Balance: "},
    {-10, 10, 0, -2, 1, WheelMode::KeyPitch, true, u"DEFAULT", u"", u"Key / Pitch: "},
    {-90, 90, 0, 20, 2, WheelMode::Speed, true, u"DEFAULT", u"%", u"Speed: "},
    {0, 100, 100, 100, 2, WheelMode::Volume, false, u"MUTE", u"%", u"Volume: "},
}};
static_assert(static_cast<std::size_t>(AudioValue::Volume) + 1 == kTraits.size());

const ValueTraits& TraitsOf(AudioValue value)
{
    return kTraits.at(static_cast<std::size_t>(value));
}

constexpr int kSignificantDigits = 7;

} // namespace

QString NumberText(float number)
{
    if (number == 0.0F || !std::isfinite(number))
        return QStringLiteral("0");
    // The exponent of the rounded number: 9.9999999 rounds to 10 and has one decimal less.
    const QString scientific =
        QString::number(static_cast<double>(number), 'e', kSignificantDigits - 1);
    const int exponent = scientific.mid(scientific.indexOf(u'e') + 1).toInt();
    const int decimals = std::max(0, kSignificantDigits - 1 - exponent);
    QString text = QString::number(static_cast<double>(number), 'f', decimals);
    if (decimals == 0)
        return text;
    while (text.endsWith(u'0'))
        text.chop(1);
    if (text.endsWith(u'.'))
        text.chop(1);
    return text;
}

float ClampAudioValue(AudioValue value, float number)
{
    const ValueTraits& traits = TraitsOf(value);
    if (std::isnan(number))
        return static_cast<float>(traits.neutral);
    return std::clamp(number, static_cast<float>(traits.minimum),
                      static_cast<float>(traits.maximum));
}

QString AudioValueText(AudioValue value, float number)
{
    const ValueTraits& traits = TraitsOf(value);
    if (number == 0.0F)
        return traits.zeroText.toString();
    QString text = traits.plusSign && number > 0 ? QStringLiteral("+") : QString();
    text += NumberText(number);
    text += traits.unit;
    return text;
}

QString AudioStatusText(AudioValue value, float number)
{
    return TraitsOf(value).statusPrefix.toString() + AudioValueText(value, number);
}

WheelMode WheelModeOf(AudioValue value)
{
    return TraitsOf(value).wheelMode;
}

std::optional<AudioValue> WheelValue(WheelMode mode)
{
    for (std::size_t i = 0; i < kTraits.size(); ++i) {
        if (kTraits.at(i).wheelMode == mode)
            return static_cast<AudioValue>(i);
    }
    return std::nullopt;
}

ToggleStep Toggled(AudioValue value, std::int32_t current, double custom, bool toDefault)
{
    const ValueTraits& traits = TraitsOf(value);
    // The state that the volume leaves is silence, which is not its neutral value.
    if (value == AudioValue::Volume && toDefault)
        return {.value = traits.neutral, .custom = traits.neutral};
    if (current != 0)
        return {.value = 0, .custom = static_cast<double>(current)};
    if (toDefault)
        return {.value = 0, .custom = custom};
    return {.value = custom == 0 ? traits.customIfZero : custom, .custom = custom};
}

float AfterWheel(AudioValue value, float current, int direction)
{
    auto from = static_cast<double>(current);
    if (value == AudioValue::Balance)
        from = RoundToEven(from);
    else if (value == AudioValue::Volume)
        from = std::trunc(from);
    return static_cast<float>(from + TraitsOf(value).wheelStep * direction);
}

int ChosenDevice(const QStringList& deviceNames, const QString& wanted)
{
    int chosen = 0;
    for (int i = 1; i < deviceNames.size(); ++i) {
        if (deviceNames[i].toUpper() == wanted.toUpper())
            chosen = i;
    }
    return chosen;
}

} // namespace lantern
