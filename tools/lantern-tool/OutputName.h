// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "OutputFile.h"
#include "TrackCommand.h"

#include <QString>
#include <QStringView>

namespace lantern::tool {

// What --out means for one track.
//
// In a name %t stands for the track's title, %f for the folder that it lies in, and %d for a
// number. Where there are several tracks, a name without %t is that of a folder: in it each track
// has a file of its own title, below the folders that it was found in.
class OutputName {
public:
    // The ending is that of a file in such a folder, behind the title.
    OutputName(const QString& out, const WantedTrack& track, const QString& ending);

    // Makes the folder, where it is meant. The result is an error message, empty on success.
    [[nodiscard]] QString MakeFolder() const;

    QString Path(const QString& number = {}) const;

private:
    QString m_folder; // taken as it is, with a slash at its end
    QString m_pattern;
    QString m_track;
};

// Of two tracks with one output the second is refused, and so is an output that is the track or the
// other half of it: nothing brings a song back. The result is an error message, empty on success.
// From any thread.
[[nodiscard]] QString ClaimOutput(const QString& path, const WantedTrack& track);

} // namespace lantern::tool
