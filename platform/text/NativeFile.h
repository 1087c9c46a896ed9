// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "OwnedDescriptor.h"

#include <QString>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace lantern {

// A regular file opened for reading. A FIFO or a device, which could block, doesn't open.
class NativeFile {
public:
    // Nothing if the path (matched as ResolveName does) names no readable regular file.
    static std::optional<NativeFile> OpenForReading(const QString& path);

    std::int64_t Size() const { return m_size; } // when it was opened

    // One read of the system from where the last one ended: the number of bytes that came, 0 at
    // the end of the file and on a failure.
    std::size_t Read(std::span<std::uint8_t> bytes);
    // From a place on, wherever that was; fills the bytes as far as the file goes.
    std::size_t ReadAt(std::int64_t offset, std::span<std::uint8_t> bytes) const;

private:
    NativeFile(OwnedDescriptor descriptor, std::int64_t size);

    OwnedDescriptor m_descriptor;
    std::int64_t m_size;
};

// Fills the bytes from the source in pieces of at most pieceSize, and gives how many came. A read
// that delivers nothing ends it early: a file may be shorter than it said.
template <typename Source>
std::size_t ReadInPieces(Source& source, std::span<std::uint8_t> bytes, std::size_t pieceSize)
{
    std::size_t filled = 0;
    while (filled < bytes.size()) {
        const std::size_t wanted = std::min(pieceSize, bytes.size() - filled);
        const std::size_t came = source.Read(bytes.subspan(filled, wanted));
        if (came == 0)
            break;
        filled += came;
    }
    return filled;
}

} // namespace lantern
