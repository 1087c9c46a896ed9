// SPDX-License-Identifier: GPL-3.0-or-later
#include "SoundRenderer.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace lantern {

namespace {

using namespace std::chrono_literals;

// Together with the output's buffer a change is heard some 140 ms after it was wished, at most.
constexpr auto kWishSettles = 5ms;
constexpr auto kWishWaitsAtMost = 40ms;
constexpr auto kBetweenWishes = 40ms;
constexpr auto kRefillEvery = 8ms;
constexpr auto kSilenceBearable = 1500ms;
constexpr auto kSleepsAtMost = 1h;
constexpr int kBlockFrames = 256;

int RingFrames(int sampleRate)
{
    return static_cast<int>(std::int64_t{2048} * sampleRate / 44100);
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

void SoundRenderer::SetSound(SoundDecoder* sound, const Wish& wish)
{
    const std::scoped_lock lock(m_workMutex);
    m_now.playing = false;
    Halt();
    m_shaper.Stop();
    m_sound = sound;
    m_started = false;
    SetWish(wish);
}

void SoundRenderer::SetWish(const Wish& wish)
{
    {
        const std::scoped_lock lock(m_wishMutex);
        m_wish = wish;
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

int SoundRenderer::Fill(std::span<float> stereo)
{
    const int frames = m_ring.Read(stereo);
    m_gain.Apply(stereo.first(static_cast<std::size_t>(frames) * 2));
    return frames;
}

void SoundRenderer::Run()
{
    for (bool quit = false; !quit;) {
        Clock::duration rest = {};
        {
            const std::scoped_lock lock(m_workMutex);
            TakeWish();
            rest = Work();
        }
        SleepFor(rest);
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
    const std::scoped_lock lock(m_wishMutex);
    const Clock::time_point now = Clock::now();
    if (!m_wishNew || now < WishDue()) {
        return;
    }
    m_wishNew = false;
    m_started = m_started && m_wish.serial == m_now.serial;
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
    if (!m_now.playing || m_done || m_sound == nullptr) {
        Halt();
        return kSleepsAtMost;
    }
    if (!m_started) {
        StartAt(m_now.startFrame);
    } else if (m_output.GetState() == AudioOutput::State::Interrupted) {
        Recover();
    } else if (m_halted) {
        m_output.Resume();
    }
    m_halted = false;
    if (FillRing() && !std::exchange(m_begun, true)) {
        m_output.Begin();
    }
    return Watch();
}

void SoundRenderer::Halt()
{
    if (!std::exchange(m_halted, true)) {
        m_output.Pause();
    }
}

void SoundRenderer::StartAt(std::int64_t mediaFrame)
{
    const int rate = m_sound->SampleRate();
    m_shaper.Start(*m_sound, mediaFrame, m_now.shape);
    {
        const std::scoped_lock lock(m_timelineMutex);
        m_output.Restart(rate, *this);
        m_timeline.Restart(mediaFrame, m_now.shape.speed);
        m_placeSerial = m_now.serial;
    }
    m_ring.Reset(RingFrames(rate));
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

// True when the ring is full enough to begin with.
bool SoundRenderer::FillRing()
{
    if (m_shaper.Shape() != m_now.shape && !m_timeline.End()) {
        m_shaper.Change(m_now.shape);
        const std::scoped_lock lock(m_timelineMutex);
        m_timeline.Append(m_renderedFrames, m_shaper.SegmentStart(), m_now.shape.speed);
    }
    while (m_ring.RoomFrames() >= kBlockFrames) {
        SoundShaper::Block block;
        if (!m_timeline.End()) {
            block = m_shaper.Render(m_block);
        }
        std::span<float> stereo(m_block);
        if (block.atEnd || m_timeline.End()) {
            // Silence follows the sound until its last frame has been heard.
            std::ranges::fill(stereo.subspan(static_cast<std::size_t>(block.frames) * 2), 0.0F);
        } else {
            stereo = stereo.first(static_cast<std::size_t>(block.frames) * 2);
        }
        m_ring.Write(stereo);
        if (block.atEnd) {
            const std::scoped_lock lock(m_timelineMutex);
            m_timeline.SetEnd(m_renderedFrames + block.frames);
        }
        m_renderedFrames += static_cast<std::int64_t>(stereo.size() / 2);
        if (block.notYet || (block.frames == 0 && !m_timeline.End())) {
            return false;
        }
    }
    return true;
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
            m_report(Event::Speechless, m_now.serial);
        }
        return kRefillEvery;
    }
    m_silentSince.reset();
    if (!end) {
        return kRefillEvery;
    }
    const double left = (static_cast<double>(*end) - heard) / m_sound->SampleRate();
    if (left <= 0.0) {
        m_done = true;
        Halt();
        m_report(Event::Finished, m_now.serial);
        return kSleepsAtMost;
    }
    const auto exactly =
        std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(left));
    return std::min<Clock::duration>(kRefillEvery, exactly + 1us);
}

} // namespace lantern
