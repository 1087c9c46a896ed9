// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ArchiveBytes.h"

#include <QString>

#include <cstdint>
#include <string>
#include <vector>

namespace lantern {

// A member as the archive's directory tells of it. Nothing of that is known to be true.
struct ZipEntry {
    std::string name; // its bytes, in whatever encoding
    std::uint16_t method = 0;
    std::uint16_t flags = 0;
    std::uint32_t checksum = 0;
    std::uint64_t storedSize = 0; // bytes
    std::uint64_t size = 0;       // bytes, unpacked
    std::uint64_t offset = 0;     // of the member's own header, from the first byte of the file
    bool isPlainFile = true;      // no folder and no link
};

struct ZipDirectory {
    std::vector<ZipEntry> entries; // in its own order
    QString failure;               // why it can't be read; empty on success
};

// Finds the directory at the end of the archive and reads it, whatever stands before and behind
// the archive. It may have 16 MiB: a track's has a few entries, and this is room for a hundred
// thousand.
ZipDirectory ReadZipDirectory(const ArchiveBytes& archive);

// The member's packed bytes follow its own header, whose length the directory doesn't tell. The
// offset of the first, or 0 if there is no such header.
std::uint64_t OffsetOfData(const ArchiveBytes& archive, const ZipEntry& entry);

// A number of the .ZIP file format, whose bytes come the lowest first.
std::uint64_t LittleEndian(std::span<const std::uint8_t> bytes);

} // namespace lantern
