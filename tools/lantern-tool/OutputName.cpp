// SPDX-License-Identifier: GPL-3.0-or-later
#include "OutputName.h"

#include "MediaTypes.h"
#include "NameSearch.h"
#include "PathHelpers.h"
#include "PathText.h"

#include <QHash>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <mutex>
#include <sys/stat.h>

namespace lantern::tool {
namespace {

const QString kTitle = QStringLiteral("%t");

QString FolderOfTrack(const QString& track)
{
    const QString folder = FolderOf(track, u'/');
    if (folder.isEmpty())
        return QStringLiteral(".");
    return folder.size() > 1 ? folder.chopped(1) : folder;
}

// In one pass: a title may hold a "%d" itself.
QString Expanded(const QString& pattern, const QString& track, const QString& number)
{
    QString text;
    for (qsizetype i = 0; i < pattern.size(); ++i) {
        const QChar kind = pattern[i] == u'%' && i + 1 < pattern.size() ? pattern[i + 1] : QChar();
        if (kind == u't')
            text += TrackTitle(track);
        else if (kind == u'f')
            text += FolderOfTrack(track);
        else if (kind == u'd' && !number.isEmpty())
            text += number;
        else {
            text += pattern[i];
            continue;
        }
        ++i;
    }
    return text;
}

bool IsRegular(const QString& path, struct stat& status)
{
    return !path.isEmpty() && stat(NativeFromText(path).constData(), &status) == 0 &&
           S_ISREG(status.st_mode);
}

// The file that was named, or the one that is its other half, under whatever name.
bool IsFileOfTrack(const QString& path, const QString& track)
{
    constexpr std::array<QStringView, 1> kPacketKind = {u"cdg"};
    struct stat output = {};
    if (path.contains(QChar(u'\0')) || !IsRegular(path, output))
        return false;
    const QString name = ResolveName(track);
    const QString stem = StripExtension(name);
    const std::array files = {name, FindFile(stem, AudioExtensions), FindFile(stem, kPacketKind)};
    return std::ranges::any_of(files, [&](const QString& file) {
        struct stat status = {};
        return IsRegular(file, status) && status.st_dev == output.st_dev &&
               status.st_ino == output.st_ino;
    });
}

} // namespace

OutputName::OutputName(const QString& out, const WantedTrack& track, const QString& ending)
    : m_track(track.path)
{
    if (!track.isOneOfMany || out.contains(kTitle)) {
        m_pattern = out;
        return;
    }
    m_folder = (out.endsWith(u'/') ? out : out + u'/') + track.folder;
    m_pattern = kTitle + ending;
}

QString OutputName::MakeFolder() const
{
    for (qsizetype end = m_folder.indexOf(u'/', 1); end > 0;
         end = m_folder.indexOf(u'/', end + 1)) {
        const QString folder = m_folder.left(end);
        if (mkdir(NativeFromText(folder).constData(), 0777) == 0 || errno == EEXIST)
            continue;
        // One above it may be anything, as long as the folder is there.
        const int error = errno;
        struct stat status = {};
        if (stat(NativeFromText(folder).constData(), &status) != 0)
            return QStringLiteral("Cannot make the folder %1: %2")
                .arg(folder, QString::fromLocal8Bit(std::strerror(error)));
    }
    return {};
}

QString OutputName::Path(const QString& number) const
{
    return m_folder + Expanded(m_pattern, m_track, number);
}

QString ClaimOutput(const QString& path, const WantedTrack& track)
{
    static std::mutex mutex;
    static QHash<QString, QString> claims;
    if (IsFileOfTrack(path, track.path))
        return QStringLiteral("Cannot write %1: it is a file of the track").arg(path);
    if (!track.isOneOfMany)
        return {};
    const std::lock_guard lock(mutex);
    const QString first = claims.value(path, track.path);
    claims.insert(path, first);
    if (first == track.path)
        return {};
    return QStringLiteral("Cannot write %1: it is the output of %2").arg(path, first);
}

} // namespace lantern::tool
