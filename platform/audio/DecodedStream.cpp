// SPDX-License-Identifier: GPL-3.0-or-later
#include "DecodedStream.h"

#include <algorithm>
#include <array>
#include <utility>

namespace lantern {
namespace {

constexpr int kLowestRate = 8000;
constexpr int kHighestRate = 192000;
// Beyond these a rate is damage, and changing it would cost any amount of memory.
constexpr int kLowestUsableRate = 1000;
constexpr int kHighestUsableRate = 768000;

// The filter bank of Musepack's decoder is behind by this much, and FFmpeg leaves it in.
constexpr std::int64_t kMusepackDelayFrames = 481;
// Packets that may fail before the first one that decodes.
constexpr int kOpeningPackets = 500;
// No packet stands for more than this, whatever duration it claims.
constexpr std::int64_t kLongestPacketFrames = 65536;
// What a decoder with a memory is led in with: the packets before the place that is sought.
constexpr int kLeadInMs = 500;
// More frames beyond a claimed end than it can be wrong by, at any rate.
constexpr std::int64_t kMostWithheldFrames = 450000;

bool IsLossless(const AVCodecContext& codec)
{
    return (codec.codec_descriptor->props & AV_CODEC_PROP_LOSSLESS) != 0;
}

bool IsShallow(const AVCodecContext& codec, const AVFrame& frame)
{
    return !IsLossless(codec) ||
           av_get_bytes_per_sample(static_cast<AVSampleFormat>(frame.format)) <= 2;
}

SampleKind KindToKeep(const ContainerKind& container, const AVCodecContext& codec,
                      const AVFrame& frame)
{
    // Modules arrive as uncompressed floats; but what they play are samples of 8 or 16 bits.
    const bool rendered = container.rule == LengthRule::TrustedClaim;
    return rendered || IsShallow(codec, frame) ? SampleKind::Int16 : SampleKind::Float;
}

// Windows Media's older decoders swallow the first frame of the codec, whose length goes by the
// rate.
std::int64_t LostFrames(const AVCodecContext& codec)
{
    const bool version1 = codec.codec_id == AV_CODEC_ID_WMAV1;
    if (!version1 && codec.codec_id != AV_CODEC_ID_WMAV2)
        return 0;
    if (codec.sample_rate <= 16000)
        return 512;
    return codec.sample_rate <= (version1 ? 32000 : 22050) ? 1024 : 2048;
}

// So that each stamp stands for one frame. The packets of sound that is coded in blocks, in a
// container for one that is not, are stamped as they come.
bool StampsAreExact(const ContainerKind& container, const AVCodecContext& codec, AVRational unit,
                    int rate)
{
    const bool perSample =
        container.seeks != SeekRule::Tail || av_get_exact_bits_per_sample(codec.codec_id) >= 8;
    return perSample && unit.den % (std::int64_t{rate} * unit.num) == 0;
}

std::int64_t DelayFrames(const AVCodecContext& codec)
{
    const bool delays =
        codec.codec_id == AV_CODEC_ID_MUSEPACK7 || codec.codec_id == AV_CODEC_ID_MUSEPACK8;
    return delays ? kMusepackDelayFrames : 0;
}

} // namespace

DecodedStream::DecodedStream(std::unique_ptr<SoundContainer> container)
    : m_container(std::move(container)), m_stamps(m_container->Stream().time_base),
      m_packet(Made(av_packet_alloc())), m_frame(Made(av_frame_alloc()))
{
}

std::unique_ptr<DecodedStream> DecodedStream::Open(const ByteSource& bytes, const WorkLimit& limit)
{
    auto container = SoundContainer::Open(bytes, limit);
    if (!container)
        return nullptr;
    std::unique_ptr<DecodedStream> stream(new DecodedStream(std::move(container)));
    if (!stream->OpenCodec() || !stream->DecodeFirstFrame())
        return nullptr;
    return stream;
}

std::unique_ptr<DecodedStream> DecodedStream::OpenAt(const ByteSource& bytes,
                                                     const WorkLimit& limit, std::int64_t frame)
{
    auto stream = Open(bytes, limit);
    if (!stream || (frame > 0 && !stream->SeekTo(frame, frame - stream->m_leadFrames)))
        return nullptr;
    return stream;
}

std::unique_ptr<DecodedStream> DecodedStream::OpenAt(const ByteSource& bytes,
                                                     const WorkLimit& limit, std::int64_t frame,
                                                     std::int64_t stamp)
{
    auto stream = Open(bytes, limit);
    if (!stream || !stream->SeekTo(frame, stream->FramesSinceFirst(stamp)))
        return nullptr;
    return stream;
}

bool DecodedStream::IsExactFromAnywhere() const
{
    // The others make up noise, or hold on to what came long before.
    constexpr std::array kExact = {AV_CODEC_ID_MP1,  AV_CODEC_ID_MP2,   AV_CODEC_ID_MP3,
                                   AV_CODEC_ID_FLAC, AV_CODEC_ID_ALAC,  AV_CODEC_ID_APE,
                                   AV_CODEC_ID_OPUS, AV_CODEC_ID_VORBIS};
    const AVCodecID codec = m_codec->codec_id;
    const bool isExact = std::ranges::find(kExact, codec) != kExact.end() ||
                         av_get_exact_bits_per_sample(codec) >= 8;
    return m_exactPlaces && isExact && m_container->MayBeEntered();
}

// Counted by their stamps.
std::optional<std::int64_t> DecodedStream::FramesSinceFirst(std::int64_t stamp) const
{
    std::int64_t ticks = 0;
    if (stamp == AV_NOPTS_VALUE || __builtin_sub_overflow(stamp, m_firstStamp, &ticks))
        return std::nullopt;
    return av_rescale_q(ticks, m_container->Stream().time_base, AVRational{1, m_sampleRate});
}

bool DecodedStream::OpenCodec()
{
    m_codec = m_container->MakeCodec();
    return m_codec && avcodec_open2(m_codec.get(), nullptr, nullptr) >= 0;
}

bool DecodedStream::DecodeFirstFrame()
{
    for (int i = 0; i < kOpeningPackets && !m_packetsEnded && m_block.empty(); ++i)
        Advance();
    return !m_block.empty();
}

// Of the frames that are decoded this one is that of the sound.
bool DecodedStream::SeekTo(std::int64_t frame, std::optional<std::int64_t> decoded)
{
    const SeekRule rule = m_container->Kind().seeks;
    const std::int64_t leadIn = std::int64_t{kLeadInMs} * m_sampleRate / 1000;
    if (!m_exactPlaces || rule == SeekRule::Never || !decoded || *decoded < 2 * leadIn)
        return false;
    const std::int64_t stamp =
        m_firstStamp + av_rescale_q(IsLossless(*m_codec) ? *decoded : *decoded - leadIn,
                                    AVRational{1, m_sampleRate}, m_container->Stream().time_base);

    const bool found = rule == SeekRule::Reading ? ReadToStamp(stamp) : m_container->SeekTo(stamp);
    if (!found)
        return false;
    m_block.clear();
    m_blockStamp.reset();
    m_withheld.clear();
    m_emittedFrames = frame;
    m_blockReturned = false;
    m_closingSilence = 0;
    m_packetsEnded = m_finished = false;
    m_soughtDecoded = decoded;
    avcodec_flush_buffers(m_codec.get());
    if (rule == SeekRule::Reading)
        DecodePacket(m_packet.get());
    else
        m_stamps.Leap();
    while (m_block.empty() && !m_finished && !m_missed)
        Advance();
    return !m_block.empty() && !m_missed;
}

// The packet that begins at the stamp or after it is then the present one.
bool DecodedStream::ReadToStamp(std::int64_t stamp)
{
    while (m_container->ReadPacket(*m_packet)) {
        if (m_packet->pts == AV_NOPTS_VALUE)
            return false;
        if (m_packet->pts >= stamp)
            return true;
        m_stamps.Note(*m_packet);
    }
    return false;
}

std::span<const std::byte> DecodedStream::NextBlock()
{
    // The first block has been decoded by Open.
    if (std::exchange(m_blockReturned, true)) {
        m_block.clear();
        m_blockStamp.reset();
    }
    while (m_block.empty() && !m_finished)
        Advance();
    m_emittedFrames += FramesIn(m_block);
    return m_block;
}

void DecodedStream::Advance()
{
    if (m_closingSilence > 0) {
        const std::int64_t frames = std::min(m_closingSilence, kLongestPacketFrames);
        AppendSilence(frames);
        m_closingSilence -= frames;
    } else if (m_packetsEnded) {
        m_finished = true;
    } else if (m_container->ReadPacket(*m_packet)) {
        DecodePacket(m_packet.get());
        KeepWithinClaim();
    } else {
        m_packetsEnded = true;
        EndSound();
    }
}

void DecodedStream::DecodePacket(const AVPacket* packet)
{
    const std::size_t before = m_block.size();
    bool failed = avcodec_send_packet(m_codec.get(), packet) < 0;
    for (;;) {
        const int result = avcodec_receive_frame(m_codec.get(), m_frame.get());
        if (result < 0) {
            failed = failed || (result != AVERROR(EAGAIN) && result != AVERROR_EOF);
            break;
        }
        failed = !TakeFrame() || failed;
    }
    if (!packet)
        return;
    m_stamps.Note(*packet);
    // What can't be decoded is silence, so that all that follows keeps its place.
    if (failed && m_block.size() == before && !m_soughtDecoded) {
        const AVRational timeBase = m_container->Stream().time_base;
        if (m_converter)
            AppendSilence(av_rescale_q(packet->duration, timeBase, AVRational{1, m_sampleRate}));
        else
            m_undecodedTicks += std::min<std::int64_t>(packet->duration, INT32_MAX);
        DropDelay();
    }
}

bool DecodedStream::TakeFrame()
{
    if (m_frame->nb_samples <= 0)
        return true;
    const bool first = !m_converter;
    if (first && !BeginSound())
        return false;
    if (m_soughtDecoded && !Arrive())
        return false;
    NoteStamp();
    if (!m_converter->Convert(*m_frame, m_block)) {
        if (first) {
            m_converter.reset();
            m_block.clear();
        }
        return false;
    }
    DropDelay();
    return true;
}

// The first frame behind a leap: its stamp tells how many are to be dropped until the one sought.
bool DecodedStream::Arrive()
{
    const std::int64_t sought = *std::exchange(m_soughtDecoded, std::nullopt);
    const std::optional<std::int64_t> arrived = FramesSinceFirst(m_frame->pts);
    m_missed = !arrived || *arrived > sought;
    if (!m_missed)
        m_delayFrames = sought - *arrived;
    return !m_missed;
}

// Of the decoded frame, if its samples are those that the block begins with.
void DecodedStream::NoteStamp()
{
    const bool begins = m_block.empty() && m_delayFrames == 0 && m_withheld.empty();
    if (begins && m_frame->pts != AV_NOPTS_VALUE && m_frame->sample_rate == m_sampleRate)
        m_blockStamp = m_frame->pts;
}

bool DecodedStream::BeginSound()
{
    const int rate = m_frame->sample_rate;
    if (rate < kLowestUsableRate || rate > kHighestUsableRate)
        return false;
    const AVStream& stream = m_container->Stream();
    m_sampleRate = std::clamp(rate, kLowestRate, kHighestRate);
    m_sampleKind = KindToKeep(m_container->Kind(), *m_codec, *m_frame);
    m_converter.emplace(m_sampleKind, m_sampleRate);

    if (m_container->Kind().rule != LengthRule::Packets)
        m_claimedFrames = m_container->ClaimedFrames(m_sampleRate);
    m_delayFrames = DelayFrames(*m_codec) + m_container->SilentFrames();
    AppendSilence(LostFrames(*m_codec));
    AppendSilence(av_rescale_q(m_undecodedTicks, stream.time_base, AVRational{1, m_sampleRate}));
    m_leadFrames = FramesIn(m_block) - m_delayFrames;
    m_firstStamp = m_frame->pts;
    m_exactPlaces = m_firstStamp != AV_NOPTS_VALUE && rate == m_sampleRate &&
                    StampsAreExact(m_container->Kind(), *m_codec, stream.time_base, rate);
    return true;
}

void DecodedStream::AppendSilence(std::int64_t frames)
{
    const std::int64_t bounded = std::clamp<std::int64_t>(frames, 0, kLongestPacketFrames);
    m_block.resize(m_block.size() + SizeOf(bounded));
}

void DecodedStream::DropDelay()
{
    const std::int64_t dropped = std::min(m_delayFrames, FramesIn(m_block));
    m_block.erase(m_block.begin(), m_block.begin() + static_cast<std::ptrdiff_t>(SizeOf(dropped)));
    m_delayFrames -= dropped;
}

// Frames beyond the claimed end are held back until the packets' stamps show that the claim is
// wrong, or until there are more of them than a claim can be wrong by.
void DecodedStream::KeepWithinClaim()
{
    if (m_claimedFrames == 0)
        return;
    // A leap may have led behind the claimed end.
    const std::int64_t left = std::max<std::int64_t>(m_claimedFrames - m_emittedFrames, 0);
    const std::int64_t within = std::min(left, FramesIn(m_block));
    const auto cut = m_block.begin() + static_cast<std::ptrdiff_t>(SizeOf(within));
    m_withheld.insert(m_withheld.end(), cut, m_block.end());
    m_block.erase(cut, m_block.end());
    if (m_withheld.empty())
        return;
    if (m_container->EndsAtClaim()) {
        m_packetsEnded = true;
    } else if (m_stamps.Refutes(m_claimedFrames, m_sampleRate) ||
               FramesIn(m_withheld) > kMostWithheldFrames) {
        m_block.insert(m_block.end(), m_withheld.begin(), m_withheld.end());
        m_withheld.clear();
        m_claimedFrames = 0;
    }
}

void DecodedStream::EndSound()
{
    if (m_container->LimitReached())
        return;
    DecodePacket(nullptr);
    if (m_converter)
        m_converter->Finish(m_block);
    KeepWithinClaim();
    const bool holds = m_container->IsBorneOut(m_claimedFrames, m_stamps, m_sampleRate);
    if (m_claimedFrames != 0 && holds)
        m_closingSilence = m_claimedFrames - m_emittedFrames - FramesIn(m_block);
    else
        m_block.insert(m_block.end(), m_withheld.begin(), m_withheld.end());
}

std::int64_t DecodedStream::FramesIn(const std::vector<std::byte>& bytes) const
{
    return static_cast<std::int64_t>(bytes.size() / StereoFrameSize(m_sampleKind));
}

std::size_t DecodedStream::SizeOf(std::int64_t frames) const
{
    return static_cast<std::size_t>(frames) * StereoFrameSize(m_sampleKind);
}

} // namespace lantern
