// SPDX-License-Identifier: GPL-3.0-or-later
// What the engine tells while an output takes its frames one by one.
#include "EngineByHand.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <ranges>

#ifdef __SANITIZE_THREAD__
// The lock under which Qt posts an event to another thread cannot be seen.
extern "C" const char* __tsan_default_suppressions()
{
    return "race:QObject::event\n";
}
#endif

namespace lantern::test {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::Ge;
using testing::IsEmpty;
using testing::Le;

TEST_F(EngineByHand, DevicesAreNamedAndChosenByTheirNumber)
{
    m_output.SetDevices({{"a", QStringLiteral("First")}, {"b", QStringLiteral("Second")}});
    EXPECT_EQ(m_engine.GetDeviceName(0), QString()) << "not counted yet";
    EXPECT_EQ(m_engine.GetDeviceCount(), 2);
    EXPECT_EQ(m_engine.GetDeviceName(0), QStringLiteral("First"));
    EXPECT_EQ(m_engine.GetDeviceName(1), QStringLiteral("Second"));
    for (const int none : {-1, 2, 99}) {
        EXPECT_EQ(m_engine.GetDeviceName(none), QString());
        m_engine.SelectDevice(none);
    }
    EXPECT_THAT(m_output.Calls(), IsEmpty());
    m_engine.SelectDevice(1);
    m_engine.SelectDevice(0);
    EXPECT_THAT(m_output.Calls(), ElementsAre("Select b", "Select ")) << "the default has no name";
}

TEST_F(EngineByHand, ThereAreNoMoreDevicesThanTheirCountCanTell)
{
    m_output.SetDevices(std::vector<AudioOutput::Device>(40'000));
    EXPECT_EQ(m_engine.GetDeviceCount(), 32'767);
}

TEST_F(EngineByHand, TheSoundsNameIsHandedOn)
{
    m_engine.NameSound(QStringLiteral("Song"));
    m_engine.NameSound(QString());
    EXPECT_THAT(m_output.Calls(), ElementsAre("SetName Song", "SetName "));
}

TEST_F(EngineByHand, ItStartsOnceThereIsADevice)
{
    m_output.SetDevices({});
    EXPECT_FALSE(m_engine.EngineInit());
    EXPECT_NE(m_engine.LoadMemory(m_image), 0);
    EXPECT_EQ(m_engine.GetSoundStatus(), SoundStatus::Empty);
    m_output.SetDevices(std::vector<AudioOutput::Device>(1));
    EXPECT_TRUE(m_engine.EngineInit());
    m_output.SetDevices({});
    EXPECT_TRUE(m_engine.EngineInit()) << "it stays started";
    EXPECT_EQ(m_engine.LoadMemory(m_image), 0);
}

TEST_F(EngineByHand, ThePositionIsThatOfTheFrameHeard)
{
    Load();
    EXPECT_EQ(m_engine.GetLoadedDuration(), 2000);
    m_engine.StartSound();
    EXPECT_EQ(m_engine.GetSoundPosition(), 0);
    Play(4000);
    EXPECT_EQ(m_engine.GetSoundPosition(), 500);
    Play(4);
    EXPECT_EQ(m_engine.GetSoundPosition(), 501) << "rounded to the nearest";
    m_output.SetUnheard(800);
    EXPECT_EQ(m_engine.GetSoundPosition(), 501) << "it does not step back";
    Play(1600);
    EXPECT_EQ(m_engine.GetSoundPosition(), 601) << "5604 - 800 frames";
}

// As a wireless headset's does, while it plays.
TEST_F(EngineByHand, ALatencyThatStepsSetsThePositionNeverBackAndTellsNoEndTooSoon)
{
    Load();
    m_engine.StartSound();
    Play(4000);
    EXPECT_EQ(m_engine.GetSoundPosition(), 500);
    m_output.SetUnheard(1600);
    EXPECT_EQ(m_engine.GetSoundPosition(), 500);
    Play(800);
    EXPECT_EQ(m_engine.GetSoundPosition(), 500) << "heard for the second time";
    Play(1600);
    EXPECT_EQ(m_engine.GetSoundPosition(), 600);
    m_output.SetUnheard(0);
    EXPECT_EQ(m_engine.GetSoundPosition(), 800);
    m_output.SetUnheard(1600);
    Play(16'000 - 6400 + 1000); // and some silence behind it
    std::this_thread::sleep_for(100ms);
    QCoreApplication::processEvents();
    EXPECT_EQ(m_engine.GetSoundStatus(), SoundStatus::Playing);
    EXPECT_EQ(m_engine.GetSoundPosition(), 1925);
    Play(600);
    EXPECT_TRUE(Becomes(SoundStatus::Stopped));
    EXPECT_EQ(m_engine.GetSoundPosition(), 2000);
}

TEST_F(EngineByHand, APausedSoundStandsWhereItWasHeardLast)
{
    Load();
    m_engine.StartSound();
    Play(4000);
    m_engine.PauseSound();
    EXPECT_EQ(m_engine.GetSoundStatus(), SoundStatus::Paused);
    EXPECT_EQ(m_engine.GetSoundPosition(), 500);
    EXPECT_TRUE(m_output.TakeUntilPaused());
    EXPECT_EQ(m_engine.GetSoundPosition(), 500) << "what is heard while it fades does not count";
    m_engine.StartSound();
    EXPECT_EQ(m_engine.GetSoundPosition(), 500);
    Play(800);
    EXPECT_EQ(m_engine.GetSoundPosition(), 600);
    m_engine.StopSound();
    EXPECT_EQ(m_engine.GetSoundStatus(), SoundStatus::Stopped);
    EXPECT_EQ(m_engine.GetSoundPosition(), 0);
    m_engine.PauseSound();
    EXPECT_EQ(m_engine.GetSoundStatus(), SoundStatus::Stopped);
}

TEST_F(EngineByHand, ASeekIsWhereTheSoundGoesOn)
{
    Load();
    m_engine.StartSound();
    Play(4000);
    m_engine.SeekSound(1500);
    EXPECT_EQ(m_engine.GetSoundPosition(), 1500);
    PlayOver();
    const std::vector<float> heard = m_output.Take(800);
    const std::vector<float> all = StereoFloats(m_sound);
    EXPECT_TRUE(std::ranges::equal(heard, std::span(all).subspan(2 * 12'080, 2 * 800)));
    EXPECT_EQ(m_engine.GetSoundPosition(), 1610);
}

TEST_F(EngineByHand, TheEndIsToldWithTheSoundStoppedThere)
{
    Load();
    int done = 0;
    SoundStatus statusThen = SoundStatus::Empty;
    m_engine.SoundDone = [&] {
        ++done;
        statusThen = m_engine.GetSoundStatus();
    };
    m_engine.StartSound();
    Play(16'000);
    EXPECT_EQ(done, 0) << "nothing is told but by the event loop";
    EXPECT_TRUE(Becomes(SoundStatus::Stopped));
    EXPECT_EQ(done, 1);
    EXPECT_EQ(statusThen, SoundStatus::Stopped);
    EXPECT_EQ(m_engine.GetSoundPosition(), 2000);
    m_engine.StartSound();
    EXPECT_EQ(m_engine.GetSoundPosition(), 0) << "from the beginning again";
    Play(800);
    EXPECT_EQ(m_engine.GetSoundPosition(), 100);
}

TEST_F(EngineByHand, AtItsEndASoundGoesOnThereUnlessItWasHeardToIt)
{
    Load();
    int done = 0;
    m_engine.SoundDone = [&] { ++done; };
    m_engine.SeekSound(2000);
    m_engine.StartSound();
    EXPECT_EQ(m_engine.GetSoundPosition(), 2000);
    EXPECT_TRUE(Becomes(SoundStatus::Stopped));
    EXPECT_EQ(done, 1);
    EXPECT_EQ(m_engine.GetSoundPosition(), 2000);

    m_engine.StartSound();
    EXPECT_EQ(m_engine.GetSoundPosition(), 0) << "it was heard to its end";
    Play(16'000);
    m_engine.PauseSound(); // before the end is told
    EXPECT_EQ(m_engine.GetSoundPosition(), 2000);
    m_engine.StartSound();
    EXPECT_EQ(m_engine.GetSoundPosition(), 2000);
    EXPECT_TRUE(m_output.TakeUntilPaused());
    EXPECT_TRUE(Becomes(SoundStatus::Stopped));
    EXPECT_EQ(done, 2);
}

TEST_F(EngineByHand, TheEndOfAPlaceThatWasLeftIsNotTold)
{
    Load();
    int done = 0;
    m_engine.SoundDone = [&] { ++done; };
    m_engine.StartSound();
    Play(16'000);
    EXPECT_TRUE(Eventually([this] { return m_output.IsPaused(); })) << "the report is on its way";
    m_engine.SeekSound(100);
    QCoreApplication::processEvents();
    EXPECT_EQ(done, 0);
    EXPECT_EQ(m_engine.GetSoundStatus(), SoundStatus::Playing);
    EXPECT_EQ(m_engine.GetSoundPosition(), 100);
}

TEST_F(EngineByHand, TheEndOfASoundThatWasPausedInTimeIsNotTold)
{
    Load();
    int done = 0;
    m_engine.SoundDone = [&] { ++done; };
    m_engine.StartSound();
    Play(16'000);
    EXPECT_TRUE(Eventually([this] { return m_output.IsPaused(); }));
    m_engine.PauseSound();
    QCoreApplication::processEvents();
    EXPECT_EQ(done, 0);
    EXPECT_EQ(m_engine.GetSoundStatus(), SoundStatus::Paused);
}

TEST_F(EngineByHand, WithoutADeviceItPausesWhereItIsAndTellsNoEnd)
{
    Load();
    int done = 0;
    m_engine.SoundDone = [&] { ++done; };
    m_engine.SeekSound(700);
    m_output.SetHasDevice(false);
    m_engine.StartSound();
    EXPECT_TRUE(Becomes(SoundStatus::Paused));
    EXPECT_EQ(m_engine.GetSoundPosition(), 700);
    EXPECT_EQ(done, 0);
}

TEST_F(EngineByHand, TheValuesReachTheSound)
{
    Load();
    m_engine.SetEngineVolume(50);
    m_engine.SetEngineBalance(25);
    m_engine.SetEngineTempo(50);
    m_engine.StartSound();
    Play(4000);
    EXPECT_EQ(m_engine.GetSoundPosition(), 750);
    m_engine.SetEngineTempo(0);
    m_engine.SeekSound(1000);
    PlayOver();
    const std::vector<float> heard = m_output.Take(800);
    ASSERT_EQ(heard.size(), 1600U);
    const std::vector<float> all = StereoFloats(m_sound);
    for (std::size_t i = 0; i < heard.size(); i += 2) {
        ASSERT_EQ(heard[i], all[2 * 8080 + i] * 0.25F);
        ASSERT_EQ(heard[i + 1], all[2 * 8080 + i + 1] * 0.5F);
    }
}

TEST_F(EngineByHand, ADamagedSampleSilencesNoMoreThanItself)
{
    std::vector<float> noise = StereoNoise(16'000);
    noise[2000] = std::numeric_limits<float>::quiet_NaN();
    noise[2003] = std::numeric_limits<float>::infinity();
    noise[2006] = std::numeric_limits<float>::max();
    const Bytes image = FloatWavImage(noise, 8000);
    ASSERT_TRUE(m_engine.EngineInit());
    for (const int key : {0, 3}) {
        ASSERT_EQ(m_engine.LoadMemory(image), 0);
        m_engine.SetEnginePitch(key);
        m_engine.StartSound();
        const std::vector<float> heard = m_output.Take(14'000);
        ASSERT_EQ(heard.size(), 28'000U);
        const auto isSound = [](float sample) { return std::abs(sample) < 4.0F; };
        EXPECT_TRUE(std::ranges::all_of(heard, isSound)) << "key " << key;
        const auto isLoud = [](float sample) { return std::abs(sample) > 0.2F; };
        EXPECT_GT(std::ranges::count_if(heard | std::views::drop(8000), isLoud), 2000);
        m_engine.CloseSound();
    }
}

TEST_F(EngineByHand, ValuesSetBeforeTheStartHoldFromTheFirstFrame)
{
    m_engine.SetEngineVolume(50);
    Load();
    m_engine.StartSound();
    const std::vector<float> heard = m_output.Take(100);
    ASSERT_EQ(heard.size(), 200U);
    const std::vector<float> all = StereoFloats(m_sound);
    for (std::size_t i = 0; i < heard.size(); ++i) {
        ASSERT_EQ(heard[i], all[i] * 0.5F);
    }
}

TEST_F(EngineByHand, TheSpectrumIsThatOfWhatIsHeard)
{
    std::array<float, 20> strengths = {};
    const auto isSilent = [&] {
        strengths.fill(9.0F);
        m_engine.Spectrum()->Measure(strengths);
        EXPECT_THAT(strengths, testing::Each(AllOf(Ge(0.0F), Le(1.0F))));
        return std::ranges::count(strengths, 0.0F) == std::ssize(strengths);
    };
    EXPECT_TRUE(isSilent());
    m_engine.Spectrum()->Listen(true); // kept until it starts
    Load();
    EXPECT_TRUE(isSilent());
    m_engine.StartSound();
    Play(8800);
    m_output.SetUnheard(200);
    EXPECT_FALSE(isSilent());
    EXPECT_TRUE(m_engine.Spectrum()->IsSounding());
    m_output.SetUnheard(0);
    EXPECT_TRUE(isSilent()) << "the output has nothing more to play";
    m_output.SetUnheard(200);
    m_engine.Spectrum()->Listen(false);
    EXPECT_TRUE(isSilent());
    m_engine.Spectrum()->Listen(true);
    Play(1000);
    EXPECT_FALSE(isSilent());
    m_engine.PauseSound();
    EXPECT_TRUE(isSilent());
    EXPECT_FALSE(m_engine.Spectrum()->IsSounding());
}

// To fill its ring in another key it works for a quarter of a second and longer, without a rest.
TEST_F(EngineByHand, ToCloseASoundWaitsForNoRendererThatIsBehind)
{
    const Bytes image = WavImage(MakeTicks(192'000, 2, 96'000));
    ASSERT_TRUE(m_engine.EngineInit());
    m_engine.SetEnginePitch(3);
    std::array<Clock::duration, 5> times = {};
    for (Clock::duration& time : times) {
        ASSERT_EQ(m_engine.LoadMemory(image), 0);
        m_engine.StartSound();
        std::this_thread::sleep_for(60ms);
        const Moment asked = Clock::now();
        m_engine.CloseSound();
        time = Clock::now() - asked;
    }
    std::ranges::sort(times);
    EXPECT_LT(Milliseconds(times[2]), 10.0);
}

TEST_F(EngineByHand, AClosedSoundIsGone)
{
    Load();
    m_engine.StartSound();
    Play(800);
    m_engine.CloseSound();
    EXPECT_EQ(m_engine.GetSoundStatus(), SoundStatus::Empty);
    EXPECT_EQ(m_engine.GetSoundPosition(), 0);
    EXPECT_EQ(m_engine.GetLoadedDuration(), 0);
    EXPECT_TRUE(m_output.TakeUntilPaused());
    Load();
    EXPECT_EQ(m_engine.GetSoundStatus(), SoundStatus::Stopped);
    EXPECT_EQ(m_engine.GetSoundPosition(), 0);
    m_engine.StartSound();
    Play(800);
    EXPECT_EQ(m_engine.GetSoundPosition(), 100);
}

} // namespace
} // namespace lantern::test
