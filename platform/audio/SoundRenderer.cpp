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
constexpr auto kSilenceBearable = 1500ms;
constexpr auto kSleepsAtMost = 1h;
constexpr int kBlockFrames = 256;

constexpr int kBlocksAtOnce = 8;

// Deep enough for a busy machine.
constexpr int kRingMs = 250;
constexpr int kBeginsWithMs = 45;
constexpr int kKeptAtChangeMs = 30;
constexpr int kCrossfadeMs = 10;

int FramesIn(int milliseconds, int sampleRate)
{
    return static_cast<int>(std::int64_t{milliseconds} * sampleRate / 1000);
}

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
        if (m_wish.sound && m_wish.sound != wish.sound) {
            m_leftSounds.push_back(std::move(m_wish.sound));
        }
        m_wish = std::move(wish);
        m_wishLastAt = Clock::now();
        if (!std::exchange(m_wishNew, true)) {
            m_wishFirstAt = m_wishLastAt;
        }
    }
    m_wake.notify_one();
}

std::optional<double> SoundRenderer::HeardMediaFrame(std::uint64_t serial)
{
    const std::scoped_lock lock(m_timelineMutex);
    if (m_placeSerial != serial) {
        return std::nullopt;
    }
    return m_timeline.MediaAt(m_output.HeardFrames());
}

// The output counts on ahead by the clock, but nothing is heard of what it has not been given.
bool SoundRenderer::HearAround(std::uint64_t serial, std::span<float> stereo)
{
    const std::scoped_lock lock(m_timelineMutex);
    const std::int64_t heard = std::llround(m_output.HeardFrames());
    const std::int64_t passed = m_tap.PassedFrames();
    const bool isHeard = m_output.GetState() == AudioOutput::State::Running && heard < passed;
    if (m_placeSerial != serial || !isHeard) {
        return false;
    }
    const auto frames = static_cast<std::int64_t>(stereo.size() / 2);
    m_tap.CopyOut(std::min(heard + frames / 2, passed) - frames, stereo);
    return true;
}

int SoundRenderer::Fill(std::span<float> stereo)
{
    const int frames = m_ring.Read(stereo);
    const std::span<float> filled = stereo.first(static_cast<std::size_t>(frames) * 2);
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
    while (!due() && Clock::now() < end) {
        m_wake.wait_until(lock, m_wishNew ? std::min(end, WishDue()) : end);
    }
}

SoundRenderer::Clock::time_point SoundRenderer::WishDue() const
{
    if (!m_wish.playing) {
        return Clock::time_point::min();
    }
    const Clock::time_point settled =
        std::min(m_wishLastAt + kWishSettles, m_wishFirstAt + kWishWaitsAtMost);
    return std::max(settled, m_takenAt + kBetweenWishes);
}

void SoundRenderer::TakeWish()
{
    std::vector<std::shared_ptr<SoundDecoder>> left; // their end takes time, and no lock
    const std::scoped_lock lock(m_wishMutex);
    const Clock::time_point now = Clock::now();
    if (!m_wishNew || now < WishDue()) {
        return;
    }
    m_wishNew = false;
    left.swap(m_leftSounds);
    m_started = m_started && m_wish.serial == m_now.serial && m_wish.sound == m_now.sound;
    m_done = false;
    m_silentSince.reset();
    m_now = m_wish;
    if (m_now.playing) {
        m_takenAt = now;
    }
}

// Does what is to be done now, and returns the time until there may be more.
SoundRenderer::Clock::duration SoundRenderer::Work()
{
    if (!m_now.playing || m_done || !m_now.sound) {
        PauseOutput();
        return kSleepsAtMost;
    }
    if (!m_started) {
        StartAt(m_now.startFrame);
    } else if (m_output.GetState() == AudioOutput::State::Interrupted) {
        Recover();
    } else if (m_outputPaused) {
        m_output.Resume();
    }
    m_outputPaused = false;
    FillRing();
    if (!m_begun && CanBegin()) {
        m_begun = true;
        m_output.Begin();
    }
    const Clock::duration rest = Watch();
    const bool behind = !m_starved && !m_done && m_ring.RoomFrames() >= kBlockFrames;
    return behind ? Clock::duration::zero() : rest;
}

