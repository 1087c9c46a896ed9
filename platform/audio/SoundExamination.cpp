// SPDX-License-Identifier: GPL-3.0-or-later
#include "SoundExamination.h"

#include "AvPointers.h"
#include "ByteSource.h"
#include "SoundContainer.h"
#include "SoundEnd.h"
#include "WorkLimit.h"

#include <algorithm>
#include <limits>
#include <memory>

namespace lantern {
namespace {

// By so much a sound may be shorter than its header tells, for reasons of its encoder.
constexpr std::int32_t kAllowedMs = 500;
// A day: what decodes to more is no song.
constexpr double kLongestMs = 24.0 * 60 * 60 * 1000;

// Decodes a sound and counts what comes, and what doesn't.
class Examination {
public:
    explicit Examination(std::unique_ptr<SoundContainer> container)
        : m_container(std::move(container)), m_packet(Made(av_packet_alloc())),
          m_frame(Made(av_frame_alloc()))
    {
    }

    SoundHealth Run(const WorkLimit& limit)
    {
        if (!OpenCodec())
            return m_health;
        while (m_lengthMs < kLongestMs && m_container->ReadPacket(*m_packet))
            Decode(m_packet.get());
        if (!limit.Reached() && m_lengthMs < kLongestMs) {
            Decode(nullptr);
            m_health.isComplete = true;
        }
        m_health.isSound = m_rate > 0;
        m_health.lengthMs = static_cast<std::int32_t>(m_lengthMs);
        if (m_rate > 0)
            JudgeEnd();
        return m_health;
    }

    const SoundContainer& Container() const { return *m_container; }

private:
    bool OpenCodec()
    {
        m_codec = m_container->MakeCodec();
        if (!m_codec)
            return false;
        m_codec->err_recognition = AV_EF_CRCCHECK | AV_EF_BITSTREAM | AV_EF_BUFFER;
        const std::string_view kind = m_container->Kind().name;
        m_hasExactTimes =
            kind == "ogg" || (kind == "asf" && m_codec->codec_id != AV_CODEC_ID_WMALOSSLESS);
        return avcodec_open2(m_codec.get(), nullptr, nullptr) >= 0;
    }

    void Decode(const AVPacket* packet)
    {
        const int sent = avcodec_send_packet(m_codec.get(), packet);
        bool isDamaged = packet && (sent < 0 || (packet->flags & AV_PKT_FLAG_CORRUPT) != 0 ||
                                    IsBehindGap(*packet));
        for (;;) {
            const int result = avcodec_receive_frame(m_codec.get(), m_frame.get());
            if (result < 0) {
                isDamaged = isDamaged || (result != AVERROR(EAGAIN) && result != AVERROR_EOF);
                break;
            }
            isDamaged = isDamaged || m_frame->decode_error_flags != 0 ||
                        (m_frame->flags & AV_FRAME_FLAG_CORRUPT) != 0;
            if (m_frame->nb_samples > 0 && m_frame->sample_rate > 0) {
                m_rate = m_frame->sample_rate;
                m_lengthMs += m_frame->nb_samples * 1000.0 / m_rate;
            }
        }
        if (packet)
            m_isLastDamaged = isDamaged;
        // What comes before the first frame may be what a decoder has to begin with.
        if (!isDamaged || m_rate == 0)
            return;
        if (m_health.damagedPackets++ == 0)
            m_health.firstDamageMs = static_cast<std::int32_t>(m_lengthMs);
    }

    // Packets of these containers are lost without a word. Others tell times that aren't exact.
    bool IsBehindGap(const AVPacket& packet)
    {
        constexpr std::int64_t kLongestGapMs = 100;
        const AVRational unit = m_container->Stream().time_base;
        const std::int64_t pts = packet.pts;
        if (pts == AV_NOPTS_VALUE || !m_hasExactTimes)
            return false;
        const std::int64_t gap = av_rescale_q(kLongestGapMs, AVRational{1, 1000}, unit);
        std::int64_t latest = 0;
        const bool isGap = m_nextStamp != AV_NOPTS_VALUE &&
                           !__builtin_add_overflow(m_nextStamp, gap, &latest) && pts > latest;
        if (__builtin_add_overflow(pts, packet.duration, &m_nextStamp))
            m_nextStamp = AV_NOPTS_VALUE;
        return isGap;
    }

    // A last packet that is damaged is one that is there in part.
    void JudgeEnd()
    {
        const std::int32_t claimedMs = ClaimedMs();
        const bool isShort = claimedMs > m_health.lengthMs + kAllowedMs;
        m_health.isCutOff = m_health.isComplete && (isShort || m_isLastDamaged);
        if (m_health.isCutOff && m_isLastDamaged && m_health.damagedPackets > 0)
            --m_health.damagedPackets;
        // That of these is an estimate if the end is missing.
        const std::string_view kind = m_container->Kind().name;
        if (kind != "asf" && kind != "wav")
            m_health.claimedMs = claimedMs;
    }

    // In these there is no length but what the library estimates, or the end itself.
    std::int32_t ClaimedMs() const
    {
        const std::string_view kind = m_container->Kind().name;
        if (kind == "mp3" || kind == "aac" || kind == "ogg")
            return 0;
        constexpr int kFramesAMillisecond = 1000;
        const std::int64_t claimed = m_container->ClaimedFrames(kFramesAMillisecond);
        return static_cast<std::int32_t>(
            std::min<std::int64_t>(claimed, std::numeric_limits<std::int32_t>::max()));
    }

    std::unique_ptr<SoundContainer> m_container;
    AvPointer<AVCodecContext> m_codec;
    AvPointer<AVPacket> m_packet;
    AvPointer<AVFrame> m_frame;
    SoundHealth m_health;
    int m_rate = 0; // 0 until something has been decoded
    double m_lengthMs = 0;
    std::int64_t m_nextStamp = AV_NOPTS_VALUE; // of the packet behind the last one
    bool m_isLastDamaged = false;
    bool m_hasExactTimes = false;
};

} // namespace

SoundHealth ExamineSound(const ByteSource& bytes, const WorkLimit& limit)
{
    auto container = SoundContainer::Open(bytes, limit);
    if (!container)
        return {};
    Examination examination(std::move(container));
    SoundHealth health = examination.Run(limit);
    if (health.isSound && health.isComplete &&
        LacksItsEnd(bytes, examination.Container().Kind().name))
        health.isCutOff = true;
    return health;
}

} // namespace lantern
