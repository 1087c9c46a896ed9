// SPDX-License-Identifier: GPL-3.0-or-later
#include "SoundRenderer.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace lantern {

namespace {

using namespace std::chrono_literals;

// A change is heard after these times, the frames kept in the ring and the output's buffer of 50
// milliseconds: some 130 after it was wished, at most.
constexpr auto kWishSettles = 5ms;
constexpr auto kWishWaitsAtMost = 40ms;
constexpr auto kBetweenWishes = 40ms;
constexpr auto kRefillEvery = 15ms;
constexpr auto kLooksForPlaceEvery = 3ms;
constexpr auto kSilenceBearable = 1500ms;
constexpr auto kSleepsAtMost = 1h;
constexpr int kBlockFrames = 256;

constexpr int kBlocksAtOnce = 8;

// Deep enough for a busy machine.
constexpr int kRingMs = 250;
constexpr int kBeginsWithMs = 45;
constexpr int kKeptAtChangeMs = 30;
constexpr int kCrossfadeMs = 10;
constexpr float kHighestEvenedPeak = 0.891F; // -1 dB
constexpr int kFadeMs = 5;                   // from silence and to it
// A server may tell a frame as heard before it is.
constexpr int kSilenceBeforeHeldMs = 30;

} // namespace

SoundRenderer::SoundRenderer(AudioOutput& output, Report report)
    : m_output(output), m_report(std::move(report)), m_block(std::size_t{2} * kBlockFrames),
      m_thread([this] { Run(); })
{
}

SoundRenderer::~SoundRenderer()
{
    {
        const std::scoped_lock lock(m_wishMutex);
        m_quit = true;
    }
    m_wake.notify_one();
    m_thread.join();
    m_output.Close();
}

void SoundRenderer::SetWish(Wish wish)
{
    {
        const std::scoped_lock lock(m_wishMutex);
        if (m_wish.sound && m_wish.sound != wish.sound)
            m_leftSounds.push_back(std::move(m_wish.sound));
        m_wish = std::move(wish);
        m_wishLastAt = Clock::now();
        if (!std::exchange(m_wishNew, true))
            m_wishFirstAt = m_wishLastAt;
    }
    m_wake.notify_one();
}

// In another key the peaks grow, and after the gain nothing keeps them low.
void SoundRenderer::SetSoundGain(float factor)
{
    m_soundGain.SetTarget(factor);
    m_shaper.SetLoudest(factor == 1.0F ? 1.0F : std::min(1.0F, kHighestEvenedPeak / factor));
}

std::optional<double> SoundRenderer::MediaFrameAt(double outputFrame, std::uint64_t serial) const
{
    if (m_placeSerial != serial || outputFrame < static_cast<double>(m_placeFrame))
        return std::nullopt;
    return m_timeline.MediaAt(outputFrame);
}

// The one place that knows of the delay: in frames of the output, so that the timeline turns it
// into frames of the sound, at whatever speed that goes there. What has not begun is not heard
// early.
double SoundRenderer::EarFrames(int sampleRate)
{
    const double told = m_output.HeardFrames();
    if (m_output.GetState() == AudioOutput::State::Waiting)
        return told;
    return told - m_delayMs * 1e-3 * sampleRate;
}

std::optional<double> SoundRenderer::HeardMediaFrame(std::uint64_t serial)
{
    const std::scoped_lock lock(m_timelineMutex);
    return MediaFrameAt(EarFrames(m_timelineRate), serial);
}

std::optional<double> SoundRenderer::PlayedMediaFrame(std::uint64_t serial)
{
    const std::scoped_lock lock(m_timelineMutex);
    return MediaFrameAt(m_output.HeardFrames(), serial);
}

// A picture can't be ahead of the sound: what is to come has not passed yet. The output counts on
// ahead by the clock, but nothing is heard of what it has not been given.
bool SoundRenderer::HearAround(std::uint64_t serial, std::span<float> stereo)
{
    const std::scoped_lock lock(m_timelineMutex);
    const std::int64_t heard =
        std::llround(std::min(EarFrames(m_timelineRate), m_output.HeardFrames()));
    const std::int64_t passed = m_tap.PassedFrames();
    const bool isHeard = m_output.GetState() == AudioOutput::State::Running && heard < passed;
    if (m_placeSerial != serial || !isHeard)
        return false;
    const auto frames = static_cast<std::int64_t>(stereo.size() / 2);
    m_tap.CopyOut(std::min(heard + frames / 2, passed) - frames, stereo);
    return true;
}

