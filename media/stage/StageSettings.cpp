// SPDX-License-Identifier: GPL-3.0-or-later
#include "StageSettings.h"

#include "clsINI.h"

#include <algorithm>

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

void Read(const QString& text, QString& value)
{
    value = text;
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

QString Written(const QString& value)
{
    return value;
}

} // namespace

StageSettings ReadStageSettings(const clsINI& settings)
{
    StageSettings values;
    for (const StageSettingRow& row : kStageSettings) {
        const QString text = settings.GetSetting(row.key.toString(), {});
        std::visit([&](auto field) { Read(text, values.*field); }, row.field);
    }
    return values;
}

void WriteStageSettings(clsINI& settings, const StageSettings& values)
{
    for (const StageSettingRow& row : kStageSettings) {
        settings.SetSetting(
            row.key.toString(),
            std::visit([&](auto field) { return Written(values.*field); }, row.field));
    }
}

} // namespace lantern
