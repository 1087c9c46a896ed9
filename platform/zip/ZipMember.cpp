// SPDX-License-Identifier: GPL-3.0-or-later
#include "ZipMember.h"

#include "MemberDecoder.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <zlib.h>

namespace lantern {
namespace {

constexpr std::size_t kPieceBytes = std::size_t{4} << 20;
constexpr std::uint16_t kEncrypted = 1;

// What would become this large, and this many times as large as it is, is made to fill memory.
// Sound and packets do not compress like that.
constexpr std::uint64_t kLargeBytes = std::uint64_t{64} << 20;
constexpr std::uint64_t kLikelyRatio = 20;

// Bytes whose number is not known beforehand. They come in pieces, so that growing never copies;
// joining them frees each piece as soon as it is copied.
class ByteCollector {
public:
    // Up to so many bytes more. False on a failure of the decoder.
    bool ReadPiece(MemberDecoder& decoder, std::uint64_t wanted)
    {
        std::vector<std::uint8_t> piece(std::min<std::uint64_t>(wanted, kPieceBytes));
        const std::int64_t came = decoder.Read(piece);
        if (came < 0)
            return false;
        m_atEnd = came == 0;
        piece.resize(static_cast<std::size_t>(came));
        m_size += piece.size();
        m_checksum = crc32(m_checksum, piece.data(), static_cast<uInt>(piece.size()));
        m_pieces.push_back(std::move(piece));
        return true;
    }
    bool AtEnd() const { return m_atEnd; }
    std::size_t Size() const { return m_size; }
    std::uint32_t Checksum() const { return static_cast<std::uint32_t>(m_checksum); }

    std::vector<std::uint8_t> Joined()
    {
        std::vector<std::uint8_t> bytes;
        bytes.reserve(m_size);
        for (std::vector<std::uint8_t>& piece : m_pieces) {
            bytes.insert(bytes.end(), piece.begin(), piece.end());
            std::vector<std::uint8_t>().swap(piece);
        }
        return bytes;
    }

private:
    std::vector<std::vector<std::uint8_t>> m_pieces;
    std::size_t m_size = 0;
    uLong m_checksum = crc32(0, nullptr, 0);
    bool m_atEnd = false;
};

ZipMember Failure(const QString& reason)
{
    return {.bytes = {}, .failure = reason};
}

ZipMember Damaged(const QString& how)
{
    const QString damaged = QStringLiteral("damaged");
    return Failure(how.isEmpty() ? damaged : damaged + QStringLiteral(": ") + how);
}

bool IsBomb(const ZipEntry& entry)
{
    return entry.size > kLargeBytes && entry.size / kLikelyRatio > entry.storedSize;
}

} // namespace

ZipMember ReadZipMember(const ArchiveBytes& archive, const ZipEntry& entry,
                        std::int64_t largestSize)
{
    const auto largest = static_cast<std::uint64_t>(largestSize);
    if ((entry.flags & kEncrypted) != 0)
        return Failure(QStringLiteral("encrypted"));
    if (entry.size > largest || entry.storedSize > largest)
        return Failure(QStringLiteral("larger than %1 bytes").arg(largestSize));
    if (IsBomb(entry))
        return Failure(QStringLiteral("no song: %1 bytes that would become %2")
                           .arg(entry.storedSize)
                           .arg(entry.size));
    const std::uint64_t dataOffset = OffsetOfData(archive, entry);
    if (dataOffset == 0)
        return Damaged(QStringLiteral("it is not where the directory says"));
    if (dataOffset > archive.Size() || entry.storedSize > archive.Size() - dataOffset)
        return Damaged(QStringLiteral("it is cut off"));
    const std::unique_ptr<MemberDecoder> decoder = MakeMemberDecoder(archive, entry, dataOffset);
    if (!decoder)
        return Failure(QStringLiteral("compressed by an unknown method"));

    ByteCollector collector;
    while (!collector.AtEnd() && collector.Size() <= entry.size) {
        // One more than there should be tells a member that says too little.
        if (!collector.ReadPiece(*decoder, entry.size - collector.Size() + 1))
            return Damaged(decoder->FailureText());
    }
    if (collector.Size() != entry.size)
        return Failure(QStringLiteral("wrong size"));
    if (collector.Checksum() != entry.checksum)
        return Failure(QStringLiteral("wrong checksum"));
    return {.bytes = collector.Joined(), .failure = {}};
}

} // namespace lantern
