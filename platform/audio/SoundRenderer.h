// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AudioOutput.h"
#include "ChannelGuide.h"
#include "SoundDecoder.h"
#include "SoundGain.h"
#include "SoundRing.h"
#include "SoundShaper.h"
#include "SoundTap.h"
#include "SoundTimeline.h"
#include "StereoGain.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace lantern {

// The thread between a sound and the output: it shapes the sound a little ahead of what is heard,
// and knows which frame of the sound that is.
//
// The user-interface thread says what it wishes and never waits; the renderer comes after. Wishes
// that follow each other within milliseconds are taken as one: a caller may hold the tempo at
// neutral around a seek, or drag a slider, without each step being heard.
class SoundRenderer final : private AudioOutput::Source {
public:
    struct Wish {
        // None if nothing is loaded. Shared, so that the user-interface thread can go on while the
        // renderer still works on it.
        std::shared_ptr<SoundDecoder> sound;
        std::uint64_t serial = 0; // another number is another place: a load, a seek, a start
        std::int64_t startFrame = 0;
        SoundShape shape;
        bool playing = false;
    };
    enum class Event {
        Finished, // the sound has been heard to its end
        NoDevice  // there is no device, and has been none for a while
    };
    // Called on the renderer's thread, with the serial of the wish that it concerns.
    using Report = std::function<void(Event, std::uint64_t serial)>;

    SoundRenderer(AudioOutput& output, Report report);
    ~SoundRenderer();

    // The sound of a former wish ends on the renderer's thread, unless the caller keeps it.
    void SetWish(Wish wish);
    void SetSoundGain(float factor);
    void SetLevel(StereoLevel level) { m_gain.SetTarget(level); }
    // By how much later than the output says the ear hears, in milliseconds; any time.
    void SetDelay(int ms) { m_delayMs = ms; }
    void SetVoiceGuide(VoiceGuide guide) { m_guide.SetTarget(guide); }

    // The frame of the sound that is heard now; none as long as nothing is heard of the place with
    // this serial.
    std::optional<double> HeardMediaFrame(std::uint64_t serial);
    // The same as the output says, without the delay: the sound goes on from there.
    std::optional<double> PlayedMediaFrame(std::uint64_t serial);

    // Keeps the latest sound for HearAround, or no longer.
    void Listen(bool on) { m_tap.Listen(on); }
    // Copies the sound in whose middle lies what is heard now, as it goes to the device. False if
    // nothing is heard of the place with this serial. On the thread that calls Listen.
    bool HearAround(std::uint64_t serial, std::span<float> stereo);

private:
    using Clock = std::chrono::steady_clock;

    int Fill(std::span<float> stereo) override;
    std::optional<double> MediaFrameAt(double outputFrame, std::uint64_t serial) const;
    double EarFrames(int sampleRate);
    void Run();
    void TakeWish();
    Clock::time_point WishDue() const;
    void SleepFor(Clock::duration rest);
    Clock::duration Work();
    void PauseOutput();
    Clock::duration FallSilent();
    void FadeOut();
    void StartAt(std::int64_t mediaFrame);
    void Recover();
    int FramesIn(int milliseconds) const;
    std::size_t SamplesIn(int milliseconds) const;
    bool MovesOn() const;
    bool IsDecoded(std::int64_t mediaFrame);
    bool AwaitsPlace();
    void Change();
    void FillRing();
    void RenderBlock();
    void WriteBlock(std::span<const float> stereo);
    Clock::duration TimeUntil(std::int64_t outputFrame, double heard) const;
    bool CanBegin() const;
    Clock::duration Watch();

    AudioOutput& m_output;
    Report m_report;
    SoundRing m_ring;
    std::atomic<int> m_delayMs = 0;
    ChannelGuide m_guide;
    SoundGain m_soundGain;
    StereoGain m_gain;
    SoundTap m_tap;

    std::mutex m_wishMutex; // guards what follows; held for moments
    std::condition_variable m_wake;
    Wish m_wish;
    std::vector<std::shared_ptr<SoundDecoder>> m_leftSounds;
    bool m_wishNew = false;
    bool m_quit = false;
    Clock::time_point m_wishFirstAt;
    Clock::time_point m_wishLastAt;
    Clock::time_point m_takenAt;

    // The renderer's thread's own:
    Wish m_now;
    SoundShaper m_shaper;
    SoundShape m_shape;   // as rendered now
    int m_sampleRate = 0; // of the output
    std::vector<float> m_block;
    std::int64_t m_renderedFrames = 0;
    bool m_started = false; // the output is on, with m_now's sound
    bool m_begun = false;
    std::optional<std::int64_t> m_heldFrom; // an output frame: since the sound fades
    bool m_starved = false;                 // the decoder has no more as yet
    bool m_awaitsPlace = false;             // nor anything of the place that was sought
    bool m_outputPaused = true;
    bool m_done = false;
    std::optional<Clock::time_point> m_silentSince;

    std::mutex m_timelineMutex; // guards what follows, and keeps it in step with the output
    SoundTimeline m_timeline;
    int m_timelineRate = 1; // frames of the output in a second
    std::optional<std::uint64_t> m_placeSerial;
    std::int64_t m_placeFrame = 0; // the first of the output's that is of this place

    std::thread m_thread; // last: it uses all of the above
};

} // namespace lantern
