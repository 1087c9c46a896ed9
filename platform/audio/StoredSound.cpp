// SPDX-License-Identifier: GPL-3.0-or-later
#include "StoredSound.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace lantern {

StoredSound::StoredSound(OpenedSound sound, const PcmLimits& limits)
    : m_sound(std::move(sound)), m_sampleRate(m_sound.stream->SampleRate()),
      m_store(m_sound.stream->Kind(), m_sampleRate, limits),
      m_advance(*m_sound.bytes, *m_sound.limit, m_sound.stream->Kind(), m_sampleRate),
      m_thread([this] { DecodeToEnd(); })
{
}

StoredSound::~StoredSound()
{
    m_sound.limit->Stop();
    m_thread.join();
}

std::int64_t StoredSound::FrameCount() const
{
    const bool ended = DecodedToEnd();
    const std::int64_t decoded = m_store.PublishedFrames();
    return ended ? decoded : std::max(decoded, m_expectedFrames);
}

void StoredSound::Release()
{
    m_sound.limit->Stop();
    m_sound.bytes->Release();
}

void StoredSound::DecodeToEnd()
{
    DecodedStream& stream = *m_sound.stream;
    for (auto block = stream.NextBlock(); !block.empty(); block = stream.NextBlock()) {
        if (!m_store.Append(block))
            break;
        m_advance.Work(m_store.PublishedFrames());
    }
    m_ended.store(true, std::memory_order_release);
    m_advance.Finish();
    m_sound.bytes->Release();
}

SoundDecoder::Chunk StoredSound::Read(std::int64_t firstFrame, std::span<float> stereo)
{
    const std::int64_t first = std::max<std::int64_t>(0, firstFrame);
    const auto wanted =
        static_cast<int>(std::min<std::size_t>(stereo.size() / 2, std::numeric_limits<int>::max()));
    m_advance.Follow(first);
    // Asked in this order, the end can't come between: once decoded, the count is final.
    const bool ended = DecodedToEnd();
    const std::int64_t decoded = m_store.PublishedFrames();
    Chunk chunk;
    chunk.frames = m_store.Read(first, stereo);
    chunk.atEnd = ended && first + chunk.frames >= decoded;
    if (chunk.frames < wanted && !ended) {
        const std::int64_t next = first + chunk.frames;
        const auto rest = stereo.subspan(static_cast<std::size_t>(chunk.frames) * 2);
        const AdvanceDecoder::Part part = m_advance.Read(next, rest);
        chunk.frames += part.frames;
        chunk.atEnd = part.atEnd;
    }
    chunk.notYet = chunk.frames < wanted && !chunk.atEnd;
    return chunk;
}

} // namespace lantern
