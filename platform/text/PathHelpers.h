// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

// Arithmetic on paths, and the one question about what a path names.
namespace lantern {

// "DIR" for a folder, "FILE" for anything else that exists, empty for what does not exist or
// can't be looked at. The name is matched as ResolveName does.
QString FileCheck(const QString& path);

// What separates the folders of the path: "/" here, "\\" in a path of another system.
QChar SeparatorOf(const QString& path);

// The folder of the path, with the separator at its end; empty for a bare file name.
QString FolderOf(const QString& path, QChar separator);

// The text behind the last "." of the whole path, in lower case; empty without any ".". A dot in
// a folder's name counts when the file's name has none.
QString FileExtension(const QString& path);

// The text before the last "." of the whole path, or the path unchanged.
QString StripExtension(const QString& path);

// The full path without the folder of the base, if it lies below that folder (letter case does
// not count); otherwise the full path unchanged.
QString RelativePath(const QString& basePath, const QString& fullPath);

// What RelativePath stored, made full again. Empty text stays empty.
QString AbsolutePath(const QString& basePath, const QString& storedPath);

} // namespace lantern
