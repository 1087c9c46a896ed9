// SPDX-License-Identifier: GPL-3.0-or-later
#include "SongIdentity.h"

#include "NativeFile.h"
#include "Track.h"

#include <QByteArrayView>
#include <QCryptographicHash>

#include <algorithm>
#include <span>
#include <vector>

namespace lantern {
namespace {

constexpr auto kAlgorithm = QCryptographicHash::Blake2b_160;

// A sound of up to all the pieces is read whole.
constexpr std::int64_t kPieceBytes = std::int64_t{32} << 10;
constexpr std::int64_t kPieces = 16;

QByteArrayView ViewOf(std::span<const std::uint8_t> bytes)
{
    return {bytes.data(), static_cast<qsizetype>(bytes.size())};
}

void AddNumber(QCryptographicHash& hash, std::int64_t number)
{
    std::array<std::uint8_t, sizeof(number)> bytes = {};
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<std::uint8_t>(static_cast<std::uint64_t>(number) >> (8 * i));
    hash.addData(ViewOf(bytes));
}

struct PacketDigest {
    QByteArray hash; // empty without any packet that does something
    bool draws = false;
};

PacketDigest DigestOf(const OneBasedArray<CdgPacket>& packets)
{
    constexpr std::size_t kKept = 1 + std::tuple_size_v<decltype(CdgPacket::PacketData)>;
    constexpr std::size_t kBatch = 512 * kKept; // the hash takes many at a time
    PacketDigest digest;
    QCryptographicHash hash(kAlgorithm);
    std::vector<std::uint8_t> kept;
    kept.reserve(kBatch + kKept);
    for (const CdgPacket& packet : packets) {
        if ((packet.Command & kSymbolMask) != kGraphicsCommand)
            continue;
        const auto instruction = static_cast<CdgInstruction>(packet.Instruction & kSymbolMask);
        digest.draws = digest.draws || instruction == CdgInstruction::TileBlock ||
                       instruction == CdgInstruction::TileBlockXor;
        kept.push_back(static_cast<std::uint8_t>(instruction));
        for (const std::uint8_t byte : packet.PacketData)
            kept.push_back(byte & kSymbolMask);
        if (kept.size() >= kBatch) {
            hash.addData(ViewOf(kept));
            kept.clear();
            digest.hash.resize(kSongIdSize);
        }
    }
    if (kept.empty() && digest.hash.isEmpty())
        return digest;
    hash.addData(ViewOf(kept));
    digest.hash = hash.result();
    return digest;
}

// Fills the bytes from there on, as far as there are any.
class Reader {
public:
    explicit Reader(const AudioClip& clip)
        : m_image(clip.Data.Bytes()),
          m_file(clip.Kind == ClipKind::File ? NativeFile::OpenForReading(clip.Path) : std::nullopt)
    {
    }

    std::int64_t Size() const
    {
        return m_file ? m_file->Size() : static_cast<std::int64_t>(m_image.size());
    }

    std::span<const std::uint8_t> Piece(std::int64_t offset, std::int64_t size)
    {
        if (!m_file)
            return m_image.subspan(static_cast<std::size_t>(offset),
                                   static_cast<std::size_t>(size));
        m_piece.resize(static_cast<std::size_t>(size));
        return std::span(m_piece).first(m_file->ReadAt(offset, m_piece));
    }

private:
    std::span<const std::uint8_t> m_image;
    std::optional<NativeFile> m_file;
    std::vector<std::uint8_t> m_piece;
};

} // namespace

QByteArray FingerprintOf(const AudioClip& clip)
{
    Reader reader(clip);
    const std::int64_t size = reader.Size();
    if (size <= 0)
        return {};
    QCryptographicHash hash(kAlgorithm);
    AddNumber(hash, size);
    if (size <= kPieceBytes * kPieces) {
        for (std::int64_t offset = 0; offset < size; offset += kPieceBytes)
            hash.addData(ViewOf(reader.Piece(offset, std::min(kPieceBytes, size - offset))));
    } else {
        for (std::int64_t i = 0; i < kPieces; ++i) {
            const std::int64_t offset = (size - kPieceBytes) * i / (kPieces - 1);
            hash.addData(ViewOf(reader.Piece(offset, kPieceBytes)));
        }
    }
    return hash.result();
}

SongId IdentityOf(const Track& track)
{
    const PacketDigest packets = DigestOf(track.PacketStore);
    if (packets.draws)
        return packets.hash;
    for (const AudioClip& clip : track.ClipList) {
        if (clip.IsFiller)
            continue;
        if (const QByteArray sound = FingerprintOf(clip); !sound.isEmpty())
            return sound;
    }
    return packets.hash;
}

} // namespace lantern
