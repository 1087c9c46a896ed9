// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace lantern::tool {

// One line of text for a terminal: a file's name may hold line ends and worse.
QString OneLine(QString text);

// On standard error, behind the program's name.
void PrintError(const QString& message);

// On standard output. The result is an error message, empty on success.
[[nodiscard]] QString PrintText(const QByteArray& text);

} // namespace lantern::tool
