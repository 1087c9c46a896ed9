// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Track.h"

#include <QString>

#include <vector>

namespace lantern::tool {

// A member of an archive that is no part of the track; with an empty name, the archive itself.
struct SkippedMember {
    QString name;
    QString reason;
};

// Loads the track as the player would, without playing it. The result is an error message, empty
// on success.
[[nodiscard]] QString LoadTrack(const QString& path, Track& track,
                                std::vector<SkippedMember>& skipped);

// The packets alone, and of a .cdg file no more than that many: nothing else is read.
[[nodiscard]] QString LoadPackets(const QString& path, PacketIndex atMost, Track& track);

} // namespace lantern::tool
