// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ZipDirectory.h"

#include <QString>

#include <cstdint>
#include <vector>

namespace lantern {

struct ZipMember {
    std::vector<std::uint8_t> bytes;
    QString failure; // why there are no bytes; empty on success
};

// All bytes of the member, checked against the size and the checksum that the archive tells. What
// it tells is never believed: memory grows with what has come, and ends at the largest size.
ZipMember ReadZipMember(const ArchiveBytes& archive, const ZipEntry& entry,
                        std::int64_t largestSize);

} // namespace lantern
