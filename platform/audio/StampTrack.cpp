// SPDX-License-Identifier: GPL-3.0-or-later
#include "StampTrack.h"

#include <algorithm>
#include <limits>

namespace lantern {
namespace {

std::int64_t SaturatedSum(std::int64_t a, std::int64_t b)
{
    std::int64_t sum = 0;
    return __builtin_add_overflow(a, b, &sum) ? std::numeric_limits<std::int64_t>::max() : sum;
}

} // namespace

void StampTrack::Note(const AVPacket& packet)
{
    if (packet.pts == AV_NOPTS_VALUE)
        return;
    if (!m_any) {
        m_first = packet.pts;
    } else {
        const AVRational second = {1, 1};
        const std::int64_t tolerance = av_rescale_q(1, second, m_timeBase);
        const std::int64_t expected = SaturatedSum(m_last, m_length);
        const bool follows = packet.pts >= m_last &&
                             (m_length <= 0 || packet.pts <= SaturatedSum(expected, tolerance));
        m_broken = m_broken || !(follows || m_leaps);
    }
    m_leaps = false;
    // Monkey's Audio gives no durations; but all its packets have one length.
    const std::int64_t step =
        m_any ? std::max<std::int64_t>(SaturatedSum(packet.pts, -m_last), 0) : 0;
    m_length = packet.duration > 0 ? packet.duration : step;
    m_last = packet.pts;
    m_any = true;
}

bool StampTrack::Reaches(std::int64_t claimedFrames, int sampleRate) const
{
    const std::int64_t end = FramesFromStart(SaturatedSum(m_last, m_length), sampleRate);
    return m_any && !m_broken && SaturatedSum(end, sampleRate) >= claimedFrames;
}

bool StampTrack::BearsOut(std::int64_t claimedFrames, int sampleRate) const
{
    return Reaches(claimedFrames, sampleRate) && !Refutes(claimedFrames, sampleRate);
}

bool StampTrack::Refutes(std::int64_t claimedFrames, int sampleRate) const
{
    return FramesFromStart(m_last, sampleRate) > SaturatedSum(claimedFrames, sampleRate);
}

std::int64_t StampTrack::FramesFromStart(std::int64_t stamp, int sampleRate) const
{
    // What lies before time 0 is the encoder's delay and not part of the sound.
    const std::int64_t start = std::max<std::int64_t>(0, m_first);
    std::int64_t ticks = 0;
    if (__builtin_sub_overflow(stamp, start, &ticks))
        return 0;
    return av_rescale_q(ticks, m_timeBase, AVRational{1, sampleRate});
}

} // namespace lantern
