// SPDX-License-Identifier: GPL-3.0-or-later
#include "StageSettings.h"

#include "clsINI.h"

#include <QByteArray>
#include <QStringList>

#include <algorithm>
#include <cstdlib>

namespace lantern {
namespace {

// Each value but the neutral one, which is no text.
struct GuideName {
    VoiceGuide guide;
    QStringView name;
};
constexpr std::array kGuideNames = {
    GuideName{VoiceGuide::Left, u"left"},
    GuideName{VoiceGuide::Right, u"right"},
};

const QString kDelayKey = QStringLiteral("delay.");

void Read(const QString& text, bool& value)
{
    value = text.compare(u"Y", Qt::CaseInsensitive) == 0;
}

void Read(const QString& text, VoiceGuide& value)
{
    const auto* const found = std::ranges::find_if(kGuideNames, [&](const GuideName& one) {
        return text.compare(one.name, Qt::CaseInsensitive) == 0;
    });
    value = found == kGuideNames.end() ? VoiceGuide::Both : found->guide;
}

// The parts of a screen, in the order in which they are written.
constexpr std::array kScreenParts = {&ScreenIdentity::name, &ScreenIdentity::maker,
                                     &ScreenIdentity::model, &ScreenIdentity::serial};
constexpr QChar kBetweenParts = u'|';
// Far more than any screen tells of itself.
constexpr qsizetype kLongestPart = 256;

void Read(const QString& text, ScreenIdentity& value)
{
    value = {};
    const QStringList parts = text.split(kBetweenParts);
    if (parts.size() != std::ssize(kScreenParts))
        return;
    ScreenIdentity screen;
    auto field = kScreenParts.begin();
    for (const QString& written : parts) {
        const QString part = QString::fromUtf8(QByteArray::fromPercentEncoding(written.toUtf8()));
        const auto isPrint = [](QChar character) { return character.isPrint(); };
        if (part.size() > kLongestPart || !std::ranges::all_of(part, isPrint))
            return;
        screen.**field++ = part;
    }
    value = screen;
}

QString Written(bool value)
{
    return value ? QStringLiteral("Y") : QString();
}

QString Written(VoiceGuide value)
{
    const auto* const found = std::ranges::find(kGuideNames, value, &GuideName::guide);
    return found == kGuideNames.end() ? QString() : found->name.toString();
}

QString Written(const ScreenIdentity& value)
{
    if (value.IsNone())
        return {};
    QStringList parts;
    for (const auto part : kScreenParts)
        parts += QString::fromLatin1((value.*part).toUtf8().toPercentEncoding(" ()+,:;/"));
    return parts.join(kBetweenParts);
}

// A delay that is no whole number of milliseconds, or too long, is none.
void ReadDelays(const clsINI& store, StageSettings& settings)
{
    for (const QString& key : store.KeysFrom(kDelayKey)) {
        bool isNumber = false;
        const int ms = store.GetSetting(key, {}).toInt(&isNumber);
        if (isNumber && ms != 0 && std::abs(ms) <= kLongestSoundDelayMs)
            settings.delays[key.mid(kDelayKey.size())] = ms;
    }
}

void WriteDelays(clsINI& store, const StageSettings& settings)
{
    for (const QString& key : store.KeysFrom(kDelayKey))
        store.SetSetting(QString(key), QString());
    for (const auto& [device, ms] : settings.delays)
        store.SetSetting(QString(kDelayKey + device), QString::number(ms));
}

} // namespace

QString DelayKey(const QString& deviceId)
{
    return QString::fromLatin1(deviceId.toUtf8().toPercentEncoding()).toLower();
}

std::int32_t DelayOf(const StageSettings& settings, const QString& deviceId)
{
    const auto found = settings.delays.find(DelayKey(deviceId));
    return found == settings.delays.end() ? 0 : found->second;
}

void SetDelay(StageSettings& settings, const QString& deviceId, std::int32_t ms)
{
    if (deviceId.isEmpty())
        return;
    const std::int32_t delay = std::clamp(ms, -kLongestSoundDelayMs, kLongestSoundDelayMs);
    if (delay == 0)
        settings.delays.erase(DelayKey(deviceId));
    else
        settings.delays[DelayKey(deviceId)] = delay;
}

StageSettings ReadStageSettings(const clsINI& settings)
{
    StageSettings values;
    for (const StageSettingRow& row : kStageSettings) {
        const QString text = settings.GetSetting(row.key.toString(), {});
        std::visit([&](auto field) { Read(text, values.*field); }, row.field);
    }
    ReadDelays(settings, values);
    return values;
}

void WriteStageSettings(clsINI& settings, const StageSettings& values)
{
    for (const StageSettingRow& row : kStageSettings) {
        settings.SetSetting(
            row.key.toString(),
            std::visit([&](auto field) { return Written(values.*field); }, row.field));
    }
    WriteDelays(settings, values);
}

} // namespace lantern
