// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "LineReader.h"
#include "Track.h"

#include <QString>

#include <vector>

namespace lantern {

struct SongWord {
    QString text;
    PacketIndex start = 0;
    PacketIndex end = 0;
    double confidence = 0;       // of the reading, 0 to 1
    bool isInterpolated = false; // its time is a guess between those of its neighbours
};

struct SongLine {
    std::vector<SongWord> words; // one at least
    PacketIndex shown = 0;       // when it came, and went
    PacketIndex gone = 0;
    bool isSung = false; // something tells when; a title, say, has no such thing
};

// Reads the words of a track out of its picture, in the order in which they are sung. It knows no
// file and no clock.
std::vector<SongLine> ReadSongWords(const OneBasedArray<CdgPacket>& packets, LineReader& reader);

} // namespace lantern
