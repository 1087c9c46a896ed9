// SPDX-License-Identifier: GPL-3.0-or-later
#include "SoundLength.h"

#include "DecodedStream.h"
#include "SoundContainer.h"
#include "StampTrack.h"

extern "C" {
#include <libavutil/intreadwrite.h>
}

#include <algorithm>
#include <cmath>

namespace lantern {
namespace {

// What the packets of a whole stream tell.
struct PacketSurvey {
    explicit PacketSurvey(AVRational timeBase) : stamps(timeBase) {}

    StampTrack stamps;
    std::int64_t ticks = 0;         // the sum of all durations, in the stream's units
    std::int64_t skippedFrames = 0; // frames that packets tell to skip, at the coded rate
    bool durationsKnown = true;
    bool complete = false; // not halted before the end
};

// The first four bytes tell how many frames to drop before the packet's sound, the next four how
// many after it.
std::int64_t SkippedFrames(const AVPacket& packet)
{
    constexpr std::size_t kSize = 10;
    std::size_t size = 0;
    const std::uint8_t* const data =
        av_packet_get_side_data(&packet, AV_PKT_DATA_SKIP_SAMPLES, &size);
    if (size < kSize)
        return 0;
    return std::int64_t{AV_RL32(data)} + AV_RL32(data + 4);
}

PacketSurvey Survey(SoundContainer& container, const WorkLimit& limit)
{
    PacketSurvey survey(container.Stream().time_base);
    const AvPointer<AVPacket> packet = Made(av_packet_alloc());
    while (container.ReadPacket(*packet)) {
        survey.stamps.Note(*packet);
        survey.durationsKnown = survey.durationsKnown && packet->duration > 0;
        survey.ticks += std::clamp<std::int64_t>(packet->duration, 0, INT32_MAX);
        survey.skippedFrames += SkippedFrames(*packet);
    }
    survey.complete = !limit.Reached();
    return survey;
}

std::int64_t FramesOfPackets(const PacketSurvey& survey, const AVStream& stream, int sampleRate)
{
    const std::int64_t frames =
        av_rescale_q(survey.ticks, stream.time_base, AVRational{1, sampleRate});
    const int codedRate = stream.codecpar->sample_rate;
    const std::int64_t skipped =
        codedRate > 0 ? av_rescale(survey.skippedFrames, sampleRate, codedRate) : 0;
    // Times out of all reason come back as the lowest number there is.
    return frames > skipped ? frames - skipped : 0;
}

// Containers of uncompressed sound can be entered anywhere, and hours of it are too much to read:
// the last packets show whether the claimed end is there.
bool TailBearsOut(SoundContainer& container, std::int64_t claimedFrames, int sampleRate)
{
    constexpr AVRational kTail = {2, 1};
    const AVStream& stream = container.Stream();
    const std::int64_t tail = av_rescale_q(1, kTail, stream.time_base);
    const AvPointer<AVPacket> packet = Made(av_packet_alloc());
    if (!container.SeekTo(std::max<std::int64_t>(0, stream.duration - tail)))
        return false;
    const AVRational frame = {1, sampleRate};
    std::int64_t end = 0;
    while (container.ReadPacket(*packet)) {
        if (packet->pts == AV_NOPTS_VALUE)
            return false;
        end = av_rescale_q(packet->pts + packet->duration, stream.time_base, frame);
    }
    return end == claimedFrames;
}

std::int64_t WholeOf(std::int64_t partFrames, double part)
{
    constexpr double kMostFrames = 1e15; // far beyond any sound, and far from an overflow
    return std::llround(std::min(static_cast<double>(partFrames) / part, kMostFrames));
}

// Part of the packets stands for the whole, if it is not too small a part.
SoundLength Estimate(const SoundContainer& container, const PacketSurvey& survey, int sampleRate)
{
    constexpr double kTellingPart = 0.01;
    const double progress = container.Progress();
    const std::int64_t seen = FramesOfPackets(survey, container.Stream(), sampleRate);
    const std::int64_t claimed = container.ClaimedFrames(sampleRate);
    const bool useClaim = claimed > 0 && container.Kind().rule != LengthRule::Packets;
    if (useClaim || seen == 0 || progress < kTellingPart)
        return {.frames = claimed};
    return {.frames = WholeOf(seen, progress)};
}

// The length by the container's rule, or nothing exact where only a decode tells.
SoundLength LengthByRule(const SoundContainer& container, const PacketSurvey& survey,
                         int sampleRate)
{
    const std::int64_t claimed = container.ClaimedFrames(sampleRate);
    switch (container.Kind().rule) {
    case LengthRule::Packets:
        return {.frames = FramesOfPackets(survey, container.Stream(), sampleRate),
                .exact = survey.durationsKnown};
    case LengthRule::Claim:
    case LengthRule::TrustedClaim:
        return {.frames = claimed,
                .exact = claimed > 0 && container.IsBorneOut(claimed, survey.stamps, sampleRate)};
    }
    return {};
}

SoundLength LengthByDecoding(const ByteSource& bytes, const WorkLimit& limit)
{
    const auto stream = DecodedStream::Open(bytes, limit);
    if (!stream)
        return {};
    std::size_t size = 0;
    for (auto block = stream->NextBlock(); !block.empty(); block = stream->NextBlock())
        size += block.size();
    const auto frames = static_cast<std::int64_t>(size / StereoFrameSize(stream->Kind()));
    if (!limit.Reached())
        return {.frames = frames, .exact = true};
    const double progress = std::max(stream->Container().Progress(), 1e-6);
    return {.frames = WholeOf(frames, progress)};
}

} // namespace

SoundLength MeasureSound(const ByteSource& bytes, int sampleRate, const WorkLimit& limit)
{
    const auto container = SoundContainer::Open(bytes, limit);
    if (!container)
        return {};
    const std::int64_t claimed = container->ClaimedFrames(sampleRate);
    if (container->Kind().rule == LengthRule::TrustedClaim && claimed > 0)
        return {.frames = claimed, .exact = true};
    if (container->Kind().seeks == SeekRule::Tail && claimed > 0) {
        if (TailBearsOut(*container, claimed, sampleRate))
            return {.frames = claimed, .exact = true};
        if (!container->SeekTo(0))
            return LengthByDecoding(bytes, limit);
    }

    const PacketSurvey survey = Survey(*container, limit);
    if (!survey.complete)
        return Estimate(*container, survey, sampleRate);
    const SoundLength length = LengthByRule(*container, survey, sampleRate);
    return length.exact ? length : LengthByDecoding(bytes, limit);
}

} // namespace lantern
