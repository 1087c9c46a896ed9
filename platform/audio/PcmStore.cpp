// SPDX-License-Identifier: GPL-3.0-or-later
#include "PcmStore.h"

#include "TemporaryFile.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <sys/mman.h>

namespace lantern {
namespace {

constexpr std::int64_t kSecondsInADay = std::int64_t{24} * 60 * 60;

void ToFloat(SampleKind kind, std::span<const std::byte> samples, float* out)
{
    if (kind == SampleKind::Float) {
        std::memcpy(out, samples.data(), samples.size());
        return;
    }
    constexpr float kFullScale = 32768.0F;
    for (std::size_t i = 0; i < samples.size() / sizeof(std::int16_t); ++i) {
        std::int16_t sample = 0;
        std::memcpy(&sample, samples.data() + i * sizeof(sample), sizeof(sample));
        out[i] = static_cast<float>(sample) / kFullScale;
    }
}

} // namespace

std::int64_t PcmStore::LongestSound(SampleKind kind, int sampleRate, const PcmLimits& limits)
{
    return std::min(static_cast<std::int64_t>(limits.largestSize / StereoFrameSize(kind)),
                    kSecondsInADay * sampleRate);
}

PcmStore::PcmStore(SampleKind kind, int sampleRate, const PcmLimits& limits)
    : m_kind(kind), m_largestSize(static_cast<std::size_t>(LongestSound(kind, sampleRate, limits)) *
                                  StereoFrameSize(kind)),
      m_bytesToLeaveFree(limits.bytesToLeaveFree), m_memorySize(limits.memorySize)
{
    // The whole range is reserved at once, so that a reader never meets a table that grows; a page
    // of it costs memory only when it is written.
    void* const memory = mmap(nullptr, m_memorySize, PROT_READ | PROT_WRITE,
                              MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (memory == MAP_FAILED)
        m_memorySize = 0;
    else
        m_memory = static_cast<std::byte*>(memory);
}

PcmStore::~PcmStore()
{
    if (m_memory)
        munmap(m_memory, m_memorySize);
    if (m_file != kNoFile)
        CloseTemporaryFile(m_file);
}

bool PcmStore::Append(std::span<const std::byte> frames)
{
    const bool fits = frames.size() <= m_largestSize - m_size;
    const auto taken = fits ? frames : frames.first(m_largestSize - m_size);

    const std::size_t inMemory = std::min(taken.size(), MemoryFrom(m_size));
    if (inMemory != 0)
        std::memcpy(m_memory + m_size, taken.data(), inMemory);
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
    return m_memorySize - std::min(offset, m_memorySize);
}

bool PcmStore::AppendToFile(std::span<const std::byte> bytes)
{
    if (m_file == kNoFile)
        m_file = OpenTemporaryFile();
    if (!HasRoom(m_file, m_bytesToLeaveFree))
        return false;
    const std::size_t written = WriteTemporaryFile(m_file, m_size - m_memorySize, bytes);
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
        ToFloat(m_kind, bytes, stereo.data() + 2 * done);
        done += count;
    }
    return static_cast<int>(frames);
}

bool PcmStore::CopyBytes(std::size_t offset, std::span<std::byte> out) const
{
    const std::size_t inMemory = std::min(out.size(), MemoryFrom(offset));
    if (inMemory != 0)
        std::memcpy(out.data(), m_memory + offset, inMemory);
    const auto inFile = out.subspan(inMemory);
    return inFile.empty() ||
           ReadTemporaryFile(m_file, offset + inMemory - m_memorySize, inFile) == inFile.size();
}

} // namespace lantern
