// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace lantern {

// The track that lies that many places behind the path, or before it with a negative number, among
// the tracks of its folder; the last or the first of them if there aren't as many; empty if there
// is none on that side. The track of the path itself may be gone by now.
//
// A track is a file that the player opens, except an audio file whose packets lie beside it: the
// packet file stands for both. Hidden files don't count. The order is that of their names as people
// sort them: by the values of numbers in them, whatever the case and the accents of letters.
QString NeighbourTrack(const QString& path, int places);

// What sorts names in that way when it is compared.
QString NaturalKey(const QString& name);

} // namespace lantern
