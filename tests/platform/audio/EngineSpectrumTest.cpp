// SPDX-License-Identifier: GPL-3.0-or-later
// The spectrum against what the ears hear at the same moment.
#include "EngineRoom.h"

#include "Listening.h"
#include "SpectrumAnalyser.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace lantern::test {
namespace {

constexpr std::size_t kBands = 55;

int BandWith(double hertz)
{
    const double part = std::log(hertz / SpectrumAnalyser::kLowestHz) /
                        std::log(SpectrumAnalyser::kHighestHz / SpectrumAnalyser::kLowestHz);
    return static_cast<int>(part * static_cast<double>(kBands));
}

class EngineSpectrum : public EngineRoom {
protected:
    struct Look {
        Moment at;
        std::array<float, kBands> strengths = {};

        int Highest() const
        {
            return static_cast<int>(std::ranges::max_element(strengths) - strengths.begin());
        }
        bool IsSilent() const
        {
            return std::ranges::all_of(strengths, [](float strength) { return strength == 0.0F; });
        }
    };

    Look Measure()
    {
        Look look{.at = Clock::now()};
        m_engine->Spectrum()->Measure(look.strengths);
        return look;
    }

    // Looks all the time until it is so; every look is kept.
    bool LookUntil(const std::function<bool(const Look&)>& done, Clock::duration atMost = 5s)
    {
        return PassUntil(
            [&] {
                m_looks.push_back(Measure());
                return done(m_looks.back());
            },
            atMost);
    }

