// SPDX-License-Identifier: GPL-3.0-or-later
#include "ByteSource.h"
#include "LoudnessScan.h"
#include "Moment.h"
#include "SoundMeter.h"
#include "TestSounds.h"
#include "WorkLimit.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <optional>

namespace lantern {
namespace {

using test::Eventually;

// A tone of 1 kHz on both sides, whose peak in dB is its loudness in LUFS.
Pcm LoudTone(double db, int seconds, int rate = kRate)
{
    Pcm pcm;
    pcm.sampleRate = rate;
    const double peak = 32767 * std::pow(10, db / 20);
    for (std::int64_t i = 0; i < std::int64_t{seconds} * rate; ++i) {
        const double angle = 2 * std::numbers::pi * 997 * static_cast<double>(i) / rate;
        const auto sample = static_cast<std::int16_t>(std::lround(peak * std::sin(angle)));
        pcm.samples.insert(pcm.samples.end(), 2, sample);
    }
    return pcm;
}

Pcm Joined(Pcm first, const Pcm& second)
{
    first.samples.insert(first.samples.end(), second.samples.begin(), second.samples.end());
    return first;
}

class Sources {
public:
    void Add(Bytes bytes)
    {
        m_bytes.push_back(std::make_unique<Bytes>(std::move(bytes)));
        m_sources.push_back(OpenMemoryBytes(*m_bytes.back()));
    }
    std::optional<SoundLoudness> Whole(const WorkLimit& limit = {}) const
    {
        return MeasureLoudness(m_sources, limit);
    }
    std::optional<SoundLoudness> Estimate() const { return EstimateLoudness(m_sources, {}); }

private:
    std::vector<std::unique_ptr<Bytes>> m_bytes;
    std::vector<std::unique_ptr<ByteSource>> m_sources;
};

std::optional<SoundLoudness> WholeOf(Bytes bytes)
{
    Sources sources;
    sources.Add(std::move(bytes));
    return sources.Whole();
}

TEST(LoudnessScan, AToneIsAsLoudAsTheStandardSays)
{
    for (const double db : {-40.0, -23.0, -16.0, -6.0}) {
        for (const int rate : {8000, 44100, 48000, 96000}) {
            const auto loudness = WholeOf(WavImage(LoudTone(db, 5, rate)));
            ASSERT_TRUE(loudness);
            EXPECT_NEAR(loudness->lufs, db, 0.2) << rate;
            EXPECT_NEAR(20 * std::log10(loudness->truePeak), db, 0.2) << rate;
            EXPECT_TRUE(loudness->isWhole);
        }
    }
}

TEST(LoudnessScan, FloatsAndOtherKindsAreMeasuredLikewise)
{
    const Pcm tone = LoudTone(-20, 5);
    const std::vector<float> floats = StereoFloats(tone);
    EXPECT_NEAR(WholeOf(FloatWavImage(floats, kRate))->lufs, -20, 0.1);
    EXPECT_NEAR(WholeOf(Encoded(tone, "flac -s -f in.wav -o", "tone.flac"))->lufs, -20, 0.1);
    // The encoder takes 0.4 dB off.
    EXPECT_NEAR(WholeOf(Encoded(tone, "lame --quiet in.wav", "tone.mp3"))->lufs, -20.4, 0.2);
}

TEST(LoudnessScan, QuietPassagesDoNotCount)
{
    const Pcm song = Joined(LoudTone(-14, 20), LoudTone(-60, 20));
    EXPECT_NEAR(WholeOf(WavImage(song))->lufs, -14, 0.2);
}

TEST(LoudnessScan, SeveralSoundsAreMeasuredAsOne)
{
    Sources sources;
    sources.Add(WavImage(LoudTone(-10, 10, 48000)));
    sources.Add(WavImage(LoudTone(-16, 10)));
    sources.Add(Bytes(1000, 7)); // no sound
    const auto loudness = sources.Whole();
    ASSERT_TRUE(loudness);
    const double mean = 10 * std::log10((std::pow(10, -1) + std::pow(10, -1.6)) / 2);
    EXPECT_NEAR(loudness->lufs, mean, 0.2);
    EXPECT_NEAR(20 * std::log10(loudness->truePeak), -10, 0.1);
}

TEST(LoudnessScan, SilenceHasNoneAndNoSoundIsNotMeasured)
{
    Pcm silence;
    silence.samples.resize(std::size_t{kRate} * 4);
    const auto loudness = WholeOf(WavImage(silence));
    ASSERT_TRUE(loudness);
    EXPECT_TRUE(std::isinf(loudness->lufs));
    EXPECT_EQ(loudness->truePeak, 0);
    EXPECT_FALSE(WholeOf(Bytes(5000, 9)));
    EXPECT_FALSE(Sources().Whole());
}

TEST(LoudnessScan, SamplesThatAreNoNumbersDoNoHarm)
{
    std::vector<float> floats = StereoFloats(LoudTone(-20, 5));
    for (std::size_t i = 0; i < floats.size(); i += 5000)
        floats[i] = i % 10000 == 0 ? std::numeric_limits<float>::quiet_NaN()
                                   : std::numeric_limits<float>::infinity();
    const auto loudness = WholeOf(FloatWavImage(floats, kRate));
    ASSERT_TRUE(loudness);
    EXPECT_NEAR(loudness->lufs, -20, 0.5);
    EXPECT_TRUE(std::isfinite(loudness->truePeak));
}

TEST(LoudnessScan, WhatIsStoppedIsNoWhole)
{
    Sources sources;
    sources.Add(WavImage(LoudTone(-20, 5)));
    WorkLimit limit;
    limit.Stop();
    const auto loudness = sources.Whole(limit);
    EXPECT_TRUE(!loudness || !loudness->isWhole);
}

TEST(LoudnessScan, AnEstimateIsNearTheWholeAlsoOfAQuietBeginning)
{
    const Pcm song = Joined(Joined(LoudTone(-50, 15), LoudTone(-18, 50)), LoudTone(-12, 25));
    for (const char* command : {"", "flac -s -f in.wav -o", "lame --quiet in.wav"}) {
        Sources sources;
        sources.Add(*command != '\0' ? Encoded(song, command, "song.x") : WavImage(song));
        const auto whole = sources.Whole();
        const auto estimate = sources.Estimate();
        ASSERT_TRUE(whole && estimate) << command;
        EXPECT_NEAR(estimate->lufs, whole->lufs, 1.0) << command;
        EXPECT_FALSE(estimate->isWhole);
    }
}

TEST(LoudnessScan, NothingIsEstimatedOfAShortSoundNorOfAModule)
{
    Sources tone;
    tone.Add(WavImage(LoudTone(-20, 5)));
    EXPECT_FALSE(tone.Estimate());
    Sources module;
    module.Add(ModImage());
    EXPECT_FALSE(module.Estimate());
}

class SoundMeterCase : public testing::Test {
protected:
    SoundMeterCase()
    {
        if (!QCoreApplication::instance())
            m_application.emplace(m_argc, &m_argv);
    }
    static LoudnessMeter::Sound ImageOf(Bytes bytes)
    {
        const auto owner = std::make_shared<const Bytes>(std::move(bytes));
        return {.path = {}, .image = *owner, .imageOwner = owner};
    }
    LoudnessMeter::Measured Note()
    {
        return [this](const SoundLoudness& loudness) { m_told.push_back(loudness); };
    }
    bool EventuallyTold(auto&& predicate)
    {
        return Eventually(
            [&] {
                QCoreApplication::processEvents();
                return predicate();
            },
            std::chrono::seconds(20));
    }
    bool IsWholeTold()
    {
        return EventuallyTold([&] { return !m_told.empty() && m_told.back().isWhole; });
    }

