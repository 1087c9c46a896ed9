// SPDX-License-Identifier: GPL-3.0-or-later
#include "FilmSound.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace lantern::tool {
namespace {

constexpr int kDiscRate = 44100;

QString CannotRead(const AudioClip& clip, const QString& why)
{
    const QString name = clip.Path.isEmpty() ? QStringLiteral("the track's sound") : clip.Path;
    return QStringLiteral("Cannot read %1: %2").arg(name, why);
}

} // namespace

FilmSound::FilmSound(const Track& track, SoundShape shape, std::int32_t fromMs, std::int32_t toMs)
    : m_track(track), m_shape(shape), m_fromMs(fromMs), m_toMs(toMs)
{
}

int FilmSound::OwnRate() const
{
    for (const AudioClip& clip : m_track.ClipList) {
        const auto sound = clip.IsFiller ? nullptr : ClipSound::Open(clip);
        if (sound)
            return sound->OwnRate();
    }
    return kDiscRate;
}

std::int64_t FilmSound::FrameAt(std::int64_t trackMs) const
{
    const auto runMs = static_cast<double>(trackMs - m_fromMs);
    return std::llround(runMs * m_rate / 1000 / m_shape.speed);
}

void FilmSound::SetRate(int rate)
{
    m_rate = rate;
    for (const AudioClip& clip : m_track.ClipList) {
        const std::int64_t endMs = std::int64_t{clip.StartMs} + clip.LengthMs;
        if (endMs <= m_fromMs || clip.StartMs >= m_toMs)
            continue;
        m_parts.push_back({.clip = &clip,
                           .offsetMs = std::max<std::int64_t>(m_fromMs - clip.StartMs, 0),
                           .endFrame = FrameAt(std::min<std::int64_t>(endMs, m_toMs))});
    }
    const bool endsWithTrack = m_toMs == m_track.TotalLengthMs;
    if (endsWithTrack && !m_parts.empty() && !m_parts.back().clip->IsFiller)
        m_slack = FrameAt(m_fromMs + std::int64_t{1}) + 1;
}

QString FilmSound::Begin(const Part& part)
{
    m_isBegun = true;
    if (part.clip->IsFiller)
        return {};
    m_sound = ClipSound::Open(*part.clip);
    if (!m_sound)
        return CannotRead(*part.clip, QStringLiteral("no usable sound"));
    m_sound->Start(part.offsetMs, m_shape, m_rate);
    return {};
}

QString FilmSound::End()
{
    const int trouble = m_sound ? m_sound->CutBy() : 0;
    m_sound.reset();
    m_isBegun = false;
    const Part& part = m_parts[m_part++];
    return trouble == 0 ? QString()
                        : CannotRead(*part.clip, QString::fromLocal8Bit(std::strerror(trouble)));
}

// In frames. 0 where the part ends.
std::size_t FilmSound::ReadPart(std::span<float> stereo)
{
    Part& part = m_parts[m_part];
    const bool isLast = m_part + 1 == m_parts.size();
    const auto left = [&] { return part.endFrame + (isLast ? m_slack : 0) - m_frame; };
    const auto fitting = [&] {
        return std::min(static_cast<std::size_t>(std::max<std::int64_t>(left(), 0)),
                        stereo.size() / 2);
    };
    const std::size_t wanted = fitting();
    const std::size_t sounding = m_sound ? m_sound->Read(stereo.first(2 * wanted)) : 0;
    if (sounding == wanted)
        return wanted;
    // The sound has ended: near the end of the film, that is the end.
    const std::int64_t ended = m_frame + static_cast<std::int64_t>(sounding);
    if (isLast && std::abs(part.endFrame - ended) <= m_slack)
        part.endFrame = ended;
    if (isLast)
        m_slack = 0;
    const std::size_t frames = fitting();
    std::ranges::fill(stereo.first(2 * frames).subspan(2 * std::min(sounding, frames)), 0.0F);
    return frames;
}

QString FilmSound::Read(std::span<float> stereo, std::size_t& filled)
{
    filled = 0;
    QString error;
    while (error.isEmpty() && filled < stereo.size() && m_part < m_parts.size()) {
        if (!m_isBegun)
            error = Begin(m_parts[m_part]);
        const std::size_t frames = error.isEmpty() ? ReadPart(stereo.subspan(filled)) : 0;
        filled += 2 * frames;
        m_frame += static_cast<std::int64_t>(frames);
        if (frames == 0 && error.isEmpty())
            error = End();
    }
    return error;
}

} // namespace lantern::tool