int SoundRenderer::Fill(std::span<float> stereo)
{
    const int frames = m_ring.Read(stereo);
    const std::span<float> filled = stereo.first(static_cast<std::size_t>(frames) * 2);
    m_guide.Apply(filled);
    m_soundGain.Apply(filled);
    m_gain.Apply(filled);
    m_tap.Note(filled);
    return frames;
}

void SoundRenderer::Run()
{
    for (bool quit = false; !quit;) {
        TakeWish();
        SleepFor(Work());
        const std::scoped_lock lock(m_wishMutex);
        quit = m_quit;
    }
}

// Until then, or until a wish wants to be taken.
void SoundRenderer::SleepFor(Clock::duration rest)
{
    std::unique_lock lock(m_wishMutex);
    const auto end = Clock::now() + std::min<Clock::duration>(rest, kSleepsAtMost);
    const auto due = [this] { return m_quit || (m_wishNew && Clock::now() >= WishDue()); };
    while (!due() && Clock::now() < end)
        m_wake.wait_until(lock, m_wishNew ? std::min(end, WishDue()) : end);
}

SoundRenderer::Clock::time_point SoundRenderer::WishDue() const
{
    if (!m_wish.playing)
        return Clock::time_point::min();
    const Clock::time_point settled =
        std::min(m_wishLastAt + kWishSettles, m_wishFirstAt + kWishWaitsAtMost);
    return std::max(settled, m_takenAt + kBetweenWishes);
}

void SoundRenderer::TakeWish()
{
    std::vector<std::shared_ptr<SoundDecoder>> left; // their end takes time, and no lock
    const std::scoped_lock lock(m_wishMutex);
    const Clock::time_point now = Clock::now();
    if (!m_wishNew || now < WishDue())
        return;
    m_wishNew = false;
    left.swap(m_leftSounds);
    m_started = m_started && m_wish.sound == m_now.sound;
    m_done = m_done && m_wish.serial == m_now.serial;
    m_silentSince.reset();
    m_now = m_wish;
    if (m_now.playing)
        m_takenAt = now;
}

int SoundRenderer::FramesIn(int milliseconds) const
{
    return static_cast<int>(std::int64_t{milliseconds} * m_sampleRate / 1000);
}

std::size_t SoundRenderer::SamplesIn(int milliseconds) const
{
    return static_cast<std::size_t>(FramesIn(milliseconds)) * 2;
}

// The place of the wish is not the one that is rendered: it has just been left, or faded out.
bool SoundRenderer::MovesOn() const
{
    return m_heldFrom || m_placeSerial != m_now.serial;
}

// If not, it is decoded from now on.
bool SoundRenderer::IsDecoded(std::int64_t mediaFrame)
{
    return !m_now.sound->Read(mediaFrame, m_block).notYet;
}

// The former place sounds on until there is something of the new one, as long as there is enough
// of it for the change.
bool SoundRenderer::AwaitsPlace()
{
    return MovesOn() && !m_timeline.End() &&
           m_ring.HeldFrames() > FramesIn(kKeptAtChangeMs + kCrossfadeMs) &&
           !IsDecoded(m_now.startFrame);
}

// Does what is to be done now, and returns the time until there may be more.
SoundRenderer::Clock::duration SoundRenderer::Work()
{
    const bool plays = m_now.playing && !m_done && m_now.sound;
    if (!plays || !m_started) {
        if (m_now.sound && !m_now.playing)
            IsDecoded(m_now.startFrame);           // soon, when it is to go on there
        const Clock::duration rest = FallSilent(); // the former sound, too
        if (!plays || !m_outputPaused)
            return rest;
        StartAt(m_now.startFrame);
    } else {
        const AudioOutput::State state = m_output.GetState();
        const bool silent = state == AudioOutput::State::Waiting && MovesOn();
        if (silent || state == AudioOutput::State::Interrupted)
            Recover();
    }
    FillRing();
    if (!m_begun && CanBegin()) {
        m_begun = true;
        m_output.Begin();
    }
    const Clock::duration rest =
        m_awaitsPlace ? std::min<Clock::duration>(Watch(), kLooksForPlaceEvery) : Watch();
    const bool behind = !m_starved && !m_done && m_ring.RoomFrames() >= kBlockFrames;
    return behind ? Clock::duration::zero() : rest;
}

