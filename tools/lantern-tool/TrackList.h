// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "TrackCommand.h"

#include <QStringList>

#include <vector>

namespace lantern::tool {

struct TrackList {
    std::vector<WantedTrack> tracks;
    QStringList errors; // folders that can't be read, or hold no track
};

// Whether they name more than one track, or a folder, however many there are in it.
bool NamesSeveral(const QStringList& words);

// The tracks that the words name. A word for a folder stands for the tracks in it, in the order of
// their names as people sort them, and, if it is to be, for those in its folders, which come behind
// them. In a folder an audio file with packets beside it is no track of its own, and what is hidden
// doesn't count. Any other word is a track, whatever it names.
TrackList ListTracks(const QStringList& words, bool recursive);

} // namespace lantern::tool
