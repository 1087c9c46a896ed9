// SPDX-License-Identifier: GPL-3.0-or-later
#include "ShownNames.h"

#include "PathText.h"

#include <QFile>

#include <dirent.h>
#include <memory>
#include <vector>

namespace lantern {
namespace {

constexpr QChar kSeparator = u'/';

// The entries of the folder that a dialog shows by this name; two of them at most.
std::vector<QByteArray> EntriesShownAs(const QString& name, const QByteArray& folder)
{
    std::vector<QByteArray> found;
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(opendir(folder.constData()), closedir);
    while (entries && found.size() < 2) {
        const dirent* entry = readdir(entries.get());
        if (!entry)
            break;
        if (QFile::decodeName(entry->d_name) == name)
            found.emplace_back(entry->d_name);
    }
    return found;
}

} // namespace

bool MayBeShownOnly(const QString& path)
{
    return path.contains(QChar::ReplacementCharacter);
}

QString ShownPath(const QString& path)
{
    return QFile::decodeName(NativeFromText(path));
}

ShownFile FileShownAs(const QString& shownPath)
{
    if (shownPath.isEmpty())
        return {};
    QByteArray path;
    for (const QString& name : shownPath.split(kSeparator, Qt::SkipEmptyParts)) {
        path += '/';
        if (!MayBeShownOnly(name)) {
            path += name.toUtf8();
            continue;
        }
        const std::vector<QByteArray> entries = EntriesShownAs(name, path);
        if (entries.size() != 1)
            return {entries.empty() ? ShownFile::Match::None : ShownFile::Match::Several, {}};
        path += entries.front();
    }
    const QString text = TextFromNative(path.isEmpty() ? QByteArray("/") : path);
    return {ShownFile::Match::One, text};
}

} // namespace lantern
