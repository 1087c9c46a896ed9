// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFont>

namespace lantern {

// A font without hinting or colour fringes, of the size in pixels.
QFont ProgramFont(const QString& family, int pixelSize, bool bold = false);

} // namespace lantern
