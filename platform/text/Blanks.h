// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringView>

namespace lantern {

// Without the blanks at both ends. Only U+0020 counts: a tab or a line end may be part of a name,
// and QString::trimmed would take it.
inline QString TrimBlanks(QStringView text)
{
    while (text.startsWith(u' '))
        text = text.sliced(1);
    while (text.endsWith(u' '))
        text.chop(1);
    return text.toString();
}

} // namespace lantern
