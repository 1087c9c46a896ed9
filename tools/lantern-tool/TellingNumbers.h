// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Track.h"

#include <QString>

#include <cstdint>
#include <vector>

// Numbers as people read them.
namespace lantern::tool {

// With a comma at the thousands.
QString Grouped(std::int64_t number);
// With what is counted, which takes an s: "1 packet", "1,204 packets".
QString Counted(std::int64_t number, const char* thing);
// A place or a length: "0:07", "62:30".
QString TimeText(std::int32_t timeMs);
// A length: "12 s", "3 min 20 s".
QString SpanText(std::int32_t timeMs);

std::int32_t MsOfPacket(PacketIndex packet);
// The numbers of the bits that are set.
std::vector<int> EntriesOf(std::uint16_t bits);

} // namespace lantern::tool
