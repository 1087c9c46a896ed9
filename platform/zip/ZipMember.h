// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <cstdint>
#include <vector>
#include <zip.h>

namespace lantern {

struct ZipMember {
    std::vector<std::uint8_t> bytes;
    QString failure; // why there are no bytes; empty on success
};

// All bytes of the member, checked against the size and the checksum that the archive tells. What
// it tells is never believed: memory grows with what has come, and ends at the largest size.
ZipMember ReadZipMember(zip_t& archive, zip_uint64_t index, std::int64_t largestSize);

// In the words of the library.
QString ZipErrorText(int code);

} // namespace lantern
