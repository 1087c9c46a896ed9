// SPDX-License-Identifier: GPL-3.0-or-later
#include "SoundIndex.h"

extern "C" {
#include <libavutil/crc.h>
}

#include <algorithm>
#include <iterator>

namespace lantern {
namespace {

// A piece ends with the block that makes it so long; or in the midst of one, where a file that is
// damaged comes in blocks of any length.
constexpr int kPieceSeconds = 1;
constexpr int kLongestPieceSeconds = 4;
// So that the first of all is there at once.
constexpr int kFirstPiecePart = 10;

std::uint32_t Checked(std::uint32_t check, std::span<const std::byte> bytes)
{
    static const AVCRC* const table = av_crc_get_table(AV_CRC_32_IEEE);
    return av_crc(table, check, reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}

} // namespace

SoundIndex::SoundIndex(SampleKind kind, int sampleRate) : m_kind(kind), m_sampleRate(sampleRate)
{
}

void SoundIndex::Note(std::span<const std::byte> block, std::optional<std::int64_t> stamp)
{
    const std::size_t frameSize = StereoFrameSize(m_kind);
    const std::int64_t longest = std::int64_t{kLongestPieceSeconds} * m_sampleRate;
    const std::int64_t enough =
        std::int64_t{kPieceSeconds} * m_sampleRate / (m_places.size() == 1 ? kFirstPiecePart : 1);
    if (m_frames - m_places.back().frame >= enough)
        m_places.push_back({m_frames, stamp, 0});
    while (!block.empty()) {
        const std::int64_t room = m_places.back().frame + longest - m_frames;
        const auto part =
            block.first(std::min(block.size(), static_cast<std::size_t>(room) * frameSize));
        m_places.back().check = Checked(m_places.back().check, part);
        m_frames += static_cast<std::int64_t>(part.size() / frameSize);
        block = block.subspan(part.size());
        if (!block.empty())
            m_places.push_back({m_frames, std::nullopt, 0});
    }
}

void SoundIndex::Finish()
{
    m_places.push_back({m_frames, std::nullopt, 0});
}

std::size_t SoundIndex::PieceAt(std::int64_t frame) const
{
    const auto after = std::ranges::upper_bound(m_places, frame, {}, &Place::frame);
    return static_cast<std::size_t>(
        std::max<std::ptrdiff_t>(std::distance(m_places.begin(), after) - 1, 0));
}

bool SoundIndex::Proves(std::size_t piece, std::span<const std::byte> frames) const
{
    return Checked(0, frames) == m_places[piece].check;
}

} // namespace lantern