    int m_argc = 1;
    char* m_argv = const_cast<char*>("test");
    std::optional<QCoreApplication> m_application;
    std::vector<SoundLoudness> m_told;
    SoundFolder m_folder;
};

TEST_F(SoundMeterCase, OfALongSoundAnEstimateComesFirst)
{
    using namespace std::chrono_literals;
    SoundMeter meter({.before = 0ms, .wanted = 0ms}); // nothing is soon enough
    meter.Measure({ImageOf(WavImage(LoudTone(-14, 70)))}, Note());
    EXPECT_TRUE(IsWholeTold());
    ASSERT_EQ(m_told.size(), 2U);
    EXPECT_FALSE(m_told[0].isWhole);
    EXPECT_NEAR(m_told[0].lufs, -14, 0.2);
    EXPECT_NEAR(m_told[1].lufs, -14, 0.2);
}

TEST_F(SoundMeterCase, OfASoundThatIsMeasuredInTimeNothingIsEstimated)
{
    using namespace std::chrono_literals;
    SoundMeter meter({.before = 0ms, .wanted = 100s});
    meter.Measure({ImageOf(WavImage(LoudTone(-14, 70)))}, Note());
    EXPECT_TRUE(IsWholeTold());
    EXPECT_EQ(m_told.size(), 1U);
}

TEST_F(SoundMeterCase, FilesAreMeasured)
{
    SoundMeter meter;
    const QString path = m_folder.Write(QStringLiteral("a.wav"), WavImage(LoudTone(-14, 3)));
    meter.Measure({{.path = path, .image = {}, .imageOwner = {}}}, Note());
    EXPECT_TRUE(IsWholeTold());
    EXPECT_NEAR(m_told.back().lufs, -14, 0.2);
}

TEST_F(SoundMeterCase, WhatIsNoSoundIsAsSilence)
{
    SoundMeter meter;
    meter.Measure(
        {{.path = QStringLiteral("/none"), .image = {}, .imageOwner = {}}, ImageOf(Bytes(1000, 3))},
        Note());
    EXPECT_TRUE(IsWholeTold());
    EXPECT_EQ(m_told, std::vector{SoundLoudness{.isWhole = true}});
}

TEST_F(SoundMeterCase, ANewMeasurementTakesThePlaceOfTheOld)
{
    SoundMeter meter;
    bool isOldTold = false;
    const Bytes image = WavImage(LoudTone(-14, 70));
    meter.Measure({ImageOf(image)}, [&](const SoundLoudness&) { isOldTold = true; });
    meter.Measure({ImageOf(WavImage(LoudTone(-30, 3)))}, Note());
    EXPECT_TRUE(IsWholeTold());
    EXPECT_NEAR(m_told.back().lufs, -30, 0.2);
    meter.Measure({ImageOf(image)}, [&](const SoundLoudness&) { isOldTold = true; });
    meter.Cancel();
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    QCoreApplication::processEvents();
    EXPECT_FALSE(isOldTold);
}

// What was told and is still on its way is no longer wanted, either.
TEST_F(SoundMeterCase, NothingIsToldAfterTheEndOrACancel)
{
    {
        SoundMeter meter;
        meter.Measure({ImageOf(WavImage(LoudTone(-30, 1)))}, Note());
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        meter.Cancel();
        QCoreApplication::processEvents();
        meter.Measure({ImageOf(WavImage(LoudTone(-30, 1)))}, Note());
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
    }
    QCoreApplication::processEvents();
    EXPECT_TRUE(m_told.empty());
}

TEST_F(SoundMeterCase, AnImageIsLetGoAndEndingWaitsForAMomentOnly)
{
    auto owner = std::make_shared<const Bytes>(WavImage(LoudTone(-14, 300)));
    const std::weak_ptr<const Bytes> watched = owner;
    const auto start = test::Clock::now();
    {
        SoundMeter meter;
        meter.Measure({{.path = {}, .image = *owner, .imageOwner = owner}}, Note());
        owner.reset();
        EXPECT_FALSE(watched.expired());
    }
    EXPECT_LT(test::Clock::now() - start, std::chrono::milliseconds(900));
    EXPECT_TRUE(Eventually([&] { return watched.expired(); }));
}

} // namespace
} // namespace lantern
