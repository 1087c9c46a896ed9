// SPDX-License-Identifier: GPL-3.0-or-later
#include "RunToPacket.h"

#include <algorithm>

namespace lantern {

namespace {

// A run longer than a second of packets isn't shown while it lasts.
constexpr PacketIndex kCatchUpAbove = kPacketsPerSecond;

} // namespace

bool RunToPacket(PictureMemory& picture, PacketInterpreter& interpreter,
                 const OneBasedArray<CdgPacket>& packets, PacketIndex target)
{
    if (target == picture.PlayedPacket)
        return false;
    // The interpreter can't go back: it starts again, and packet 1 clears the picture.
    if (target < picture.PlayedPacket)
        picture.PlayedPacket = 0;
    target = std::clamp(target, 0, packets.Count());
    picture.CatchingUp = target - picture.PlayedPacket > kCatchUpAbove;

    const std::int32_t snapshot = picture.NearestSnapshot(target);
    if (picture.PlayedPacket < snapshot * SnapshotInterval)
        picture.RestoreSnapshot(snapshot);
    for (PacketIndex packetNo = picture.PlayedPacket + 1; packetNo <= target; ++packetNo) {
        picture.CurrentPacket = packets[packetNo];
        interpreter.ShowCode(packetNo);
    }
    picture.PlayedPacket = target;
    picture.CatchingUp = false;
    return true;
}

} // namespace lantern
