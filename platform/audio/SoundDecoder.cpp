// SPDX-License-Identifier: GPL-3.0-or-later
#include "SoundDecoder.h"

#include "AdvanceDecoder.h"
#include "ByteSource.h"
#include "DecodedStream.h"
#include "PcmStore.h"
#include "SoundLength.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <limits>
#include <thread>

namespace lantern {
namespace {

using std::chrono::milliseconds;

// What any path may cost the user-interface thread. Real sounds take a few milliseconds of it.
constexpr milliseconds kTimeForDuration(900);
constexpr milliseconds kTimeToOpen(500);
// A file's length has mostly been asked before, and sound must follow at once on opening it; a
// memory image's length is asked of the open sound.
constexpr milliseconds kTimeToMeasureFile(120);
constexpr milliseconds kTimeToMeasureMemory(400);

// A module of some kilobytes may claim to play for days.
PcmLimits LimitsFor(const DecodedStream& stream)
{
    PcmLimits limits;
    if (stream.Container().Kind().rule == LengthRule::TrustedClaim)
        limits.largestSize = std::size_t{1} << 30;
    return limits;
}

std::int64_t LongestSound(const DecodedStream& stream)
{
    return PcmStore::LongestSound(stream.Kind(), stream.SampleRate(), LimitsFor(stream));
}

class BackgroundDecoder final : public SoundDecoder {
public:
    explicit BackgroundDecoder(std::unique_ptr<ByteSource> bytes) : m_bytes(std::move(bytes)) {}
    ~BackgroundDecoder() override
    {
        m_limit.Stop();
        if (m_thread.joinable())
            m_thread.join();
    }

    int SampleRate() const override { return m_sampleRate; }

    std::int64_t FrameCount() const override
    {
        const bool ended = DecodedToEnd();
        const std::int64_t decoded = m_store->PublishedFrames();
        return ended ? decoded : std::max(decoded, m_expectedFrames);
    }

    bool DecodedToEnd() const override { return m_ended.load(std::memory_order_acquire); }

    int CutBy() const override { return m_store->Trouble(); }

    Chunk Read(std::int64_t firstFrame, std::span<float> stereo) override;

    void Release() override
    {
        m_limit.Stop();
        m_bytes->Release();
    }

    // False if the bytes hold no sound.
    bool Start(milliseconds timeToMeasure);

private:
    void DecodeToEnd();

    std::unique_ptr<ByteSource> m_bytes;
    WorkLimit m_limit;
    std::unique_ptr<DecodedStream> m_stream; // the thread's, once that runs
    std::unique_ptr<PcmStore> m_store;
    std::unique_ptr<AdvanceDecoder> m_advance;
    int m_sampleRate = 0;
    std::int64_t m_expectedFrames = 0;
    std::atomic<bool> m_ended = false;
    std::thread m_thread;
};

bool BackgroundDecoder::Start(milliseconds timeToMeasure)
{
    m_limit.AllowUntil(WorkLimit::Clock::now() + kTimeToOpen);
    m_stream = DecodedStream::Open(*m_bytes, m_limit);
    m_limit.AllowUntil(WorkLimit::Clock::time_point::max());
    if (!m_stream)
        return false;
    const SampleKind kind = m_stream->Kind();
    m_sampleRate = m_stream->SampleRate();
    m_store = std::make_unique<PcmStore>(kind, m_sampleRate, LimitsFor(*m_stream));
    const std::int64_t longest = LongestSound(*m_stream);
    m_advance = std::make_unique<AdvanceDecoder>(*m_bytes, m_limit, kind, m_sampleRate);
    m_thread = std::thread([this] { DecodeToEnd(); });

    // The length is wanted as soon as a sound is open, long before it is decoded.
    const WorkLimit measuring(timeToMeasure);
    m_expectedFrames = std::min(MeasureSound(*m_bytes, m_sampleRate, measuring).frames, longest);
    return true;
}

void BackgroundDecoder::DecodeToEnd()
{
    for (auto block = m_stream->NextBlock(); !block.empty(); block = m_stream->NextBlock()) {
        if (!m_store->Append(block))
            break;
        m_advance->Work(m_store->PublishedFrames());
    }
    m_ended.store(true, std::memory_order_release);
    m_advance->Finish();
}

SoundDecoder::Chunk BackgroundDecoder::Read(std::int64_t firstFrame, std::span<float> stereo)
{
    const std::int64_t first = std::max<std::int64_t>(0, firstFrame);
    const auto wanted =
        static_cast<int>(std::min<std::size_t>(stereo.size() / 2, std::numeric_limits<int>::max()));
    m_advance->Follow(first);
    // Asked in this order, the end can't come between: once decoded, the count is final.
    const bool ended = DecodedToEnd();
    const std::int64_t decoded = m_store->PublishedFrames();
    Chunk chunk;
    chunk.frames = m_store->Read(first, stereo);
    chunk.atEnd = ended && first + chunk.frames >= decoded;
    if (chunk.frames < wanted && !ended) {
        const std::int64_t next = first + chunk.frames;
        const auto rest = stereo.subspan(static_cast<std::size_t>(chunk.frames) * 2);
        const AdvanceDecoder::Part part = m_advance->Read(next, rest);
        chunk.frames += part.frames;
        chunk.atEnd = part.atEnd;
    }
    chunk.notYet = chunk.frames < wanted && !chunk.atEnd;
    return chunk;
}

} // namespace

std::unique_ptr<SoundDecoder> SoundDecoder::Open(std::unique_ptr<ByteSource> bytes,
                                                 milliseconds timeToMeasure)
{
    if (!bytes)
        return nullptr;
    auto decoder = std::make_unique<BackgroundDecoder>(std::move(bytes));
    return decoder->Start(timeToMeasure) ? std::move(decoder) : nullptr;
}

std::unique_ptr<SoundDecoder> SoundDecoder::OpenFile(const QString& path)
{
    return Open(OpenFileBytes(path), kTimeToMeasureFile);
}

std::unique_ptr<SoundDecoder> SoundDecoder::OpenMemory(std::span<const std::uint8_t> image)
{
    return Open(OpenMemoryBytes(image), kTimeToMeasureMemory);
}

std::int32_t SoundDecoder::FileDurationMs(const QString& path)
{
    const auto bytes = OpenFileBytes(path);
    return bytes ? DurationMs(*bytes) : 0;
}

std::int32_t SoundDecoder::DurationMs(const ByteSource& bytes)
{
    // Only a decoded frame proves that there is a sound, and tells its rate.
    const WorkLimit limit(kTimeForDuration);
    const auto stream = DecodedStream::Open(bytes, limit);
    if (!stream)
        return 0;
    const int rate = stream->SampleRate();
    const std::int64_t frames =
        std::min(MeasureSound(bytes, rate, limit).frames, LongestSound(*stream));
    return static_cast<std::int32_t>((frames * 1000 + rate / 2) / rate);
}

} // namespace lantern