    std::vector<Look> m_looks;
};

TEST_F(EngineSpectrum, AToneIsTheHighestBandOfTheSpectrum)
{
    for (const int rate : {44100, 48000}) {
        Load(MakeTone(rate, 3000, 1000.0));
        m_engine->Spectrum()->Listen(true);
        m_engine->StartSound();
        const float expected = // of the tone's amplitude
            static_cast<float>(1.0 -
                               20.0 * std::log10(16000.0 / 32768.0) / SpectrumAnalyser::kFloorDb);
        const float decibel = static_cast<float>(-1.0 / SpectrumAnalyser::kFloorDb);
        const auto band = static_cast<std::size_t>(BandWith(1000.0));
        EXPECT_TRUE(LookUntil([&](const Look& look) {
            return look.Highest() == BandWith(1000.0) &&
                   std::abs(look.strengths[band] - expected) < decibel;
        })) << rate;
    }
}

TEST_F(EngineSpectrum, VolumeAndKeyShowAsTheyAreHeard)
{
    Load(MakeTone(44100, 6000, 1000.0));
    m_engine->Spectrum()->Listen(true);
    m_engine->StartSound();
    const auto band = static_cast<std::size_t>(BandWith(1000.0));
    ASSERT_TRUE(LookUntil([&](const Look& look) { return look.strengths[band] > 0.89F; }));
    m_engine->SetEngineVolume(10);
    EXPECT_TRUE(LookUntil([&](const Look& look) { return look.strengths[band] < 0.65F; }));
    m_engine->SetEngineVolume(0);
    EXPECT_TRUE(LookUntil([](const Look& look) { return look.IsSilent(); }));
    m_engine->SetEngineVolume(100);
    m_engine->SetEnginePitch(10);
    const int higher = BandWith(1000.0 * std::pow(2.0, 10.0 / 12.0));
    EXPECT_TRUE(LookUntil([&](const Look& look) { return look.Highest() == higher; }));
}

TEST_F(EngineSpectrum, WhenTheSoundIsHeldOrEndsThereIsNothingAtOnce)
{
    Load(MakeTone(44100, 1500, 1000.0));
    m_engine->Spectrum()->Listen(true);
    EXPECT_TRUE(Measure().IsSilent());
    EXPECT_FALSE(m_engine->Spectrum()->IsSounding());
    m_engine->StartSound();
    const auto isHeard = [](const Look& look) { return look.Highest() == BandWith(1000.0); };
    ASSERT_TRUE(LookUntil(isHeard));
    EXPECT_TRUE(m_engine->Spectrum()->IsSounding());
    m_engine->PauseSound();
    EXPECT_TRUE(Measure().IsSilent());
    EXPECT_FALSE(m_engine->Spectrum()->IsSounding());
    m_engine->StartSound();
    ASSERT_TRUE(LookUntil(isHeard));
    m_engine->StopSound();
    EXPECT_TRUE(Measure().IsSilent());
    m_engine->StartSound();
    ASSERT_TRUE(LookUntil(isHeard));
    ASSERT_TRUE(PassUntilStatus(SoundStatus::Stopped));
    EXPECT_TRUE(Measure().IsSilent());
    m_engine->CloseSound();
    EXPECT_TRUE(Measure().IsSilent());
}

TEST_F(EngineSpectrum, NothingIsMeasuredUnlessSomebodyListens)
{
    EXPECT_TRUE(Measure().IsSilent()); // without a sound, before the start
    Load(MakeTone(44100, 4000, 1000.0));
    m_engine->StartSound();
    ASSERT_TRUE(PassUntil([this] { return m_engine->GetSoundPosition() > 300; }, 3s));
    EXPECT_TRUE(Measure().IsSilent());
    m_engine->Spectrum()->Listen(true);
    EXPECT_TRUE(LookUntil([](const Look& look) { return look.Highest() == BandWith(1000.0); }));
    m_engine->Spectrum()->Listen(false);
    EXPECT_TRUE(Measure().IsSilent());
}

TEST_F(EngineSpectrum, TheStartOfASoundIsTold)
{
    int started = 0;
    m_engine->Spectrum()->Started = [&] { ++started; };
    m_engine->StartSound();
    EXPECT_EQ(started, 0); // nothing is loaded
    Load(MakeTone(44100, 500, 1000.0));
    m_engine->StartSound();
    m_engine->StartSound();
    EXPECT_EQ(started, 1);
    m_engine->PauseSound();
    m_engine->StartSound();
    EXPECT_EQ(started, 2);
    m_engine->Spectrum()->Started = nullptr;
}

// When a burst begins to be heard, half of it lies in the window: its power is half of the full
// one, 3 decibels less, and so it is when it ends.
TEST_F(EngineSpectrum, ABurstIsSeenWhileItIsHeard)
{
    Pcm sound = MakeTone(44100, 6000, 1000.0);
    for (std::size_t i = 0; i < sound.samples.size(); ++i) {
        const std::size_t inPeriod = i % (2 * 33075); // 250 ms of tone, then 500 ms of silence
        sound.samples[i] = inPeriod < 2 * 11025 ? sound.samples[i] : std::int16_t{0};
    }
    const Ears ears(m_server, "studio");
    Load(sound);
    m_engine->Spectrum()->Listen(true);
    m_engine->StartSound();
    const auto stops = [this](const Look&) {
        return m_engine->GetSoundStatus() == SoundStatus::Stopped;
    };
    ASSERT_TRUE(LookUntil(stops, 15s));
    std::this_thread::sleep_for(200ms);
    const Recording heard = ears.Heard();

    const double halfDb = 20.0 * std::log10(16000.0 / 32768.0) - 3.0;
    const auto half = static_cast<float>(1.0 - halfDb / SpectrumAnalyser::kFloorDb);
    const auto isSeen = [&](const Look& look) {
        return look.strengths[static_cast<std::size_t>(BandWith(1000.0))] > half;
    };
    const auto firstAfter = [&](Moment from, bool seen) {
        const auto look = std::ranges::find_if(
            m_looks, [&](const Look& one) { return one.at > from && isSeen(one) == seen; });
        return look == m_looks.end() ? Moment::max() : look->at;
    };
    std::vector<double> errors;
    for (const Burst& burst : FindBursts(heard.stereo, Recording::kRate, 0.1)) {
        const Moment start = heard.HeardAt(burst.startFrame);
        const Moment end = heard.HeardAt(burst.startFrame + burst.lengthFrames);
        errors.push_back(Milliseconds(firstAfter(start - 150ms, true) - start));
        errors.push_back(Milliseconds(firstAfter(end - 100ms, false) - end));
    }
    ASSERT_GE(errors.size(), 12U);
    std::ranges::sort(errors);
    RecordProperty("earliest_ms", std::to_string(errors.front()));
    RecordProperty("middle_ms", std::to_string(errors[errors.size() / 2]));
    RecordProperty("latest_ms", std::to_string(errors.back()));
    // A look may come late on a busy machine, but most come in time.
    EXPECT_GT(errors.front(), -20.0);
    EXPECT_LT(std::abs(errors[errors.size() / 2]), 10.0);
    EXPECT_LT(errors[errors.size() * 3 / 4], 20.0);
}

} // namespace
} // namespace lantern::test
