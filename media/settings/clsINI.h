// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include <cstddef>
#include <map>

namespace lantern {

// What the settings ask of the windows around them: a message box about a file.
class FileErrorHost {
public:
    virtual ~FileErrorHost() = default;
    virtual void ShowFileError(const QString& detail, const QString& head,
                               const QString& title) = 0;
};

// Named text values of one section of the program, kept in memory and written to a small file in
// the user's folder: a line for each, key, tab and value, in ascending order of the keys.
//
// A key counts trimmed and in lower case. Empty text and a missing setting are the same across a
// save. Nothing guards the file against a second process: the last one to save wins.
class clsINI {
public:
    // Lines beyond this number are not taken from a file.
    static constexpr std::size_t kMostSettings = 65536;

    // The folder ends in a slash. The host is borrowed and outlives the settings.
    clsINI(QString userDataPath, FileErrorHost& host);

    // Replaces the settings by those of the section's file, or of the older file without it.
    void LoadSettings(const QString& section);
    // Replaces the section's file. A failure is shown, and the program goes on.
    void SaveSettings();

    // Key becomes its trimmed lower-case form.
    void SetSetting(QString& key, const QString& value);
    void SetSetting(QString&& key, const QString& value) { SetSetting(key, value); }
    QString GetSetting(const QString& key, const QString& fallback) const;

    // The keys that begin with the text, which is in lower case as they are, in ascending order.
    QStringList KeysFrom(const QString& beginning) const;

    // For paths, stored relative to the folder of the settings file where they lie below it.
    void SetSettingRelative(QString& key, const QString& value);
    void SetSettingRelative(QString&& key, const QString& value) { SetSettingRelative(key, value); }
    QString GetSettingRelative(const QString& key, const QString& fallback) const;

private:
    QString SettingsFilePath() const;
    QString LegacyFilePath() const;
    void StartEmpty(const QString& section);
    void ImportLegacySettings(const QString& section);
    QString FileText() const;

    QString m_userDataPath;
    FileErrorHost& m_host;
    QString m_section;
    std::map<QString, QString> m_settings; // by character code of the keys
};

} // namespace lantern
