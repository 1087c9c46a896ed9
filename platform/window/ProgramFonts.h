// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace lantern {

// Makes the families that the program asks for by name (Arial, Tahoma, MS Sans Serif) come out as
// Liberation Sans, so that text measures the same on every desktop. Once, after QApplication.
void LoadProgramFonts();

} // namespace lantern