void SoundRenderer::PauseOutput()
{
    m_started = false;
    if (!std::exchange(m_outputPaused, true))
        m_output.Pause();
}

// Fades what sounds, and pauses the output once that has been heard.
SoundRenderer::Clock::duration SoundRenderer::FallSilent()
{
    if (m_output.GetState() != AudioOutput::State::Running)
        PauseOutput();
    if (m_outputPaused)
        return kSleepsAtMost;
    if (!m_heldFrom)
        FadeOut();
    std::ranges::fill(m_block, 0.0F);
    while (m_ring.RoomFrames() >= kBlockFrames)
        WriteBlock(m_block);
    const Clock::duration left = TimeUntil(*m_heldFrom, m_output.HeardFrames());
    if (left <= Clock::duration::zero()) {
        PauseOutput();
        return kSleepsAtMost;
    }
    return std::min<Clock::duration>(kRefillEvery, left);
}

// Of what the output has not taken yet.
void SoundRenderer::FadeOut()
{
    std::vector<float> fade(SamplesIn(kFadeMs));
    const int taken = m_ring.TakeBack(0, fade);
    const auto frames = std::min(static_cast<std::size_t>(taken), fade.size() / 2);
    for (std::size_t i = 0; i < frames * 2; ++i) {
        const auto past = static_cast<float>(i / 2 + 1);
        fade[i] *= 1.0F - past / static_cast<float>(frames + 1);
    }
    m_renderedFrames -= taken;
    WriteBlock(std::span(fade).first(frames * 2));
    m_heldFrom = m_renderedFrames + FramesIn(kSilenceBeforeHeldMs);
}

void SoundRenderer::StartAt(std::int64_t mediaFrame)
{
    m_sampleRate = m_now.sound->SampleRate();
    m_shape = m_now.shape;
    // In the middle of the sound it comes out of silence; at its start it is as it is.
    std::vector<float> silence(mediaFrame > 0 ? SamplesIn(kFadeMs) : 0);
    m_shaper.Start(*m_now.sound, mediaFrame, m_shape, std::move(silence));
    {
        const std::scoped_lock lock(m_timelineMutex);
        m_output.Restart(m_sampleRate, *this);
        m_tap.Restart();
        m_timeline.Restart(mediaFrame, m_shape.speed);
        m_timelineRate = m_sampleRate;
        m_placeSerial = m_now.serial;
        m_placeFrame = 0;
    }
    m_ring.Reset(FramesIn(kRingMs));
    m_guide.Restart(m_sampleRate);
    m_soundGain.Restart(m_sampleRate);
    m_gain.Restart(m_sampleRate);
    m_renderedFrames = 0;
    m_started = true;
    m_outputPaused = false;
    m_heldFrom.reset();
    m_begun = false;
}

// Goes on at the first frame that has not been played of the place.
void SoundRenderer::Recover()
{
    const auto played = PlayedMediaFrame(m_now.serial);
    StartAt(played ? std::llround(*played) : m_now.startFrame);
}

