// SPDX-License-Identifier: GPL-3.0-or-later
#include "PathHelpers.h"

#include "PathText.h"

#include <sys/stat.h>

namespace lantern {
namespace {

// "c:\..." or "\\server\...": a path of another system, as settings and track lists carry them.
bool IsBackslashPath(const QString& path)
{
    return path.startsWith(QStringLiteral("\\\\")) ||
           QStringView(path).mid(1).startsWith(QStringLiteral(":\\"));
}

bool IsAbsolute(const QString& path)
{
    return path.startsWith(u'/') || IsBackslashPath(path);
}

} // namespace

// The one place that decides what separates folders. A backslash in any other path is a letter of
// a file's name.
QChar SeparatorOf(const QString& path)
{
    return IsBackslashPath(path) ? QChar(u'\\') : QChar(u'/');
}

QString FolderOf(const QString& path, QChar separator)
{
    return path.left(path.lastIndexOf(separator) + 1);
}

QString FileCheck(const QString& path)
{
    const QString name = ResolveName(path);
    struct stat status = {};
    if (name.isEmpty() || stat(NativeFromText(name).constData(), &status) != 0)
        return {};
    return S_ISDIR(status.st_mode) ? QStringLiteral("DIR") : QStringLiteral("FILE");
}

QString FileExtension(const QString& path)
{
    const qsizetype dot = path.lastIndexOf(u'.');
    return dot < 0 ? QString() : LowerCase(path.mid(dot + 1));
}

QString StripExtension(const QString& path)
{
    const qsizetype dot = path.lastIndexOf(u'.');
    return dot < 0 ? path : path.left(dot);
}

QString RelativePath(const QString& basePath, const QString& fullPath)
{
    const QString folder = FolderOf(basePath, SeparatorOf(basePath));
    if (!fullPath.startsWith(folder, Qt::CaseInsensitive))
        return fullPath;
    return fullPath.mid(folder.size());
}

QString AbsolutePath(const QString& basePath, const QString& storedPath)
{
    if (storedPath.isEmpty() || IsAbsolute(storedPath))
        return storedPath;
    return FolderOf(basePath, SeparatorOf(basePath)) + storedPath;
}

} // namespace lantern
