// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Track.h"

#include <QString>

#include <vector>

namespace lantern::tool {

struct FrameRequest {
    std::vector<PacketIndex> packets; // visited in this order, each from where the last one ended
    QString out;                      // each %d in it becomes the packet's number
    bool raw = false;
};

// Writes the picture at each packet: what the window would show as a PNG or, raw, the whole
// picture's colour indexes as a PGM with the colours in a text file beside it. The result is an
// error message, empty on success.
[[nodiscard]] QString WriteFrames(const Track& track, const FrameRequest& request);

} // namespace lantern::tool
