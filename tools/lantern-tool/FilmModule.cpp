// SPDX-License-Identifier: GPL-3.0-or-later
#include "FilmModule.h"

#include "ToolModule.h"

namespace lantern::tool {

FilmTrouble MakeFilm(const Track& track, const FilmOrder& order, const QString& path,
                     const FilmClient& client)
{
    FilmTrouble trouble;
    QString error;
    const auto make = reinterpret_cast<MakeFilmFunction>(
        ModuleFunction(LANTERN_FILM_FROM_PROGRAM, kMakeFilm, error));
    if (make)
        make(track, order, path, client, trouble);
    else
        trouble.file = QStringLiteral("what makes films cannot be loaded: ") + error;
    return trouble;
}

} // namespace lantern::tool
