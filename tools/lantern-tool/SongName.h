// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace lantern::tool {

struct SongName {
    QString title;
    QString artist; // empty if it isn't told

    bool operator==(const SongName&) const = default;
};

// From the title of a track as its file has it: "Artist - Title", perhaps with the number of a disc
// before it.
SongName SongNameFrom(const QString& trackTitle);

} // namespace lantern::tool
