// SPDX-License-Identifier: GPL-3.0-or-later
#include "SoundShaper.h"

#include "WideRegisters.h"

#include <rubberband/RubberBandStretcher.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace lantern {

namespace {

using RubberBand::RubberBandStretcher;

constexpr int kMostSemitones = 10;
constexpr float kMostTempoPercent = 90.0F;
constexpr int kLeastFedFrames = 16;

constexpr int kStretcherOptions =
    RubberBandStretcher::OptionProcessRealTime | RubberBandStretcher::OptionEngineFiner |
    RubberBandStretcher::OptionPitchHighConsistency | RubberBandStretcher::OptionChannelsTogether |
    RubberBandStretcher::OptionThreadingNever;

} // namespace

SoundShape ShapeFor(int semitones, float tempoPercent)
{
    const float tempo = std::isnan(tempoPercent) ? 0.0F : tempoPercent;
    const float limited = std::clamp(tempo, -kMostTempoPercent, kMostTempoPercent);
    return {std::clamp(semitones, -kMostSemitones, kMostSemitones),
            1.0 + static_cast<double>(limited) / 100.0};
}

SoundShaper::SoundShaper() = default;
SoundShaper::~SoundShaper() = default;

void SoundShaper::Start(SoundDecoder& sound, std::int64_t mediaFrame, SoundShape shape,
                        std::vector<float> tail)
{
    m_sound = &sound;
    m_soundEnd.reset();
    Change(mediaFrame, shape, std::move(tail));
}

void SoundShaper::Change(std::int64_t mediaFrame, SoundShape shape, std::vector<float> tail)
{
    m_tail = std::move(tail);
    m_tailMixed = 0;
    Prime(mediaFrame, shape);
}

void SoundShaper::Prime(std::int64_t mediaFrame, SoundShape shape)
{
    m_shape = shape;
    m_segmentStart = mediaFrame;
    m_segmentFrames = 0;
    if (!shape.IsNeutral()) {
        PrepareStretcher();
        m_nextFed = mediaFrame - static_cast<std::int64_t>(m_stretcher->getPreferredStartPad());
        m_framesToDrop = static_cast<int>(m_stretcher->getStartDelay()) + m_limiter->DelayFrames();
    }
}

void SoundShaper::PrepareStretcher()
{
    const int rate = m_sound->SampleRate();
    if (!m_stretcher || m_stretcherRate != rate) {
        m_stretcher = std::make_unique<RubberBandStretcher>(static_cast<std::size_t>(rate), 2U,
                                                            kStretcherOptions);
        m_stretcher->setMaxProcessSize(kMostFedFrames);
        m_stretcherRate = rate;
        m_limiter.emplace(rate);
    }
    m_limiter->Reset();
    m_stretcher->reset();
    m_stretcher->setTimeRatio(1.0 / m_shape.speed);
    m_stretcher->setPitchScale(std::exp2(m_shape.keySemitones / 12.0));
}

SoundShaper::Block SoundShaper::Render(std::span<float> stereo)
{
    const Block block = RenderSegment(stereo);
    m_segmentFrames += block.frames;
    MixTail(stereo.first(static_cast<std::size_t>(block.frames) * 2));
    return block;
}

SoundShaper::Block SoundShaper::RenderSegment(std::span<float> stereo)
{
    return m_shape.IsNeutral() ? RenderNeutral(stereo) : RenderStretched(stereo);
}

SoundShaper::Block SoundShaper::RenderNeutral(std::span<float> stereo)
{
    const SoundDecoder::Chunk chunk = m_sound->Read(m_segmentStart + m_segmentFrames, stereo);
    return {chunk.frames, chunk.atEnd, chunk.notYet};
}

