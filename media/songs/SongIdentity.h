// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

namespace lantern {

struct AudioClip;
struct Track;

// What a song is, wherever it lies and whatever it is called; empty for none.
using SongId = QByteArray;
inline constexpr int kSongIdSize = 20;

// The identity of a loaded track: what its packets draw. So a renamed file, an archive and an image
// of one disc are one song, whichever sound goes with it. Where nothing is drawn that could tell
// one song from another, its sound tells, as far as it has any; then what packets there are.
//
// What drives differ in does not count: packets that do nothing and where they stand, the parity,
// and the two upper bits of a byte, which belong to other channels.
SongId IdentityOf(const Track& track);

// The same bytes in a file and in memory have the same one; empty if they can't be read. Of a large
// sound some pieces are read only, so that it takes no longer than a millisecond or two.
QByteArray FingerprintOf(const AudioClip& clip);

} // namespace lantern
