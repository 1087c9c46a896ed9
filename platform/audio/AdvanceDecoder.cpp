// SPDX-License-Identifier: GPL-3.0-or-later
#include "AdvanceDecoder.h"

#include <algorithm>
#include <utility>

namespace lantern {
namespace {

// What the decode from the start reaches in a moment is waited for.
constexpr int kNearMs = 5000;
// A change of the key is led in with what precedes the place.
constexpr int kBeforeMs = 1000;
constexpr int kAheadMs = 5000;

} // namespace

AdvanceDecoder::Part AdvanceDecoder::Read(std::int64_t firstFrame, std::span<float> stereo)
{
    const std::unique_lock lock(m_mutex, std::try_to_lock);
    if (!lock || !m_stretch || firstFrame < m_stretch->firstFrame)
        return {};
    const std::int64_t end = m_stretch->endFrame.load(std::memory_order_acquire);
    const int frames = m_stretch->store.Read(firstFrame - m_stretch->firstFrame, stereo);
    return {frames, end >= 0 && firstFrame + frames >= end};
}

void AdvanceDecoder::Work(std::int64_t decodedFrames)
{
    const std::int64_t read = m_readFrame.load(std::memory_order_relaxed);
    if (read < decodedFrames)
        return;
    const bool holds = m_stretch && read >= m_stretch->firstFrame &&
                       read <= m_stretch->NextFrame() + FramesIn(kNearMs);
    if (!holds) {
        const bool isNear = read < decodedFrames + FramesIn(kNearMs);
        if (isNear || read >= m_impossibleFrom)
            return;
        if (!Begin(read - FramesIn(kBeforeMs))) {
            m_impossibleFrom = read; // such as behind the end; a place before may be possible
            return;
        }
    }
    while (!m_stretch->ended && m_stretch->NextFrame() < read + FramesIn(kAheadMs))
        m_stretch->DecodeBlock();
}

bool AdvanceDecoder::Begin(std::int64_t frame)
{
    auto stretch = std::make_unique<Stretch>(m_kind, m_sampleRate);
    stretch->firstFrame = frame;
    stretch->stream = DecodedStream::OpenAt(m_bytes, m_limit, frame);
    if (!stretch->stream || stretch->stream->Kind() != m_kind ||
        stretch->stream->SampleRate() != m_sampleRate)
        return false;
    Exchange(std::move(stretch));
    return true;
}

void AdvanceDecoder::Exchange(std::unique_ptr<Stretch> stretch)
{
    const std::scoped_lock lock(m_mutex);
    m_stretch.swap(stretch); // the former one ends without the lock
}

void AdvanceDecoder::Stretch::DecodeBlock()
{
    const auto block = stream->NextBlock();
    if (!block.empty() && store.Append(block))
        return;
    ended = true;
    if (block.empty() && !stream->Container().LimitReached())
        endFrame.store(NextFrame(), std::memory_order_release);
}

} // namespace lantern
