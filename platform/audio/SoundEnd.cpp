// SPDX-License-Identifier: GPL-3.0-or-later
#include "SoundEnd.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace lantern {
namespace {

std::string Piece(const ByteSource& bytes, std::int64_t offset, std::size_t size)
{
    std::vector<std::uint8_t> piece(size);
    std::size_t filled = 0;
    while (filled < size) {
        const std::size_t came = bytes.ReadAt(offset + static_cast<std::int64_t>(filled),
                                              std::span(piece).subspan(filled));
        if (came == 0)
            break;
        filled += came;
    }
    return {piece.begin(), piece.begin() + static_cast<std::ptrdiff_t>(filled)};
}

std::uint32_t BigEndian(std::string_view text)
{
    std::uint32_t number = 0;
    for (const char byte : text.substr(0, 4))
        number = number << 8U | static_cast<std::uint8_t>(byte);
    return number;
}

// Behind the tags before it, whose size stands in four times seven bits.
std::int64_t OffsetOfFirstFrame(const ByteSource& bytes)
{
    constexpr std::size_t kTagHeader = 10;
    const std::string head = Piece(bytes, 0, kTagHeader);
    if (head.size() < kTagHeader || !head.starts_with("ID3"))
        return 0;
    std::int64_t size = 0;
    for (std::size_t i = 6; i < kTagHeader; ++i)
        size = size << 7 | (static_cast<std::uint8_t>(head[i]) & 0x7F);
    return size + static_cast<std::int64_t>(kTagHeader);
}

// The first frame of an mp3 may hold no sound but the number of bytes of all frames.
bool IsShorterThanNoted(const ByteSource& bytes)
{
    constexpr std::size_t kLongestFrame = 1500;
    constexpr std::uint32_t kHasFrames = 1;
    constexpr std::uint32_t kHasBytes = 2;
    // Some encoders leave their own header out of what they count, or the last frame.
    constexpr std::int64_t kAllowedBytes = 4096;
    const std::int64_t offset = OffsetOfFirstFrame(bytes);
    const std::string frame = Piece(bytes, offset, kLongestFrame);
    const std::string_view begin = std::string_view(frame).substr(0, 64);
    const std::size_t mark = std::min(begin.find("Xing"), begin.find("Info"));
    if (mark == begin.npos || frame.size() < mark + 16)
        return false;
    const std::string_view header = std::string_view(frame).substr(mark);
    const std::uint32_t flags = BigEndian(header.substr(4));
    if ((flags & kHasBytes) == 0)
        return false;
    const std::uint32_t noted = BigEndian(header.substr((flags & kHasFrames) != 0 ? 12 : 8));
    return noted > bytes.Size() - offset + kAllowedBytes;
}

// Only the last pages matter; each is 65,307 bytes at most.
bool EndsBeforeLastPage(const ByteSource& bytes)
{
    constexpr std::int64_t kTail = 2 * 65307;
    constexpr std::size_t kFlags = 5;
    constexpr std::uint8_t kLastPage = 4;
    const std::int64_t start = std::max<std::int64_t>(0, bytes.Size() - kTail);
    const std::string tail = Piece(bytes, start, static_cast<std::size_t>(bytes.Size() - start));
    const std::size_t page = tail.rfind(std::string_view("OggS\0", 5));
    return page != tail.npos && page + kFlags < tail.size() &&
           (static_cast<std::uint8_t>(tail[page + kFlags]) & kLastPage) == 0;
}

} // namespace

bool LacksItsEnd(const ByteSource& bytes, std::string_view container)
{
    if (container == "mp3")
        return IsShorterThanNoted(bytes);
    return container == "ogg" && EndsBeforeLastPage(bytes);
}

} // namespace lantern
