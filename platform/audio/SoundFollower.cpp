// SPDX-License-Identifier: GPL-3.0-or-later
#include "SoundFollower.h"

#include <algorithm>
#include <utility>

namespace lantern {
namespace {

// Between two looks at what is wanted.
constexpr int kBlocksAtOnce = 32;

} // namespace

bool SoundFollower::Begin(std::int64_t frame)
{
    m_pcm.clear();
    m_handedOut = 0;
    m_fromStart = false;
    m_proven = frame < m_index.Frames();
    m_stream.reset();
    if (!m_proven) {
        m_nextFrame = frame;
        return Adopt(DecodedStream::OpenAt(m_bytes, m_limit, frame));
    }
    m_piece = m_index.PieceAt(frame);
    std::size_t stamped = m_piece;
    while (stamped > 0 && !m_index.Stamp(stamped))
        --stamped;
    m_nextFrame = m_index.FirstFrame(stamped);
    if (stamped > 0 &&
        Adopt(DecodedStream::OpenAt(m_bytes, m_limit, m_nextFrame, *m_index.Stamp(stamped))))
        return true;
    FromStart();
    return true;
}

// A file may have become another one.
bool SoundFollower::Adopt(std::unique_ptr<DecodedStream> stream)
{
    const bool fits =
        stream && stream->Kind() == m_index.Kind() && stream->SampleRate() == m_index.SampleRate();
    m_stream = fits ? std::move(stream) : nullptr;
    return fits;
}

std::int64_t SoundFollower::NextFrame() const
{
    const std::size_t waiting = m_pcm.size() - m_handedOut;
    return m_proven
               ? m_index.FirstFrame(m_piece)
               : m_nextFrame - static_cast<std::int64_t>(waiting / StereoFrameSize(m_index.Kind()));
}

SoundFollower::Step SoundFollower::Next()
{
    m_pcm.erase(m_pcm.begin(), m_pcm.begin() + static_cast<std::ptrdiff_t>(m_handedOut));
    m_handedOut = 0;
    if (!m_stream)
        return {Outcome::End, {}};
    if (!m_proven)
        return NextUnproven();
    if (m_piece >= m_index.KnownPieces())
        return {Outcome::Waits, {}};

    const std::int64_t frames = m_index.FirstFrame(m_piece + 1) - m_index.FirstFrame(m_piece);
    const std::size_t size = static_cast<std::size_t>(frames) * StereoFrameSize(m_index.Kind());
    for (int i = 0; i < kBlocksAtOnce && m_pcm.size() < size; ++i)
        if (!Take(m_stream->NextBlock()))
            return FromStart();
    if (m_pcm.size() < size)
        return {};
    const auto piece = std::span(m_pcm).first(size);
    if (!m_fromStart && !m_index.Proves(m_piece, piece))
        return FromStart();
    ++m_piece;
    m_handedOut = size;
    return {Outcome::Frames, piece};
}

// As much as a second of it, however long a block is.
SoundFollower::Step SoundFollower::NextUnproven()
{
    const std::size_t frameSize = StereoFrameSize(m_index.Kind());
    if (m_pcm.empty()) {
        const auto block = m_stream->NextBlock();
        m_pcm.assign(block.begin(), block.end());
        m_nextFrame += static_cast<std::int64_t>(block.size() / frameSize);
    }
    if (m_pcm.empty())
        return {Outcome::End, {}};
    m_handedOut =
        std::min(m_pcm.size(), static_cast<std::size_t>(m_index.SampleRate()) * frameSize);
    return {Outcome::Frames, std::span(m_pcm).first(m_handedOut)};
}

// What is of the piece or follows it. False if the stream has ended.
bool SoundFollower::Take(std::span<const std::byte> block)
{
    const std::size_t frameSize = StereoFrameSize(m_index.Kind());
    const std::int64_t before = m_index.FirstFrame(m_piece) - m_nextFrame;
    const std::size_t skipped =
        m_pcm.empty() && before > 0
            ? std::min(block.size(), static_cast<std::size_t>(before) * frameSize)
            : 0;
    m_pcm.insert(m_pcm.end(), block.begin() + static_cast<std::ptrdiff_t>(skipped), block.end());
    m_nextFrame += static_cast<std::int64_t>(block.size() / frameSize);
    return !block.empty();
}

// Where that has been done already, the bytes are no longer what they were, and what is there is
// all there is.
SoundFollower::Step SoundFollower::FromStart()
{
    if (!std::exchange(m_fromStart, true)) {
        m_pcm.clear();
        m_nextFrame = 0;
        Adopt(DecodedStream::Open(m_bytes, m_limit));
        return {};
    }
    m_handedOut = m_pcm.size();
    return {m_pcm.empty() ? Outcome::End : Outcome::Frames, m_pcm};
}

} // namespace lantern
