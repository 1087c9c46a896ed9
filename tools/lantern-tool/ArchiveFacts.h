// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include <cstdint>

namespace lantern::tool {

// What an archive's directory tells of the members that are the track: the first of each kind.
struct ArchiveFacts {
    QString packets; // the names of both; empty for none
    QString audio;
    std::int64_t packetBytes = 0;
    QStringList rareMethods; // beside the two that every program reads
    bool hasMoreSongs = false;
};

ArchiveFacts FindArchiveFacts(const QString& path);

} // namespace lantern::tool