SoundShaper::Block SoundShaper::RenderStretched(std::span<float> stereo)
{
    ReleaseWideRegisters();
    Block block;
    const int wanted = static_cast<int>(stereo.size() / 2);
    while (block.frames < wanted) {
        std::int64_t most = wanted - block.frames;
        if (const auto length = SegmentLength()) {
            most = std::min(most, *length - m_segmentFrames - block.frames);
            block.atEnd = most <= 0;
        }
        if (block.atEnd)
            break;
        const int got = Retrieve(stereo.subspan(static_cast<std::size_t>(block.frames) * 2,
                                                static_cast<std::size_t>(most) * 2));
        block.frames += got;
        if (got == 0 && !Feed()) {
            block.notYet = true;
            break;
        }
    }
    return block;
}

// Output frames from the segment's start to the end of the sound, once that is known.
std::optional<std::int64_t> SoundShaper::SegmentLength() const
{
    if (!m_soundEnd)
        return std::nullopt;
    const auto media = static_cast<double>(*m_soundEnd - m_segmentStart);
    return static_cast<std::int64_t>(std::ceil(std::max(media, 0.0) / m_shape.speed));
}

int SoundShaper::Retrieve(std::span<float> stereo)
{
    const std::array<float*, 2> channels = {m_left.data(), m_right.data()};
    const auto take = [&](int atMost) {
        const int frames = std::min({m_stretcher->available(), atMost, kMostFedFrames});
        if (frames > 0) {
            const auto count = static_cast<std::size_t>(frames);
            m_stretcher->retrieve(channels.data(), count);
            m_limiter->Apply(std::span(m_left).first(count), std::span(m_right).first(count));
        }
        return std::max(frames, 0);
    };
    while (m_framesToDrop > 0) {
        const int dropped = take(m_framesToDrop);
        if (dropped == 0)
            return 0;
        m_framesToDrop -= dropped;
    }
    const int frames = take(static_cast<int>(stereo.size() / 2));
    for (std::size_t i = 0; i < static_cast<std::size_t>(frames); ++i) {
        stereo[2 * i] = m_left[i];
        stereo[2 * i + 1] = m_right[i];
    }
    return frames;
}

// Small pieces: a large one at the slowest tempo would keep the thread busy for too long. False
// if the sound is not decoded that far.
bool SoundShaper::Feed()
{
    const auto bySpeed = static_cast<std::int64_t>(kMostFedFrames * m_shape.speed);
    std::int64_t frames = std::clamp<std::int64_t>(bySpeed, kLeastFedFrames, kMostFedFrames);
    m_interleaved.fill(0.0F);
    if (m_nextFed < 0) {
        frames = std::min(frames, -m_nextFed);
    } else if (!m_soundEnd || m_nextFed < *m_soundEnd) {
        const auto asked = std::span(m_interleaved).first(static_cast<std::size_t>(frames) * 2);
        const SoundDecoder::Chunk chunk = m_sound->Read(m_nextFed, asked);
        if (chunk.atEnd)
            m_soundEnd = m_nextFed + chunk.frames;
        else if (chunk.frames == 0)
            return false;
        else
            frames = chunk.frames;
    }
    for (std::size_t i = 0; i < static_cast<std::size_t>(frames); ++i) {
        m_left[i] = m_interleaved[2 * i];
        m_right[i] = m_interleaved[2 * i + 1];
    }
    const std::array<const float*, 2> channels = {m_left.data(), m_right.data()};
    m_stretcher->process(channels.data(), static_cast<std::size_t>(frames), false);
    m_nextFed += frames;
    return true;
}

void SoundShaper::MixTail(std::span<float> stereo)
{
    const std::size_t mixed = std::min(stereo.size(), m_tail.size() - m_tailMixed);
    for (std::size_t i = 0; i < mixed; ++i) {
        const std::size_t frame = (m_tailMixed + i) / 2;
        const float in =
            (static_cast<float>(frame) + 1.0F) / static_cast<float>(m_tail.size() / 2 + 1);
        stereo[i] = stereo[i] * in + m_tail[m_tailMixed + i] * (1.0F - in);
    }
    m_tailMixed += mixed;
    if (m_tailMixed == m_tail.size()) {
        m_tail.clear();
        m_tailMixed = 0;
    }
}

} // namespace lantern
