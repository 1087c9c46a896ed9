// SPDX-License-Identifier: GPL-3.0-or-later
#include "ProgramFont.h"

namespace lantern {

QFont ProgramFont(const QString& family, int pixelSize, bool bold)
{
    // The substitution is applied here, since a desktop may know the name under another font.
    const QString substitute = QFont::substitute(family);
    QFont font(substitute);
    font.setPixelSize(pixelSize);
    font.setBold(bold);
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setStyleStrategy(QFont::NoSubpixelAntialias);
    return font;
}

} // namespace lantern
