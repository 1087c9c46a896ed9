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
// Of the stretcher's. Small pieces: a large one at the slowest tempo would keep the thread busy for
// too long.
constexpr int kLeastFedFrames = 16;
constexpr int kMostStretchedFrames = 256;
// More of them a second are not heard.
constexpr int kHighestStretchedRate = 48000;

constexpr int kStretcherOptions =
    RubberBandStretcher::OptionProcessRealTime | RubberBandStretcher::OptionEngineFiner |
    RubberBandStretcher::OptionPitchHighConsistency | RubberBandStretcher::OptionChannelsTogether |
    RubberBandStretcher::OptionThreadingNever;

int StretchedRate(int soundRate)
{
    constexpr int kDiscRate = 44100;
    if (soundRate <= kHighestStretchedRate)
        return soundRate;
    return soundRate % kDiscRate == 0 ? kDiscRate : kHighestStretchedRate;
}

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
        const auto pad = static_cast<double>(m_stretcher->getPreferredStartPad());
        const auto delay = static_cast<double>(m_stretcher->getStartDelay());
        m_nextFed = mediaFrame - std::llround(pad * m_soundFrames);
        m_framesToDrop =
            static_cast<int>(std::lround(delay * m_soundFrames)) + m_limiter->DelayFrames();
    }
}

void SoundShaper::PrepareStretcher()
{
    if (!m_stretcher || m_soundRate != m_sound->SampleRate())
        MakeStretcher();
    m_shaped = {};
    m_limiter->Reset();
    if (m_toStretcher) {
        m_toStretcher->Reset();
        m_fromStretcher->Reset();
    }
    m_stretcher->reset();
    m_stretcher->setTimeRatio(1.0 / m_shape.speed);
    m_stretcher->setPitchScale(std::exp2(m_shape.keySemitones / 12.0));
}

void SoundShaper::MakeStretcher()
{
    m_soundRate = m_sound->SampleRate();
    const int rate = StretchedRate(m_soundRate);
    m_soundFrames = static_cast<double>(m_soundRate) / rate;
    m_stretcher = std::make_unique<RubberBandStretcher>(static_cast<std::size_t>(rate), 2U,
                                                        kStretcherOptions);
    m_stretcher->setMaxProcessSize(kMostStretchedFrames);
    m_limiter.emplace(m_soundRate);
    m_toStretcher.reset();
    m_fromStretcher.reset();
    if (rate != m_soundRate) {
        m_toStretcher.emplace(m_soundRate, rate);
        m_fromStretcher.emplace(rate, m_soundRate);
    }
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
    for (ShapeMore(); m_framesToDrop > 0 && !m_shaped.left.empty(); ShapeMore()) {
        const auto dropped = TakeShaped(static_cast<std::size_t>(m_framesToDrop));
        m_framesToDrop -= static_cast<int>(dropped.left.size());
    }
    const auto [left, right] = TakeShaped(stereo.size() / 2);
    for (std::size_t i = 0; i < left.size(); ++i) {
        stereo[2 * i] = left[i];
        stereo[2 * i + 1] = right[i];
    }
    return static_cast<int>(left.size());
}

// If all has been taken and the stretcher has more.
void SoundShaper::ShapeMore()
{
    const std::array<float*, 2> channels = {m_left.data(), m_right.data()};
    while (m_shaped.left.empty() && m_stretcher->available() > 0) {
        const auto count =
            static_cast<std::size_t>(std::min(m_stretcher->available(), kMostStretchedFrames));
        m_stretcher->retrieve(channels.data(), count);
        m_shaped = {std::span(m_left).first(count), std::span(m_right).first(count)};
        if (m_fromStretcher)
            m_shaped = m_fromStretcher->Convert(m_shaped.left, m_shaped.right);
        m_limiter->SetLoudest(m_loudest);
        m_limiter->Apply(m_shaped.left, m_shaped.right);
    }
}

RateChanger::Sides SoundShaper::TakeShaped(std::size_t atMost)
{
    const std::size_t count = std::min(atMost, m_shaped.left.size());
    const RateChanger::Sides taken = {m_shaped.left.first(count), m_shaped.right.first(count)};
    m_shaped = {m_shaped.left.subspan(count), m_shaped.right.subspan(count)};
    return taken;
}

// False if the sound is not decoded that far.
bool SoundShaper::Feed()
{
    const double bySpeed = std::clamp<double>(kMostStretchedFrames * m_shape.speed, kLeastFedFrames,
                                              kMostStretchedFrames) *
                           m_soundFrames;
    auto frames = std::min(static_cast<std::int64_t>(bySpeed), std::int64_t{kMostFedFrames});
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
    const auto count = static_cast<std::size_t>(frames);
    for (std::size_t i = 0; i < count; ++i) {
        m_left[i] = m_interleaved[2 * i];
        m_right[i] = m_interleaved[2 * i + 1];
    }
    Stretch({std::span(m_left).first(count), std::span(m_right).first(count)});
    m_nextFed += frames;
    return true;
}

void SoundShaper::Stretch(RateChanger::Sides fed)
{
    if (m_toStretcher)
        fed = m_toStretcher->Convert(fed.left, fed.right);
    const std::array<const float*, 2> channels = {fed.left.data(), fed.right.data()};
    m_stretcher->process(channels.data(), fed.left.size(), false);
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
