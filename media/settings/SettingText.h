// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringView>

namespace lantern {

// The file of settings is UTF-8, which has no form for a lone 16-bit unit of a surrogate pair; such
// units are what the bytes of a name are that is no text. Each is written as a mark and its four
// hexadecimal digits. The mark, U+FDD0, is no character and stands in no text; where it does, it is
// written in that way, too. All other text is written as it is.
QString WrittenSetting(QStringView text);

// The text that was written so. A mark without four digits behind it means itself.
QString ReadSetting(QStringView written);

} // namespace lantern
