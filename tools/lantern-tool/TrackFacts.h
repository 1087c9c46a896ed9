// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "PacketCensus.h"
#include "SoundHealth.h"
#include "TrackLoad.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>
#include <vector>

namespace lantern::tool {

// How far the names of the packets and of the sound are the same, without their extensions.
enum class NamePair {
    Same,
    LetterCase, // but for that
    Spelling,   // the same letters, written in other bytes, as accents may be
    Different,  // as they may be in an archive, where kinds alone count here
};

NamePair PairOf(const QString& packets, const QString& audio);

// What can be found out about a track, without a judgement.
struct TrackFacts {
    QString unreadable; // why it can't be read at all; the rest means nothing then

    bool isArchive = false;
    bool isDisc = false;       // sectors of sound and subcode
    bool lacksSubcode = false; // it seems to have sectors of sound alone
    PacketCensus census;        // of the packets that its file holds
    std::int32_t pictureMs = 0; // as long as these last
    bool endsWithinPacket = false;
    bool hasPicture = false; // packets, whatever they are

    int clips = 0;                    // pieces of sound, without the silence that fills up
    std::int32_t soundMs = 0;         // of them all
    QString unusableSound;            // an audio file that should be the sound, and can't be played
    std::optional<SoundHealth> sound; // where one was examined

    NamePair names = NamePair::Same;
    QStringList rareMethods;   // by which members are packed, and which many programs can't read
    bool hasMoreSongs = false; // the archive holds several; the first plays
    std::vector<SkippedMember> skipped;
};

// The sound is decoded to its end where it is to be examined, which takes most of the time.
TrackFacts FindFacts(const QString& path, bool examineSound);

} // namespace lantern::tool
