// SPDX-License-Identifier: GPL-3.0-or-later
#include "SoundContainer.h"

#include "MusepackHeader.h"

extern "C" {
#include <libavutil/avstring.h>
}

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <vector>

namespace lantern {
namespace {

constexpr std::array kContainers = {
    ContainerKind{"aac", LengthRule::Packets, SeekRule::Reading},
    ContainerKind{"aiff", LengthRule::Packets, SeekRule::Tail},
    ContainerKind{"ape", LengthRule::Claim, SeekRule::Index},
    ContainerKind{"asf", LengthRule::Claim},
    ContainerKind{"au", LengthRule::Packets, SeekRule::Tail},
    ContainerKind{"flac", LengthRule::Packets, SeekRule::Index},
    ContainerKind{"libopenmpt", LengthRule::TrustedClaim},
    ContainerKind{"mov,mp4,m4a,3gp,3g2,mj2", LengthRule::Claim, SeekRule::Index},
    ContainerKind{"mp3", LengthRule::Packets, SeekRule::Reading},
    ContainerKind{"mpc", LengthRule::Claim},
    ContainerKind{"mpc8", LengthRule::Claim},
    ContainerKind{"ogg", LengthRule::Claim, SeekRule::Stream},
    ContainerKind{"wav", LengthRule::Packets, SeekRule::Tail},
};

// Every decoder that the containers above need. What is not in the list, video and pictures above
// all, is never opened, not even to look at its parameters.
constexpr const char* kDecoders =
    "aac,alac,ape,flac,mp1float,mp2float,mp3float,mpc7,mpc8,opus,vorbis,speex,libspeex,"
    "wmav1,wmav2,wmapro,wmalossless,wmavoice,ac3,eac3,gsm,gsm_ms,"
    "adpcm_ms,adpcm_ima_wav,adpcm_ima_qt,adpcm_yamaha,g722,g726,g726le,"
    "pcm_u8,pcm_s8,pcm_s16le,pcm_s16be,pcm_s24le,pcm_s24be,pcm_s32le,pcm_s32be,"
    "pcm_f32le,pcm_f32be,pcm_f64le,pcm_f64be,pcm_alaw,pcm_mulaw";

constexpr int kIoBufferSize = 65536;
// The largest block that a header may make the library allocate: the packet table of a day of
// sound fits.
constexpr std::size_t kLargestAllocation = std::size_t{256} << 20;

// Where so much follows a packet and holds no other, the sound is over. The library would keep all
// of it in memory, in search of a packet's end.
constexpr std::int64_t kMostBetweenPackets = std::int64_t{16} << 20;

const ContainerKind* FindKind(std::string_view name)
{
    const auto* const found = std::ranges::find(kContainers, name, &ContainerKind::name);
    return found == kContainers.end() ? nullptr : &*found;
}

std::int64_t Positive(std::int64_t frames)
{
    return std::max<std::int64_t>(frames, 0);
}

// Pages of Ogg bear the number of their stream.
constexpr std::string_view kPageMark("OggS\0", 5);
constexpr std::size_t kStreamNumberAt = 14;
constexpr std::size_t kStreamNumberSize = 4;
constexpr std::size_t kLongestPage = 65307;

std::string_view TextOf(std::span<const std::uint8_t> bytes)
{
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

// Whether the file ends in the stream that it begins with. In a chain of streams each counts time
// from its own start, so that a time is found in any of them.
bool IsOneOggStream(const ByteSource& bytes)
{
    std::array<std::uint8_t, kStreamNumberAt + kStreamNumberSize> first = {};
    bytes.ReadAt(0, first);
    std::vector<std::uint8_t> tail(2 * kLongestPage); // something else may follow the last page
    const auto size = static_cast<std::int64_t>(tail.size());
    tail.resize(bytes.ReadAt(std::max<std::int64_t>(0, bytes.Size() - size), tail));
    const std::size_t last = TextOf(tail).rfind(kPageMark);
    const std::string_view number = TextOf(first).substr(kStreamNumberAt);
    return last != std::string_view::npos &&
           TextOf(tail).substr(last).substr(0, first.size()).ends_with(number);
}

} // namespace

bool SoundContainer::MayDecode(const AVCodec& decoder)
{
    return av_match_list(decoder.name, kDecoders, ',') > 0;
}

AvPointer<AVCodecContext> SoundContainer::MakeCodec() const
{
    const AVCodec* const decoder = avcodec_find_decoder(m_stream->codecpar->codec_id);
    if (!decoder || !MayDecode(*decoder))
        return nullptr;
    auto codec = Made(avcodec_alloc_context3(decoder));
    if (avcodec_parameters_to_context(codec.get(), m_stream->codecpar) < 0)
        return nullptr;
    // By it the decoder skips the frames that a packet tells to skip.
    codec->pkt_timebase = m_stream->time_base;
    return codec;
}

std::unique_ptr<SoundContainer> SoundContainer::Open(const ByteSource& bytes,
                                                     const WorkLimit& limit)
{
    av_log_set_level(AV_LOG_QUIET);
    av_max_alloc(kLargestAllocation);

    std::unique_ptr<SoundContainer> container(new SoundContainer(bytes, limit));
    if (!container->OpenInput() || !container->ChooseStream())
        return nullptr;
    container->ReadMusepackHeader();
    return container;
}

bool SoundContainer::OpenInput()
{
    auto* const buffer = static_cast<unsigned char*>(av_malloc(kIoBufferSize));
    m_io = Made(avio_alloc_context(buffer, kIoBufferSize, 0, this, ReadBytes, nullptr, SeekBytes));

    // No name is given: the contents decide.
    const AVInputFormat* input = nullptr;
    if (av_probe_input_buffer2(m_io.get(), &input, nullptr, nullptr, 0, 0) < 0)
        return false;
    m_kind = FindKind(input->name);
    if (!m_kind)
        return false;

    AVFormatContext* context = Made(avformat_alloc_context()).release();
    context->pb = m_io.get();
    context->io_open = RefuseToOpen;
    context->codec_whitelist = av_strdup(kDecoders);
    // A WAV header is believed. Looking into it for surround sound in disguise would take longer
    // than all else, and find what is not played.
    context->max_probe_packets = 1;
    context->interrupt_callback.opaque = this;
    context->interrupt_callback.callback = [](void* opaque) {
        return static_cast<SoundContainer*>(opaque)->m_limit.Reached() ? 1 : 0;
    };
    // On failure the library frees the context itself.
    if (avformat_open_input(&context, nullptr, input, nullptr) < 0)
        return false;
    m_format.reset(context);
    return true;
}

bool SoundContainer::ChooseStream()
{
    for (unsigned i = 0; i < m_format->nb_streams; ++i)
        if (m_format->streams[i]->codecpar->codec_type != AVMEDIA_TYPE_AUDIO)
            m_format->streams[i]->discard = AVDISCARD_ALL;
    if (avformat_find_stream_info(m_format.get(), nullptr) < 0)
        return false;
    const int index = av_find_best_stream(m_format.get(), AVMEDIA_TYPE_AUDIO, -1, -1, nullptr, 0);
    if (index < 0)
        return false;
    m_stream = m_format->streams[index];
    return true;
}

void SoundContainer::ReadMusepackHeader()
{
    if (m_kind->name != "mpc8")
        return;
    std::array<std::uint8_t, 64> start = {};
    const std::size_t got = m_bytes.ReadAt(0, start);
    if (const auto header = ParseMusepackHeader(std::span(start).first(got))) {
        m_statedFrames = header->frameCount;
        m_silentFrames = header->silentFrames;
    }
}

bool SoundContainer::ReadPacket(AVPacket& packet)
{
    for (;;) {
        av_packet_unref(&packet);
        if (m_bytesToRead > 0) // else it is over, though the library may make packets of the rest
            m_bytesToRead = kMostBetweenPackets;
        if (m_limit.Reached() || av_read_frame(m_format.get(), &packet) < 0)
            return false;
        if (packet.stream_index == m_stream->index)
            return true;
    }
}

bool SoundContainer::MayBeEntered() const
{
    return m_kind->seeks != SeekRule::Never &&
           (m_kind->seeks != SeekRule::Stream || IsOneOggStream(m_bytes));
}

bool SoundContainer::SeekTo(std::int64_t stamp)
{
    if (!MayBeEntered())
        return false;
    m_bytesToRead = kAnyNumber;
    return av_seek_frame(m_format.get(), m_stream->index, stamp, AVSEEK_FLAG_BACKWARD) >= 0;
}

std::int64_t SoundContainer::ClaimedFrames(int sampleRate) const
{
    // What is out of all reason comes back as a negative number.
    const AVCodecParameters& codec = *m_stream->codecpar;
    if (m_statedFrames != 0)
        return Positive(av_rescale(m_statedFrames, sampleRate, codec.sample_rate));
    const AVRational frame = {1, sampleRate};
    const std::int64_t frames =
        Positive(av_rescale_q(m_stream->duration, m_stream->time_base, frame));
    // In Ogg the encoder's delay counts.
    const bool countsDelay = m_kind->name == "ogg";
    const std::int64_t delay =
        countsDelay ? Positive(av_rescale(codec.initial_padding, sampleRate, codec.sample_rate))
                    : 0;
    return Positive(frames - delay);
}

bool SoundContainer::IsBorneOut(std::int64_t claimedFrames, const StampTrack& stamps,
                                int sampleRate) const
{
    if (m_kind->rule == LengthRule::TrustedClaim)
        return true;
    return EndsAtClaim() ? stamps.Reaches(claimedFrames + m_silentFrames, sampleRate)
                         : stamps.BearsOut(claimedFrames, sampleRate);
}

double SoundContainer::Progress() const
{
    return static_cast<double>(std::min(m_position, m_bytes.Size())) /
           static_cast<double>(m_bytes.Size());
}

int SoundContainer::ReadBytes(void* opaque, std::uint8_t* out, int size)
{
    auto& self = *static_cast<SoundContainer*>(opaque);
    if (self.m_limit.Reached())
        return AVERROR_EXIT;
    if (self.m_bytesToRead <= 0)
        return AVERROR_EOF;
    const std::size_t got =
        self.m_bytes.ReadAt(self.m_position, std::span(out, static_cast<std::size_t>(size)));
    self.m_position += static_cast<std::int64_t>(got);
    self.m_bytesToRead -= static_cast<std::int64_t>(got);
    return got != 0 ? static_cast<int>(got) : AVERROR_EOF;
}

std::int64_t SoundContainer::SeekBytes(void* opaque, std::int64_t offset, int whence)
{
    auto& self = *static_cast<SoundContainer*>(opaque);
    if (whence == AVSEEK_SIZE)
        return self.m_bytes.Size();
    // The library works out every other kind of seek itself.
    if (whence != SEEK_SET)
        return AVERROR(EINVAL);
    self.m_position = offset;
    return offset;
}

int SoundContainer::RefuseToOpen(AVFormatContext*, AVIOContext**, const char*, int, AVDictionary**)
{
    return AVERROR(EPERM);
}

} // namespace lantern
