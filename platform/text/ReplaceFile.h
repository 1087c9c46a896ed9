// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayView>
#include <QString>

namespace lantern {

// Puts the bytes in the place of what the file holds, or makes the file. Who reads it, at any
// moment and after any crash, finds all of the old bytes or all of the new ones: they are written
// beside the file, flushed to the disk, and take its place at once. Several programs may do it at
// the same time; the last one wins.
//
// The file stays what it is: at the end of a symbolic link, with its owner and its permissions.
// One that may not be written is refused, and one whose folder may not be written is written where
// it is, as is what is no regular file.
//
// The result is 0, or the code of an error; a regular file then is as it was. The path is matched
// as ResolveName does.
int ReplaceFile(const QString& path, QByteArrayView bytes);

// Everything, however often the system takes but a part. On a failure it is false, and errno tells
// why.
bool WriteAll(int descriptor, QByteArrayView bytes);

} // namespace lantern
