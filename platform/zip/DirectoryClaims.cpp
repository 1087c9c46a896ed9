// SPDX-License-Identifier: GPL-3.0-or-later
#include "DirectoryClaims.h"

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
constexpr std::size_t kEndEntries = 10;
constexpr std::size_t kEndBytes = 12;
constexpr std::size_t kLocatorSize = 20;
constexpr std::size_t kLocatorOffset = 8;
constexpr std::size_t kEnd64Size = 56;
constexpr std::size_t kEnd64Entries = 32;
constexpr std::size_t kEnd64Bytes = 40;
constexpr std::size_t kLongestComment = std::numeric_limits<std::uint16_t>::max();

std::vector<std::uint8_t> ReadAt(int descriptor, std::uint64_t offset, std::size_t size)
{
    std::vector<std::uint8_t> bytes(size);
    std::size_t filled = 0;
    while (filled < size) {
        const ssize_t came = pread(descriptor, bytes.data() + filled, size - filled,
                                   static_cast<off_t>(offset + filled));
        if (came <= 0)
            break;
        filled += static_cast<std::size_t>(came);
    }
    bytes.resize(filled);
    return bytes;
}

// 0 beyond the end.
std::uint64_t LittleEndian(std::span<const std::uint8_t> bytes, std::size_t offset,
                           std::size_t size)
{
    std::uint64_t value = 0;
    for (std::size_t i = size; i-- > 0;)
        value = value << 8 | (offset + i < bytes.size() ? bytes[offset + i] : 0u);
    return value;
}

bool Begins(std::span<const std::uint8_t> bytes, std::string_view signature)
{
    return bytes.size() >= signature.size() &&
           std::equal(signature.begin(), signature.end(), bytes.begin(),
                      [](char a, std::uint8_t b) { return static_cast<std::uint8_t>(a) == b; });
}

DirectoryClaims Larger(DirectoryClaims a, DirectoryClaims b)
{
    return {std::max(a.entries, b.entries), std::max(a.bytes, b.bytes)};
}

// Of the 64-bit record that the locator points to.
DirectoryClaims Claims64(int descriptor, std::span<const std::uint8_t> locator,
                         std::int64_t fileSize)
{
    const std::uint64_t offset = LittleEndian(locator, kLocatorOffset, 8);
    if (offset >= static_cast<std::uint64_t>(fileSize))
        return {};
    const std::vector<std::uint8_t> record = ReadAt(descriptor, offset, kEnd64Size);
    if (!Begins(record, kEnd64Signature))
        return {};
    return {LittleEndian(record, kEnd64Entries, 8), LittleEndian(record, kEnd64Bytes, 8)};
}

} // namespace

DirectoryClaims ReadDirectoryClaims(int descriptor, std::int64_t fileSize)
{
    const auto tailSize = static_cast<std::size_t>(
        std::min<std::int64_t>(fileSize, kLocatorSize + kEndSize + kLongestComment));
    const std::vector<std::uint8_t> tail =
        ReadAt(descriptor, static_cast<std::uint64_t>(fileSize) - tailSize, tailSize);

    DirectoryClaims claims;
    for (std::size_t i = 0; i + kEndSize <= tail.size(); ++i) {
        const auto record = std::span(tail).subspan(i);
        if (Begins(record, kEndSignature))
            claims = Larger(
                claims, {LittleEndian(record, kEndEntries, 2), LittleEndian(record, kEndBytes, 4)});
        else if (Begins(record, kLocatorSignature))
            claims = Larger(claims, Claims64(descriptor, record, fileSize));
    }
    return claims;
}

} // namespace lantern
