// SPDX-License-Identifier: GPL-3.0-or-later
#include "PcmStore.h"

#include "TemporaryFile.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

namespace lantern {
namespace {

constexpr std::int64_t kSecondsInADay = std::int64_t{24} * 60 * 60;

} // namespace

std::int64_t PcmStore::LongestSound(SampleKind kind, int sampleRate, const PcmLimits& limits)
{
    return std::min(static_cast<std::int64_t>(limits.largestSize / StereoFrameSize(kind)),
                    kSecondsInADay * sampleRate);
}

PcmStore::PcmStore(SampleKind kind, int sampleRate, const PcmLimits& limits)
    : m_kind(kind), m_largestSize(static_cast<std::size_t>(LongestSound(kind, sampleRate, limits)) *
                                  StereoFrameSize(kind)),
      m_bytesToLeaveFree(limits.bytesToLeaveFree), m_memory(limits.memorySize)
{
}

PcmStore::~PcmStore()
{
    if (m_file != kNoFile)
        CloseTemporaryFile(m_file);
}

bool PcmStore::Append(std::span<const std::byte> frames)
{
    const bool fits = frames.size() <= m_largestSize - m_size;
    const auto taken = fits ? frames : frames.first(m_largestSize - m_size);

    const std::size_t inMemory = std::min(taken.size(), MemoryFrom(m_size));
    if (inMemory != 0)
        std::memcpy(m_memory.Data() + m_size, taken.data(), inMemory);
    m_size += inMemory;
    const bool stored = inMemory == taken.size() || AppendToFile(taken.subspan(inMemory));
    if (!stored || !fits)
        m_trouble.store(stored ? EFBIG : ENOSPC, std::memory_order_relaxed);
    m_published.store(static_cast<std::int64_t>(m_size / StereoFrameSize(m_kind)),
                      std::memory_order_release);
    return fits && stored;
}

// Bytes of the memory from this offset on.
std::size_t PcmStore::MemoryFrom(std::size_t offset) const
{
    return m_memory.Size() - std::min(offset, m_memory.Size());
}

bool PcmStore::AppendToFile(std::span<const std::byte> bytes)
{
    if (m_file == kNoFile)
        m_file = OpenTemporaryFile();
    if (!HasRoom(m_file, m_bytesToLeaveFree))
        return false;
    const std::size_t written = WriteTemporaryFile(m_file, m_size - m_memory.Size(), bytes);
    // Only whole frames count.
    m_size += written - (m_size + written) % StereoFrameSize(m_kind);
    return written == bytes.size();
}

int PcmStore::Read(std::int64_t firstFrame, std::span<float> stereo) const
{
    if (firstFrame < 0)
        return 0;
    const std::size_t frameSize = StereoFrameSize(m_kind);
    const auto wanted = static_cast<std::int64_t>(stereo.size() / 2);
    const auto frames = static_cast<std::size_t>(
        std::clamp<std::int64_t>(PublishedFrames() - firstFrame, 0, wanted));

    // By way of the stack, in pieces of whole frames.
    std::array<std::byte, 4096> piece;
    const std::size_t framesInPiece = piece.size() / frameSize;
    for (std::size_t done = 0; done != frames;) {
        const std::size_t count = std::min(framesInPiece, frames - done);
        const auto bytes = std::span(piece).first(count * frameSize);
        if (!CopyBytes((static_cast<std::size_t>(firstFrame) + done) * frameSize, bytes))
            return static_cast<int>(done);
        ToFloats(m_kind, bytes, stereo.data() + 2 * done);
        done += count;
    }
    return static_cast<int>(frames);
}

bool PcmStore::CopyBytes(std::size_t offset, std::span<std::byte> out) const
{
    const std::size_t inMemory = std::min(out.size(), MemoryFrom(offset));
    if (inMemory != 0)
        std::memcpy(out.data(), m_memory.Data() + offset, inMemory);
    const auto inFile = out.subspan(inMemory);
    return inFile.empty() ||
           ReadTemporaryFile(m_file, offset + inMemory - m_memory.Size(), inFile) == inFile.size();
}

} // namespace lantern
