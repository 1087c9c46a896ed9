// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace lantern {

// Zero characters written as "0".
inline QString Zeros(const char* text)
{
    return QString::fromLatin1(text).replace(u'0', QChar(u'\0'));
}

} // namespace lantern
