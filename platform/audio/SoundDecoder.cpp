// SPDX-License-Identifier: GPL-3.0-or-later
#include "SoundDecoder.h"

#include "ByteSource.h"
#include "DecodedStream.h"
#include "KeptBytes.h"
#include "OpenedSound.h"
#include "PcmStore.h"
#include "SoundLength.h"
#include "StoredSound.h"
#include "WindowedSound.h"

#include <algorithm>
#include <chrono>
#include <utility>

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

// Null if the bytes hold no sound.
OpenedSound OpenSound(std::unique_ptr<ByteSource> bytes)
{
    OpenedSound sound = {std::move(bytes), std::make_unique<WorkLimit>(kTimeToOpen), nullptr};
    sound.stream = DecodedStream::Open(*sound.bytes, *sound.limit);
    sound.limit->AllowUntil(WorkLimit::Clock::time_point::max());
    return sound;
}

// The length is wanted as soon as a sound is open, long before it is decoded.
template <class Sound>
std::unique_ptr<SoundDecoder> Measured(std::unique_ptr<Sound> sound, const ByteSource& bytes,
                                       std::int64_t longestFrames, milliseconds timeToMeasure)
{
    const WorkLimit measuring(timeToMeasure);
    sound->Expect(
        std::min(MeasureSound(bytes, sound->SampleRate(), measuring).frames, longestFrames));
    return sound;
}

} // namespace

std::unique_ptr<SoundDecoder> SoundDecoder::Open(std::unique_ptr<ByteSource> bytes,
                                                 milliseconds timeToMeasure)
{
    if (!bytes)
        return nullptr;
    OpenedSound sound = OpenSound(std::move(bytes));
    if (!sound.stream)
        return nullptr;
    const ByteSource& source = *sound.bytes; // which the sound then owns
    const std::int64_t longest = LongestSound(*sound.stream);
    if (sound.stream->IsExactFromAnywhere())
        return Measured(std::make_unique<WindowedSound>(std::move(sound), longest), source, longest,
                        timeToMeasure);
    const PcmLimits limits = LimitsFor(*sound.stream);
    return Measured(std::make_unique<StoredSound>(std::move(sound), limits), source, longest,
                    timeToMeasure);
}

std::unique_ptr<SoundDecoder> SoundDecoder::OpenFile(const QString& path)
{
    return Open(KeepInMemory(OpenFileBytes(path)), kTimeToMeasureFile);
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
