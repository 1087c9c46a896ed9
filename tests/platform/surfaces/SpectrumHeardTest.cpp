// SPDX-License-Identifier: GPL-3.0-or-later
// The bars on the screen against a sound that is really played.
#include "SpectrumSurface.h"

#include "Ears.h"
#include "Lent.h"
#include "Listening.h"
#include "MakeAudioEngine.h"
#include "PulseServer.h"
#include "TestSounds.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>
#include <numbers>

namespace lantern::test {
namespace {

// Hands everything on to the engine's and counts what costs something.
class CountedAnalyser : public SpectrumAnalyser {
public:
    explicit CountedAnalyser(SpectrumAnalyser& analyser) : m_analyser(analyser)
    {
        m_analyser.Started = [this] {
            if (Started)
                Started();
        };
    }

    int Measured = 0;

    void Listen(bool on) override { m_analyser.Listen(on); }
    bool IsSounding() override { return m_analyser.IsSounding(); }
    void Measure(std::span<float> strengths) override
    {
        ++Measured;
        m_analyser.Measure(strengths);
    }

private:
    SpectrumAnalyser& m_analyser;
};

class SpectrumHeard : public ::testing::Test {
protected:
    SpectrumHeard()
    {
        qputenv("PULSE_SERVER", m_server.Address().c_str());
        m_engine = MakeAudioEngine();
        EXPECT_TRUE(m_engine->EngineInit());
        m_analyser = std::make_unique<CountedAnalyser>(*m_engine->Spectrum());
        m_surface = std::make_unique<SpectrumSurface>(nullptr);
        m_surface->resize(275, 36);
        m_surface->Attach(m_analyser.get());
        m_surface->SetOn(true);
    }

    // Silence with this tone in every other half of a second.
    void LoadTones(double hertz, int seconds)
    {
        Pcm sound{.sampleRate = 44100, .channels = 2, .samples = {}};
        for (int frame = 0; frame < seconds * 44100; ++frame) {
            const double angle = 2.0 * std::numbers::pi * hertz * frame / 44100.0;
            const bool isTone = frame / 22050 % 2 == 1;
            const auto sample =
                static_cast<std::int16_t>(isTone ? std::lround(16000.0 * std::sin(angle)) : 0);
            sound.samples.insert(sound.samples.end(), {sample, sample});
        }
        m_image = WavImage(sound);
        ASSERT_EQ(m_engine->LoadMemory(m_image), 0);
    }

    static bool Turn(const std::function<bool()>& done, Clock::duration atMost = 10s)
    {
        const Moment end = Clock::now() + atMost;
        while (!done()) {
            if (Clock::now() > end)
                return false;
            QCoreApplication::processEvents();
            std::this_thread::sleep_for(1ms);
        }
        return true;
    }

    std::size_t Highest() const
    {
        const auto bars = m_surface->Motion().Bars();
        const auto highest = std::ranges::max_element(bars, {}, &SpectrumBar::height);
        return static_cast<std::size_t>(highest - bars.begin());
    }

    float HeightAt(double hertz) const
    {
        const auto bars = m_surface->Motion().Bars();
        return bars.empty() ? 0.0F : bars[BarWith(hertz)].height;
    }

    std::size_t BarWith(double hertz) const
    {
        const double part = std::log(hertz / SpectrumAnalyser::kLowestHz) /
                            std::log(SpectrumAnalyser::kHighestHz / SpectrumAnalyser::kLowestHz);
        return static_cast<std::size_t>(part *
                                        static_cast<double>(m_surface->Motion().Bars().size()));
    }

    bool IsShown() const { return !m_surface->Motion().IsAtRest(); }

    void ExpectNothingRuns()
    {
        const int before = m_analyser->Measured;
        EXPECT_FALSE(m_surface->IsRunning());
        Turn([] { return false; }, 300ms);
        EXPECT_EQ(m_analyser->Measured, before);
    }

