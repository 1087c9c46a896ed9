// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

// What the program calls itself, in messages, in the caption, between its instances and to the
// sound server.
namespace lantern {

inline const QString kApplicationTitle = QStringLiteral("Lyric Lantern CDG Player");

// Its name among all programs: that of its desktop entry, its icons and its windows.
inline const QString kApplicationId = QStringLiteral("io.github.lyric_lantern.player");

// Its name among the players on the bus, behind what all of their names begin with.
inline const QString kApplicationBusName = QStringLiteral("lyric_lantern");

// What the page is called that OpenWebSite shows. It is installed with the program.
inline const QString kWebSite = QStringLiteral("The Lyric Lantern page");

} // namespace lantern
