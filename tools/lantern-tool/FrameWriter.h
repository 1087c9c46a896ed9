// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "OutputFile.h"
#include "Track.h"
#include "TrackCommand.h"
#include "VirtualBuffers.h"

#include <QSize>
#include <QString>

#include <optional>
#include <vector>

namespace lantern::tool {

inline constexpr int kLargestFrame = 8192; // to a side, in pixels

struct FrameRequest {
    std::vector<PacketIndex> packets; // visited in this order, each from where the last one ended
    QString out;                      // as OutputName has it; the packet is the number
    bool raw = false;
    std::optional<QSize> size; // scaled to it as the window does
    PictureLook look = PictureLook::Sharp;
};

// Writes the picture at each packet: what the window would show as a PNG, in its own size or
// scaled, or, raw, the whole picture's colour indexes as a PGM with the colours in a text file
// beside it. The result is an error message, empty on success.
[[nodiscard]] QString WriteFrames(const Track& track, const WantedTrack& wanted,
                                  const FrameRequest& request, bool force);

// A single track's pictures have always replaced older ones; those of several don't.
IfExists PictureIfExists(const WantedTrack& wanted, bool force);

} // namespace lantern::tool