    const std::shared_ptr<PulseServer> m_lentServer = Lend<PulseServer>();
    PulseServer& m_server = *m_lentServer;
    std::vector<std::uint8_t> m_image;
    std::unique_ptr<AudioEngine> m_engine;
    std::unique_ptr<CountedAnalyser> m_analyser;
    std::unique_ptr<SpectrumSurface> m_surface;
};

TEST_F(SpectrumHeard, TheBarOfAToneIsHighWhenTheToneBeginsToBeHeard)
{
    const Ears ears(m_server, "studio");
    m_surface->show();
    LoadTones(1000.0, 5);
    m_engine->StartSound();
    std::vector<Moment> risen;
    bool wasHigh = false;
    EXPECT_TRUE(Turn(
        [&] {
            const bool isHigh = HeightAt(1000.0) > 0.8F;
            if (isHigh && !wasHigh) {
                risen.push_back(Clock::now());
                EXPECT_EQ(Highest(), BarWith(1000.0));
            }
            wasHigh = isHigh;
            return m_engine->GetSoundStatus() == SoundStatus::Stopped;
        },
        20s));
    std::this_thread::sleep_for(200ms);

    const Recording heard = ears.Heard();
    std::vector<double> late;
    for (const Burst& burst : FindBursts(heard.stereo, Recording::kRate, 0.1)) {
        const Moment start = heard.HeardAt(burst.startFrame);
        const auto nearest = std::ranges::min_element(
            risen, {}, [start](Moment moment) { return std::abs(Milliseconds(moment - start)); });
        ASSERT_NE(nearest, risen.end());
        late.push_back(Milliseconds(*nearest - start));
    }
    ASSERT_EQ(late.size(), 5u);
    std::ranges::sort(late);
    RecordProperty("earliest_ms", std::to_string(late.front()));
    RecordProperty("middle_ms", std::to_string(late[2]));
    RecordProperty("latest_ms", std::to_string(late.back()));
    // Half of the window comes before; then there is the wait for the next frame of the screen.
    EXPECT_GT(late.front(), -50.0);
    EXPECT_LT(late[2], 40.0);
}

TEST_F(SpectrumHeard, InPauseTheBarsFallToNothingAndNothingIsMeasuredAnyMore)
{
    m_surface->show();
    LoadTones(440.0, 60);
    m_engine->StartSound();
    ASSERT_TRUE(Turn([this] { return HeightAt(440.0) > 0.8F; }));
    m_engine->PauseSound();
    EXPECT_TRUE(m_surface->IsRunning());
    EXPECT_TRUE(Turn([this] { return !m_surface->IsRunning(); }));
    EXPECT_FALSE(IsShown());
    ExpectNothingRuns();
    m_engine->StartSound();
    EXPECT_TRUE(Turn([this] { return HeightAt(440.0) > 0.8F; }));
}

TEST_F(SpectrumHeard, AtTheEndOfTheSoundTheBarsFallToNothing)
{
    m_surface->show();
    LoadTones(440.0, 1);
    m_engine->StartSound();
    ASSERT_TRUE(Turn([this] { return HeightAt(440.0) > 0.8F; }));
    EXPECT_TRUE(Turn([this] { return !m_surface->IsRunning(); }));
    EXPECT_EQ(m_engine->GetSoundStatus(), SoundStatus::Stopped);
    ExpectNothingRuns();
}

TEST_F(SpectrumHeard, HiddenNothingIsMeasured)
{
    LoadTones(440.0, 60);
    m_engine->StartSound();
    ExpectNothingRuns();
    m_surface->show();
    ASSERT_TRUE(Turn([this] { return HeightAt(440.0) > 0.8F; }));
    m_surface->hide();
    ExpectNothingRuns();
    EXPECT_EQ(m_engine->GetSoundStatus(), SoundStatus::Playing);
}

} // namespace
} // namespace lantern::test
