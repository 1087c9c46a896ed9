// SPDX-License-Identifier: GPL-3.0-or-later
#include "PcmWindow.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace lantern {

PcmWindow::PcmWindow(SampleKind kind, std::int64_t capacityFrames)
    : m_kind(kind), m_frameSize(StereoFrameSize(kind)),
      m_memory(static_cast<std::size_t>(capacityFrames) * m_frameSize),
      m_capacityFrames(static_cast<std::int64_t>(m_memory.Size() / m_frameSize))
{
    if (m_capacityFrames == 0)
        throw std::bad_alloc();
}

void PcmWindow::Publish(const Range& range)
{
    const std::scoped_lock lock(m_mutex);
    m_range = range;
}

void PcmWindow::Restart(std::int64_t frame)
{
    Publish({frame, frame, false});
}

void PcmWindow::Append(std::span<const std::byte> frames)
{
    const auto count = static_cast<std::int64_t>(frames.size() / m_frameSize);
    // What gives way goes first, then nobody reads where the new frames are put.
    Range range = m_range;
    range.first = std::max(range.first, range.next + count - m_capacityFrames);
    if (range.first != m_range.first)
        Publish(range);
    CopyIn(range.next, frames);
    range.next += count;
    Publish(range);
}

void PcmWindow::SetEnd(bool ends)
{
    if (m_range.ends != ends)
        Publish({m_range.first, m_range.next, ends});
}

void PcmWindow::CopyIn(std::int64_t frame, std::span<const std::byte> frames)
{
    const std::size_t size = static_cast<std::size_t>(m_capacityFrames) * m_frameSize;
    const std::size_t offset = static_cast<std::size_t>(frame % m_capacityFrames) * m_frameSize;
    const std::size_t atOffset = std::min(frames.size(), size - offset);
    std::memcpy(m_memory.Data() + offset, frames.data(), atOffset);
    std::memcpy(m_memory.Data(), frames.data() + atOffset, frames.size() - atOffset);
}

PcmWindow::Part PcmWindow::Read(std::int64_t firstFrame, std::span<float> stereo) const
{
    const std::unique_lock lock(m_mutex, std::try_to_lock);
    if (!lock || firstFrame < m_range.first)
        return {};
    const std::int64_t wanted = std::min<std::int64_t>(static_cast<std::int64_t>(stereo.size() / 2),
                                                       m_range.next - firstFrame);
    const auto frames = static_cast<std::size_t>(std::max<std::int64_t>(wanted, 0));
    for (std::size_t done = 0; done != frames;) {
        const auto slot = static_cast<std::size_t>((firstFrame + static_cast<std::int64_t>(done)) %
                                                   m_capacityFrames);
        const std::size_t count =
            std::min(frames - done, static_cast<std::size_t>(m_capacityFrames) - slot);
        ToFloats(m_kind, {m_memory.Data() + slot * m_frameSize, count * m_frameSize},
                 stereo.data() + 2 * done);
        done += count;
    }
    const std::int64_t next = firstFrame + static_cast<std::int64_t>(frames);
    return {static_cast<int>(frames), m_range.ends && next >= m_range.next};
}

} // namespace lantern
