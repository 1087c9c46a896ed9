// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AudioEngine.h"
#include "Ears.h"
#include "Moment.h"
#include "SoundServer.h"
#include "TestSounds.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <vector>

namespace lantern::test {

// A level that only a sound has.
inline constexpr double kSomething = 0.05;

// A room with a sound server of its own, the real engine and ears. The position of the engine is
// looked at every millisecond while time passes, and must never step back unless it was sought.
class EngineRoom : public testing::Test {
protected:
    explicit EngineRoom(const std::vector<PulseSink>& sinks = {{"studio", "Studio Speakers"},
                                                               {"stage", "Stage HDMI Output"}});
    ~EngineRoom() override;

    void Load(const Pcm& pcm);
    // Lets time pass with the event loop turning.
    void Pass(Clock::duration time);
    bool PassUntil(const std::function<bool()>& done, Clock::duration atMost);
    void Seek(std::int32_t positionMs);
    bool PassUntilStatus(SoundStatus status, Clock::duration atMost = 5s);

    // What the engine told at that moment, in milliseconds and parts of one.
    double PositionAt(Moment moment) const;

    const std::shared_ptr<SoundServer> m_lentServer;
    SoundServer& m_server;
    std::vector<std::uint8_t> m_image; // the engine reads it: it goes after that
    std::unique_ptr<AudioEngine> m_engine;
    int m_doneCount = 0;
    Moment m_doneAt;

private:
    struct Glance {
        Moment at;
        std::int32_t positionMs = 0;
    };
    void Look();

    std::vector<Glance> m_glances;
    std::int32_t m_lastMs = 0;
};

// Noise in which each frame can be told from every other, by its neighbours.
Pcm MakeNoise(int sampleRate, int milliseconds);
Pcm MakeTone(int sampleRate, int milliseconds, double hertz);
// Silence with a burst of 1 kHz and 5 ms at each multiple of the period but 0.
Pcm MakeBursts(int sampleRate, int milliseconds, int periodMs);

// A stretch of a recording that is a stretch of the sound, frame for frame, bit for bit.
struct Match {
    std::int64_t recordedFrame = 0;
    std::int64_t soundFrame = 0;
    std::int64_t frames = 0;
};
// What a recording holds of a noise; stretches of fewer than 16 frames do not count.
std::vector<Match> FindMatches(const std::vector<float>& recorded, const Pcm& noise);

} // namespace lantern::test
