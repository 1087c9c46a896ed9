// SPDX-License-Identifier: GPL-3.0-or-later
#include "DirectoryClaims.h"

#include "NativeFile.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <span>
#include <string_view>
#include <unistd.h>
#include <vector>

namespace lantern {
namespace {

// Records and offsets of the .ZIP file format, as PKWARE's application note tells them.
constexpr std::string_view kEndSignature = "PK\5\6";
constexpr std::string_view kLocatorSignature = "PK\6\7";
constexpr std::string_view kEnd64Signature = "PK\6\6";
constexpr std::size_t kEndSize = 22;
constexpr std::size_t kEndBytes = 12;
constexpr std::size_t kLocatorSize = 20;
constexpr std::size_t kLocatorOffset = 8;
constexpr std::size_t kEnd64Bytes = 40;
constexpr std::size_t kLongestComment = std::numeric_limits<std::uint16_t>::max();

// What is read next of a file, whose own position stays.
struct FilePlace {
    std::size_t Read(std::span<std::uint8_t> bytes)
    {
        const ssize_t came =
            pread(descriptor, bytes.data(), bytes.size(), static_cast<off_t>(offset));
        const std::size_t count = came > 0 ? static_cast<std::size_t>(came) : 0;
        offset += count;
        return count;
    }

    int descriptor;
    std::uint64_t offset;
};

// The bytes from the offset on, those behind the end of the file left out.
std::vector<std::uint8_t> ReadAt(int descriptor, std::uint64_t offset, std::size_t size)
{
    std::vector<std::uint8_t> bytes(size);
    FilePlace place{descriptor, offset};
    bytes.resize(ReadInPieces(place, bytes, size));
    return bytes;
}

std::uint64_t LittleEndian(std::span<const std::uint8_t> bytes)
{
    std::uint64_t value = 0;
    for (auto byte = bytes.rbegin(); byte != bytes.rend(); ++byte)
        value = value << 8 | *byte;
    return value;
}

bool Begins(std::span<const std::uint8_t> bytes, std::string_view signature)
{
    return std::ranges::equal(signature, bytes.first(signature.size()), {},
                              [](char letter) { return static_cast<std::uint8_t>(letter); });
}

// Of the 64-bit record that the locator points to.
std::uint64_t ClaimedBytes64(int descriptor, std::span<const std::uint8_t> locator)
{
    const std::uint64_t offset = LittleEndian(locator.subspan(kLocatorOffset, 8));
    const std::vector<std::uint8_t> record = ReadAt(descriptor, offset, kEnd64Bytes + 8);
    if (record.size() < kEnd64Bytes + 8 || !Begins(record, kEnd64Signature))
        return 0;
    return LittleEndian(std::span(record).subspan(kEnd64Bytes, 8));
}

} // namespace

std::uint64_t ClaimedDirectoryBytes(int descriptor, std::int64_t fileSize)
{
    const auto tailSize = static_cast<std::size_t>(
        std::min<std::int64_t>(fileSize, kLocatorSize + kEndSize + kLongestComment));
    const std::vector<std::uint8_t> tail =
        ReadAt(descriptor, static_cast<std::uint64_t>(fileSize) - tailSize, tailSize);

    std::uint64_t bytes = 0;
    for (std::size_t i = 0; i + kEndSize <= tail.size(); ++i) {
        const auto record = std::span(tail).subspan(i);
        if (Begins(record, kEndSignature))
            bytes = std::max(bytes, LittleEndian(record.subspan(kEndBytes, 4)));
        else if (Begins(record, kLocatorSignature))
            bytes = std::max(bytes, ClaimedBytes64(descriptor, record));
    }
    return bytes;
}

} // namespace lantern
