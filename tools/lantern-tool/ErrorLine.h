// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <cstdio>

namespace lantern::tool {

// One line of text for a terminal: a file's name may hold line ends and worse.
QString OneLine(QString text);

// What we say goes here: to standard error.
FILE* ErrorStream();

// From here on libraries, some of which tell what they think of a file, no longer reach standard
// error. Before other threads are started. What watches for faults of ours is not silenced.
void SilenceLibraries();

// On standard error, behind the program's name.
void PrintError(const QString& message);

// On standard output. The result is an error message, empty on success.
[[nodiscard]] QString PrintText(const QByteArray& text);

} // namespace lantern::tool
