// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace lantern {

// The bytes of a sound, wherever they lie. ReadAt keeps no position, so that any number of readers
// on any threads may share one source.
class ByteSource {
public:
    virtual ~ByteSource() = default;

    // What the source held when it was opened; a file may shrink behind our back.
    virtual std::int64_t Size() const = 0;
    // Copies what there is from the offset on and returns its size: 0 at the end or on a failure.
    virtual std::size_t ReadAt(std::int64_t offset, std::span<std::uint8_t> out) const = 0;
    // When this returns, memory that is somebody else's is no longer touched: reads find an end.
    virtual void Release() {}
};

// Null for anything but a readable regular file that holds at least one byte. Returns at once, on
// a FIFO or a device too.
std::unique_ptr<ByteSource> OpenFileBytes(const QString& path);
// The memory stays the caller's and must stay valid until Release or the source's end.
std::unique_ptr<ByteSource> OpenMemoryBytes(std::span<const std::uint8_t> image);

} // namespace lantern
