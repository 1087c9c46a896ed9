// SPDX-License-Identifier: GPL-3.0-or-later
#include "ZipDirectory.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <sys/stat.h>

namespace lantern {
namespace {

using Bytes = std::span<const std::uint8_t>;

// Records of the .ZIP file format, as PKWARE's application note tells them.
constexpr std::string_view kEnd = "PK\5\6";
constexpr std::size_t kEndSize = 22;
constexpr std::string_view kLocator64 = "PK\6\7";
constexpr std::size_t kLocator64Size = 20;
constexpr std::string_view kEnd64 = "PK\6\6";
constexpr std::size_t kEnd64Size = 56;
constexpr std::string_view kDirectoryEntry = "PK\1\2";
constexpr std::size_t kDirectoryEntrySize = 46;
constexpr std::string_view kMember = "PK\3\4";
constexpr std::size_t kMemberSize = 30;

// What is too large for its field stands in a 64-bit record elsewhere.
constexpr std::uint64_t kMark16 = 0xFFFF;
constexpr std::uint64_t kMark32 = 0xFFFFFFFF;
constexpr std::uint64_t kExtraOf64BitSizes = 1;
constexpr std::uint64_t kMadeByUnix = 3;

constexpr std::uint64_t kLargestDirectory = std::uint64_t{16} << 20;
// Behind the end record stand a comment of up to 64 KiB and what a transfer or a disc has added.
constexpr std::size_t kTailSearched = std::size_t{1} << 20;
constexpr int kMostEndsTried = 16;

std::uint64_t Number(Bytes bytes, std::size_t offset, std::size_t size)
{
    return LittleEndian(bytes.subspan(offset, size));
}

bool Begins(Bytes bytes, std::string_view signature)
{
    return bytes.size() >= signature.size() &&
           std::ranges::equal(signature, bytes.first(signature.size()), {},
                              [](char letter) { return static_cast<std::uint8_t>(letter); });
}

bool HasAt(const ArchiveBytes& archive, std::uint64_t offset, std::string_view signature)
{
    return Begins(archive.Piece(offset, signature.size()), signature);
}

// What an end record tells of the directory.
struct End {
    std::uint64_t offset = 0; // of the record; the directory ends here
    std::uint64_t disk = 0;
    std::uint64_t directorySize = 0;
    std::uint64_t directoryOffset = 0; // from the first byte of the archive
};

std::optional<End> ReadEnd64(const ArchiveBytes& archive, std::uint64_t endOffset)
{
    if (endOffset < kLocator64Size + kEnd64Size)
        return std::nullopt;
    const std::uint64_t locatorOffset = endOffset - kLocator64Size;
    const std::vector<std::uint8_t> locator = archive.Piece(locatorOffset, kLocator64Size);
    if (!Begins(locator, kLocator64))
        return std::nullopt;
    // Where something stands before the archive, the offset is too small; then the record may
    // still stand right before its locator.
    for (const std::uint64_t offset : {Number(locator, 8, 8), locatorOffset - kEnd64Size}) {
        const std::vector<std::uint8_t> record = archive.Piece(offset, kEnd64Size);
        if (record.size() == kEnd64Size && Begins(record, kEnd64))
            return End{offset, Number(record, 16, 4), Number(record, 40, 8), Number(record, 48, 8)};
    }
    return std::nullopt;
}

End ReadEnd(const ArchiveBytes& archive, std::uint64_t offset, Bytes record)
{
    const End end = {offset, Number(record, 4, 2), Number(record, 12, 4), Number(record, 16, 4)};
    const bool hasMarks = end.disk == kMark16 || Number(record, 10, 2) == kMark16 ||
                          end.directorySize == kMark32 || end.directoryOffset == kMark32;
    return hasMarks ? ReadEnd64(archive, offset).value_or(end) : end;
}

// Takes the numbers that the entry itself marks as standing here.
void Read64BitSizes(Bytes extra, ZipEntry& entry)
{
    while (extra.size() >= 4) {
        const std::uint64_t id = Number(extra, 0, 2);
        Bytes field = extra.subspan(4);
        field = field.first(std::min<std::size_t>(field.size(), Number(extra, 2, 2)));
        extra = extra.subspan(4 + field.size());
        if (id != kExtraOf64BitSizes)
            continue;
        for (std::uint64_t* number : {&entry.size, &entry.storedSize, &entry.offset}) {
            if (*number == kMark32 && field.size() >= 8) {
                *number = Number(field, 0, 8);
                field = field.subspan(8);
            }
        }
    }
}

// A folder has a slash at its end or says so in its attributes, as a link does.
bool IsPlainFile(const std::string& name, std::uint64_t madeBy, std::uint64_t attributes)
{
    if (name.ends_with('/'))
        return false;
    const std::uint64_t type = madeBy == kMadeByUnix ? (attributes >> 16) & S_IFMT : 0;
    return type == 0 || type == S_IFREG;
}

// The entry at the beginning of the bytes, which are then those behind it.
std::optional<ZipEntry> TakeEntry(Bytes& bytes)
{
    if (bytes.size() < kDirectoryEntrySize || !Begins(bytes, kDirectoryEntry))
        return std::nullopt;
    const std::size_t nameSize = Number(bytes, 28, 2);
    const std::size_t extraSize = Number(bytes, 30, 2);
    const std::size_t whole = kDirectoryEntrySize + nameSize + extraSize + Number(bytes, 32, 2);
    if (bytes.size() < whole)
        return std::nullopt;
    const Bytes name = bytes.subspan(kDirectoryEntrySize, nameSize);
    ZipEntry entry;
    entry.name.assign(name.begin(), name.end());
    entry.flags = static_cast<std::uint16_t>(Number(bytes, 8, 2));
    entry.method = static_cast<std::uint16_t>(Number(bytes, 10, 2));
    entry.checksum = static_cast<std::uint32_t>(Number(bytes, 16, 4));
    entry.storedSize = Number(bytes, 20, 4);
    entry.size = Number(bytes, 24, 4);
    entry.offset = Number(bytes, 42, 4);
    entry.isPlainFile = IsPlainFile(entry.name, Number(bytes, 5, 1), Number(bytes, 38, 4));
    Read64BitSizes(bytes.subspan(kDirectoryEntrySize + nameSize, extraSize), entry);
    bytes = bytes.subspan(whole);
    return entry;
}

ZipDirectory Failure(const QString& reason)
{
    return {.entries = {}, .failure = reason};
}

// With offsets from the first byte of the archive, which is that many bytes into the file.
ZipDirectory ReadEntries(const ArchiveBytes& archive, std::uint64_t offset, std::uint64_t size,
                         std::uint64_t before)
{
    const std::vector<std::uint8_t> records = archive.Piece(offset, static_cast<std::size_t>(size));
    ZipDirectory directory;
    for (Bytes rest = records; !rest.empty();) {
        std::optional<ZipEntry> entry = TakeEntry(rest);
        if (!entry)
            return Failure(QStringLiteral("the directory is damaged"));
        entry->offset += before;
        directory.entries.push_back(std::move(*entry));
    }
    return directory;
}

ZipDirectory ReadDirectory(const ArchiveBytes& archive, const End& end)
{
    if (end.disk != 0)
        return Failure(QStringLiteral("one part of a split archive"));
    if (end.directorySize > kLargestDirectory)
        return Failure(QStringLiteral("the directory is larger than 16 MiB"));
    if (end.directorySize == 0)
        return {};
    // The directory ends where the end record begins, and what stands before the archive moves
    // both. Some archives have something in between: then the offset is right as it stands.
    const std::uint64_t start = end.offset - std::min(end.directorySize, end.offset);
    if (start >= end.directoryOffset && HasAt(archive, start, kDirectoryEntry))
        return ReadEntries(archive, start, end.directorySize, start - end.directoryOffset);
    if (HasAt(archive, end.directoryOffset, kDirectoryEntry))
        return ReadEntries(archive, end.directoryOffset, end.directorySize, 0);
    return Failure(QStringLiteral("the directory is missing"));
}

} // namespace

std::uint64_t LittleEndian(std::span<const std::uint8_t> bytes)
{
    std::uint64_t value = 0;
    for (auto byte = bytes.rbegin(); byte != bytes.rend(); ++byte)
        value = value << 8 | *byte;
    return value;
}

ZipDirectory ReadZipDirectory(const ArchiveBytes& archive)
{
    const std::uint64_t tailOffset =
        archive.Size() - std::min<std::uint64_t>(archive.Size(), kTailSearched);
    const std::vector<std::uint8_t> tail = archive.Piece(tailOffset, kTailSearched);

    // What looks like an end record may be part of a comment. The last that leads to a directory
    // counts.
    ZipDirectory first = Failure(QStringLiteral("Not a zip archive"));
    int tried = 0;
    for (std::size_t i = tail.size(); i-- > 0 && tried < kMostEndsTried;) {
        const Bytes record = Bytes(tail).subspan(i);
        if (record.size() < kEndSize || !Begins(record, kEnd))
            continue;
        ZipDirectory directory = ReadDirectory(archive, ReadEnd(archive, tailOffset + i, record));
        if (directory.failure.isEmpty())
            return directory;
        if (tried++ == 0)
            first = std::move(directory);
    }
    return first;
}

std::uint64_t OffsetOfData(const ArchiveBytes& archive, const ZipEntry& entry)
{
    const std::vector<std::uint8_t> header = archive.Piece(entry.offset, kMemberSize);
    if (header.size() < kMemberSize || !Begins(header, kMember))
        return 0;
    return entry.offset + kMemberSize + Number(header, 26, 2) + Number(header, 28, 2);
}

} // namespace lantern
