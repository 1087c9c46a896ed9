// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SongIdentity.h"

#include <QByteArray>
#include <QHash>

#include <optional>

namespace lantern {

// How the user sings a song.
struct SongTune {
    int keyPitch = 0; // -10 to +10
    float speed = 0;  // -90 to +90

    bool operator==(const SongTune&) const = default;
};

// How loud a song's sound is as a whole. Another sound with the same packets has to be measured
// anew.
struct KeptLoudness {
    QByteArray sound; // its fingerprint
    double lufs = 0;
    double truePeak = 0; // 1 is full scale

    bool operator==(const KeptLoudness&) const = default;
};

// What is remembered of a song.
struct SongRecord {
    SongTune tune;
    std::optional<KeptLoudness> loudness;

    bool IsEmpty() const { return tune == SongTune() && !loudness; }
    bool operator==(const SongRecord&) const = default;
};

using SongRecords = QHash<SongId, SongRecord>;

} // namespace lantern