void SoundRenderer::PauseOutput()
{
    if (!std::exchange(m_outputPaused, true)) {
        m_output.Pause();
    }
}

void SoundRenderer::StartAt(std::int64_t mediaFrame)
{
    const int rate = m_now.sound->SampleRate();
    m_shape = m_now.shape;
    m_shaper.Start(*m_now.sound, mediaFrame, m_shape);
    {
        const std::scoped_lock lock(m_timelineMutex);
        m_output.Restart(rate, *this);
        m_tap.Restart();
        m_timeline.Restart(mediaFrame, m_shape.speed);
        m_placeSerial = m_now.serial;
    }
    m_ring.Reset(FramesIn(kRingMs, rate));
    m_gain.Restart(rate);
    m_renderedFrames = 0;
    m_started = true;
    m_begun = false;
}

// Goes on at the first frame that has not been heard.
void SoundRenderer::Recover()
{
    StartAt(std::llround(HeardMediaFrame(m_now.serial).value_or(0.0)));
}

// What is in the ring beyond the next moment is rendered again in the new shape.
void SoundRenderer::ChangeShape()
{
    m_shape = m_now.shape;
    const int rate = m_now.sound->SampleRate();
    const int kept = FramesIn(kKeptAtChangeMs, rate);
    const std::optional<std::int64_t> end = m_timeline.End();
    if (end && m_renderedFrames - std::max(m_ring.HeldFrames() - kept, 0) >= *end) {
        return; // silence only
    }
    std::vector<float> tail(static_cast<std::size_t>(FramesIn(kCrossfadeMs, rate)) * 2);
    const int taken = m_ring.TakeBack(kept, tail);
    const std::size_t inTail = std::min(static_cast<std::size_t>(taken) * 2, tail.size());
    const auto further = m_shaper.Render(std::span(tail).subspan(inTail));
    tail.resize(inTail + static_cast<std::size_t>(further.frames) * 2);

    m_renderedFrames -= taken;
    const auto outputFrame = static_cast<double>(m_renderedFrames);
    const std::int64_t mediaFrame = std::llround(m_timeline.MediaAt(outputFrame));
    m_shaper.Change(mediaFrame, m_shape, std::move(tail));
    const std::scoped_lock lock(m_timelineMutex);
    m_timeline.Change(m_renderedFrames, mediaFrame, m_shape.speed);
}

// A few blocks at a time, so that a new wish is not kept waiting.
void SoundRenderer::FillRing()
{
    if (m_shape != m_now.shape) {
        ChangeShape();
    }
    m_starved = false;
    for (int i = 0; i < kBlocksAtOnce && !m_starved; ++i) {
        if (m_ring.RoomFrames() >= kBlockFrames) {
            RenderBlock();
        }
    }
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
    m_ring.Write(std::span(m_block).first(samples));
    m_renderedFrames += static_cast<std::int64_t>(samples / 2);
}

bool SoundRenderer::CanBegin() const
{
    return m_ring.HeldFrames() >= FramesIn(kBeginsWithMs, m_now.sound->SampleRate());
}

SoundRenderer::Clock::duration SoundRenderer::Watch()
{
    const double heard = m_output.HeardFrames();
    const std::optional<std::int64_t> end = m_timeline.End();
    {
        const std::scoped_lock lock(m_timelineMutex);
        m_timeline.Forget(heard);
    }
    if (m_begun && m_output.GetState() == AudioOutput::State::Waiting) {
        const Clock::time_point now = Clock::now();
        if (now - *(m_silentSince = m_silentSince.value_or(now)) > kSilenceBearable) {
            m_silentSince.reset();
            m_report(Event::NoDevice, m_now.serial);
        }
        return kRefillEvery;
    }
    m_silentSince.reset();
    if (!end) {
        return kRefillEvery;
    }
    const double left = (static_cast<double>(*end) - heard) / m_now.sound->SampleRate();
    if (left <= 0.0) {
        m_done = true;
        PauseOutput();
        m_report(Event::Finished, m_now.serial);
        return kSleepsAtMost;
    }
    const auto exactly =
        std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(left));
    return std::min<Clock::duration>(kRefillEvery, exactly + 1us);
}

} // namespace lantern
