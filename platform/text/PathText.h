// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringView>

// File names here are bytes; the program's text is UTF-16. These functions convert between the
// two without loss. A byte that is not part of well-formed UTF-8 rides in the text as the lone
// surrogate U+DC80..U+DCFF whose low byte it is, and comes back as it was.
//
// Every access to a path that a user gave goes through NativeFromText: QFile(QString) would lose
// such names.
namespace lantern {

QString TextFromNative(QByteArrayView bytes);
QByteArray NativeFromText(QStringView text);

// In lower case, with the bytes that are no text as they were (QString::toLower loses them).
QString LowerCase(const QString& text);

// What is the same for two names that differ only in letter case or in the composition of accents.
QString FoldedName(const QString& name);

// The name of the file that the path means: the path itself if it exists, otherwise the path with
// its last component replaced by the one entry of its folder that equals it when neither letter
// case nor the composition of accents counts (the first in byte order, if there are several).
// Empty if there is no such file.
QString ResolveName(const QString& path);

} // namespace lantern