// What is in the ring beyond the next moment is rendered again: in another shape, at another place.
void SoundRenderer::Change()
{
    const bool moves = MovesOn();
    m_shape = m_now.shape;
    const int kept = FramesIn(kKeptAtChangeMs);
    const std::optional<std::int64_t> end = m_timeline.End();
    if (!moves && end && m_renderedFrames - std::max(m_ring.HeldFrames() - kept, 0) >= *end)
        return; // silence only
    std::vector<float> tail(SamplesIn(kCrossfadeMs));
    const int taken = m_ring.TakeBack(kept, tail);
    if (!m_heldFrom) {
        const std::size_t inTail = std::min(static_cast<std::size_t>(taken) * 2, tail.size());
        m_shaper.Render(std::span(tail).subspan(inTail));
    }
    m_renderedFrames -= taken;
    const std::int64_t mediaFrame =
        moves ? m_now.startFrame
              : std::llround(m_timeline.MediaAt(static_cast<double>(m_renderedFrames)));
    m_shaper.Change(mediaFrame, m_shape, std::move(tail));
    const std::scoped_lock lock(m_timelineMutex);
    m_timeline.Change(m_renderedFrames, mediaFrame, m_shape.speed);
    if (moves) {
        m_heldFrom.reset();
        m_placeSerial = m_now.serial;
        m_placeFrame = m_renderedFrames;
    }
}

// A few blocks at a time, so that a new wish is not kept waiting.
void SoundRenderer::FillRing()
{
    m_starved = m_awaitsPlace = AwaitsPlace();
    if (m_awaitsPlace)
        return;
    if (m_shape != m_now.shape || MovesOn())
        Change();
    for (int i = 0; i < kBlocksAtOnce && !m_starved; ++i)
        if (m_ring.RoomFrames() >= kBlockFrames)
            RenderBlock();
}

void SoundRenderer::RenderBlock()
{
    SoundShaper::Block block;
    if (!m_timeline.End()) {
        block = m_shaper.Render(m_block);
        m_starved = !block.atEnd && block.frames < kBlockFrames;
    }
    std::size_t samples = static_cast<std::size_t>(block.frames) * 2;
    if (block.atEnd) {
        const std::scoped_lock lock(m_timelineMutex);
        m_timeline.SetEnd(m_renderedFrames + block.frames);
    }
    if (m_timeline.End()) {
        // Silence follows the sound until its last frame has been heard.
        std::fill(m_block.begin() + block.frames * 2, m_block.end(), 0.0F);
        samples = m_block.size();
    }
    WriteBlock(std::span(m_block).first(samples));
}

void SoundRenderer::WriteBlock(std::span<const float> stereo)
{
    m_ring.Write(stereo);
    m_renderedFrames += static_cast<std::int64_t>(stereo.size() / 2);
}

SoundRenderer::Clock::duration SoundRenderer::TimeUntil(std::int64_t outputFrame,
                                                        double heard) const
{
    const double frames = static_cast<double>(outputFrame) - heard;
    if (frames <= 0.0)
        return Clock::duration::zero();
    // A moment at least: a count that stands still is not asked again and again.
    const std::chrono::duration<double> time(frames / m_sampleRate);
    return std::max<Clock::duration>(std::chrono::duration_cast<Clock::duration>(time), 1ms);
}

bool SoundRenderer::CanBegin() const
{
    return m_ring.HeldFrames() >= FramesIn(kBeginsWithMs);
}

SoundRenderer::Clock::duration SoundRenderer::Watch()
{
    const std::optional<std::int64_t> end = m_timeline.End();
    {
        const std::scoped_lock lock(m_timelineMutex);
        // The ear may come back to what is so far behind.
        m_timeline.Forget(m_output.HeardFrames() - FramesIn(kLongestSoundDelayMs));
    }
    if (m_begun && m_output.GetState() == AudioOutput::State::Waiting) {
        const Clock::time_point now = Clock::now();
        const bool isLong = now - *(m_silentSince = m_silentSince.value_or(now)) > kSilenceBearable;
        // A server that has just been started, on a busy machine, may be slow.
        if (isLong && !m_output.IsAnswerDue()) {
            m_silentSince.reset();
            m_report(Event::NoDevice, m_now.serial);
        }
        return kRefillEvery;
    }
    m_silentSince.reset();
    if (!end)
        return kRefillEvery;
    // The last of the sound is to be played, and to reach the ear.
    const double heard = std::min(m_output.HeardFrames(), EarFrames(m_sampleRate));
    const Clock::duration left = TimeUntil(*end, heard);
    if (left <= Clock::duration::zero()) {
        m_done = true;
        PauseOutput();
        m_report(Event::Finished, m_now.serial);
        return kSleepsAtMost;
    }
    return std::min<Clock::duration>(kRefillEvery, left);
}

} // namespace lantern
