// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "PacketInterpreter.h"
#include "PictureMemory.h"
#include "Track.h"

namespace lantern {

// Runs the interpreter from where the picture stands to a packet, from a snapshot if that is
// shorter. False if the picture stands there already, and then nothing was done.
bool RunToPacket(PictureMemory& picture, PacketInterpreter& interpreter,
                 const OneBasedArray<CdgPacket>& packets, PacketIndex target);

} // namespace lantern
