// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "FilmOrder.h"

namespace lantern::tool {

// Makes a film of a track in a file, by a module of its own (ToolModule.h).
[[nodiscard]] FilmTrouble MakeFilm(const Track& track, const FilmOrder& order, const QString& path,
                                   const FilmClient& client);

// What the module is asked for, by its name there.
using MakeFilmFunction = void (*)(const Track& track, const FilmOrder& order, const QString& path,
                                  const FilmClient& client, FilmTrouble& trouble);
inline constexpr const char* kMakeFilm = "LanternMakeFilm";

} // namespace lantern::tool
