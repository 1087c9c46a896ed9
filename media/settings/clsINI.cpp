// SPDX-License-Identifier: GPL-3.0-or-later
#include "clsINI.h"

#include "Blanks.h"
#include "LastErrorText.h"
#include "PathHelpers.h"
#include "ReplaceFile.h"
#include "SettingText.h"
#include "TextLines.h"
#include "clsFileIO.h"

#include <utility>

namespace lantern {
namespace {

struct Fields {
    QString first;
    QString second;
};

// What stands before the first separator, and between it and the next one.
Fields SplitLine(QStringView line, QChar separator)
{
    const qsizetype end = line.indexOf(separator);
    if (end < 0)
        return {line.toString(), {}};
    const QStringView rest = line.sliced(end + 1);
    const qsizetype secondEnd = rest.indexOf(separator);
    return {line.first(end).toString(), (secondEnd < 0 ? rest : rest.first(secondEnd)).toString()};
}

// A file that can't be decoded is as good as none.
QString TextOrNothing(const QString& path)
{
    try {
        return ReadTextFile(path);
    } catch (const FileIOError&) {
        return {};
    }
}

// A value can't hold a line end: what is behind one would come back as settings of its own.
QStringView FirstLine(const QString& value)
{
    return TextLines(value).Next().value_or(QStringView());
}

} // namespace

clsINI::clsINI(QString userDataPath, FileErrorHost& host)
    : m_userDataPath(std::move(userDataPath)), m_host(host)
{
}

void clsINI::LoadSettings(const QString& section)
{
    StartEmpty(section);
    const QString text = TextOrNothing(SettingsFilePath());
    TextLines lines(text);
    while (const auto line = lines.Next()) {
        if (m_settings.size() == kMostSettings)
            break;
        const Fields fields = SplitLine(*line, u'\t');
        SetSetting(QString(fields.first), ReadSetting(fields.second));
    }
    if (m_settings.empty())
        ImportLegacySettings(section);
}

void clsINI::ImportLegacySettings(const QString& section)
{
    StartEmpty(section);
    const QString text = TextOrNothing(LegacyFilePath());
    const QString wanted = u'[' + section.toLower() + u']';
    bool inSection = false;
    TextLines lines(text);
    while (const auto line = lines.Next()) {
        if (m_settings.size() == kMostSettings)
            break;
        const Fields fields = SplitLine(*line, u'=');
        if (fields.first.startsWith(u'['))
            inSection = fields.first.toLower() == wanted;
        else if (inSection)
            SetSetting(QString(fields.first), fields.second);
    }
}

// All at once, so that a program that ends at any moment leaves the old settings or the new ones.
void clsINI::SaveSettings()
{
    const QString path = SettingsFilePath();
    const QString text = FileText();
    const QByteArray bytes = text.isEmpty() ? QByteArray() : clsFileIO().ToUTF8(text);
    if (const int error = ReplaceFile(path, bytes))
        m_host.ShowFileError(ErrorText(error), path,
                             QStringLiteral("Cannot Write to Settings File"));
}

QString clsINI::FileText() const
{
    QString text;
    for (const auto& [key, value] : m_settings) {
        const QStringView line = FirstLine(value);
        if (!key.isEmpty() && !line.isEmpty())
            text += key.toLower() + u'\t' + WrittenSetting(line) + kLineEnd;
    }
    return text;
}

void clsINI::SetSetting(QString& key, const QString& value)
{
    key = TrimBlanks(key).toLower();
    m_settings[key] = value;
}

QString clsINI::GetSetting(const QString& key, const QString& fallback) const
{
    const auto found = m_settings.find(TrimBlanks(key).toLower());
    return found == m_settings.end() ? fallback : found->second;
}

QStringList clsINI::KeysFrom(const QString& beginning) const
{
    QStringList keys;
    for (auto found = m_settings.lower_bound(beginning);
         found != m_settings.end() && found->first.startsWith(beginning); ++found)
        keys += found->first;
    return keys;
}

void clsINI::SetSettingRelative(QString& key, const QString& value)
{
    SetSetting(key, RelativePath(SettingsFilePath(), value));
}

QString clsINI::GetSettingRelative(const QString& key, const QString& fallback) const
{
    const QString value = GetSetting(key, fallback);
    return value.isEmpty() ? value : AbsolutePath(SettingsFilePath(), value);
}

QString clsINI::SettingsFilePath() const
{
    return m_userDataPath + QStringLiteral("data_") + m_section + QStringLiteral(".ini");
}

QString clsINI::LegacyFilePath() const
{
    return m_userDataPath + QStringLiteral("ll.ini");
}

void clsINI::StartEmpty(const QString& section)
{
    m_settings.clear();
    m_section = section;
}

} // namespace lantern
