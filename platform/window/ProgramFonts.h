// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFont>

namespace lantern {

// Makes the families that the program asks for by name (Arial, Tahoma, MS Sans Serif) come out as
// Liberation Sans, so that text measures the same on every desktop. Once, after QApplication.
void LoadProgramFonts();

// A font without hinting or colour fringes, of the size in pixels.
QFont ProgramFont(const QString& family, int pixelSize, bool bold = false);

} // namespace lantern
