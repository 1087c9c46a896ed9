// SPDX-License-Identifier: GPL-3.0-or-later
#include "MediaLoader.h"

#include "DiscSector.h"
#include "Rounding.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace lantern {
namespace {

// The bytes of a stretch that are there, fewer or none beyond the end.
template <typename Byte>
std::span<Byte> Stretch(std::span<Byte> bytes, std::size_t offset, std::size_t size)
{
    const std::size_t start = std::min(offset, bytes.size());
    return bytes.subspan(start, std::min(size, bytes.size() - start));
}

// Copies the bytes that exist on both sides.
void Copy(std::span<const std::uint8_t> from, std::span<std::uint8_t> to)
{
    const std::size_t size = std::min(from.size(), to.size());
    if (size > 0)
        std::memcpy(to.data(), from.data(), size);
}

void SplitSectors(std::span<const std::uint8_t> sectors, std::size_t count,
                  std::span<std::uint8_t> audio, std::span<std::uint8_t> packets)
{
    for (std::size_t i = 0; i < count; ++i) {
        const auto sector = Stretch(sectors, i * DiscSector::kBytes, DiscSector::kBytes);
        Copy(Stretch(sector, 0, DiscSector::kAudioBytes),
             Stretch(audio, i * DiscSector::kAudioBytes, DiscSector::kAudioBytes));
        Copy(Stretch(sector, DiscSector::kAudioBytes, DiscSector::kPacketBytes),
             Stretch(packets, i * DiscSector::kPacketBytes, DiscSector::kPacketBytes));
    }
}

std::span<std::uint8_t> BytesOf(std::span<CdgPacket> packets)
{
    return {reinterpret_cast<std::uint8_t*>(packets.data()), packets.size_bytes()};
}

} // namespace

// A last sector of which more than half is there counts as a whole one; of a smaller piece nothing
// is copied, but the audio still has its length.
void MediaLoader::AddBINFile(const QString& path)
{
    const std::size_t size = ReadBinaryFile(path);
    if (size == 0)
        return;
    const double sectors = static_cast<double>(size) / DiscSector::kBytes;
    AudioClip clip;
    clip.Kind = ClipKind::Data;
    clip.LengthMs = RoundToEven(sectors / DiscSector::kPerSecond * 1000);
    m_track.ClipList.Add(std::move(clip));
    const std::size_t headerSize =
        WriteWavHeader(m_track.ClipCount(), RoundToEven(sectors * DiscSector::kAudioBytes));

    const std::int32_t lastSector = RoundToEven(sectors - 1); // -1 for none
    const std::size_t count = lastSector < 0 ? 0 : static_cast<std::size_t>(lastSector) + 1;
    const std::span<CdgPacket> packets = ExtendPackets(count * DiscSector::kPackets);
    SplitSectors(FileBuffer().first(size), count,
                 m_track.ClipList[m_track.ClipCount()].Data.Bytes().subspan(headerSize),
                 BytesOf(packets));
}

} // namespace lantern
