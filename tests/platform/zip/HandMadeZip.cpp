// SPDX-License-Identifier: GPL-3.0-or-later
#include "HandMadeZip.h"

#include <QByteArray>

#include <ranges>
#include <string_view>

namespace lantern::test {
namespace {

constexpr std::uint16_t kStored = 0;
constexpr std::uint16_t kDeflated = 8;
constexpr std::uint16_t kMadeByUnix = 3 << 8;

void Put(std::string& bytes, std::uint64_t value, int size)
{
    for (int i = 0; i < size; ++i)
        bytes += static_cast<char>(value >> (8 * i));
}

std::uint32_t Crc32(std::string_view bytes)
{
    std::uint32_t crc = 0xFFFFFFFF;
    for (const char byte : bytes) {
        crc ^= static_cast<std::uint8_t>(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ ((crc & 1) != 0 ? 0xEDB88320 : 0);
    }
    return ~crc;
}

// The compressed bytes without what Qt (the size) and zlib (header and checksum) put around them.
std::string Deflated(const std::string& bytes)
{
    if (bytes.empty()) // for which Qt leaves out everything
        return {3, 0};
    constexpr qsizetype kBefore = 4 + 2;
    constexpr qsizetype kBehind = 4;
    const QByteArray compressed = qCompress(QByteArray::fromStdString(bytes), 9);
    return compressed.sliced(kBefore, compressed.size() - kBefore - kBehind).toStdString();
}

// What the member's own header and the directory have in common.
std::string Description(const HandMadeMember& member, std::size_t storedSize)
{
    std::string bytes;
    Put(bytes, 20, 2); // the version that reads it
    Put(bytes, member.flags, 2);
    Put(bytes, member.method.value_or(member.isDeflated ? kDeflated : kStored), 2);
    Put(bytes, 0, 4); // its time
    Put(bytes, member.checksum.value_or(Crc32(member.contents)), 4);
    Put(bytes, member.storedSize.value_or(static_cast<std::uint32_t>(storedSize)), 4);
    Put(bytes, member.size.value_or(static_cast<std::uint32_t>(member.contents.size())), 4);
    Put(bytes, static_cast<std::uint32_t>(member.name.size()), 2);
    Put(bytes, 0, 2); // extra fields
    return bytes;
}

std::string DirectoryEntry(const HandMadeMember& member, std::size_t storedSize, std::size_t offset)
{
    std::string bytes = "PK\x01\x02";
    Put(bytes, (member.isMadeByUnix ? kMadeByUnix : 0) | 30, 2);
    bytes += Description(member, storedSize);
    Put(bytes, 0, 2 + 2 + 2); // comment, disk, kind
    Put(bytes, member.unixMode << 16, 4);
    Put(bytes, member.offset.value_or(static_cast<std::uint32_t>(offset)), 4);
    return bytes + member.name;
}

} // namespace

std::string HandMadeZip(const std::vector<HandMadeMember>& members)
{
    std::string archive;
    std::vector<std::string> entries;
    for (const HandMadeMember& member : std::views::reverse(members)) {
        const std::string stored = member.isDeflated ? Deflated(member.contents) : member.contents;
        entries.push_back(DirectoryEntry(member, stored.size(), archive.size()));
        archive += "PK\x03\x04" + Description(member, stored.size()) + member.name + stored;
    }
    std::string directory;
    for (const std::string& entry : std::views::reverse(entries))
        directory += entry;
    std::string end = "PK\x05\x06";
    Put(end, 0, 2 + 2); // disks
    Put(end, static_cast<std::uint32_t>(members.size()), 2);
    Put(end, static_cast<std::uint32_t>(members.size()), 2);
    Put(end, static_cast<std::uint32_t>(directory.size()), 4);
    Put(end, static_cast<std::uint32_t>(archive.size()), 4);
    Put(end, 0, 2); // comment
    return archive + directory + end;
}

} // namespace lantern::test
