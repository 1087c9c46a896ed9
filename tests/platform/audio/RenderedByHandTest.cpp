// SPDX-License-Identifier: GPL-3.0-or-later
// What the renderer gives to an output, frame by frame.
#include "SoundRenderer.h"

#include "HandOutput.h"
#include "MemoryDecoder.h"
#include "TestSounds.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <tuple>

namespace lantern::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kKeptFrames = kRate * 30 / 1000;      // rendered before a change, and played
constexpr int kCrossfadeFrames = kRate * 10 / 1000; // from there on
constexpr int kFadeFrames = kRate * 5 / 1000;       // from silence and to it

// A sound that tells how many frames were asked of it last: a whole block where it is neutral.
class WatchedDecoder final : public SoundDecoder {
public:
    explicit WatchedDecoder(const std::vector<float>& stereo) : m_sound(stereo, kRate) {}

    std::size_t LastAsked() const { return m_lastAsked; }
    std::int64_t LastFrame() const { return m_lastFrame; }

    int SampleRate() const override { return m_sound.SampleRate(); }
    std::int64_t FrameCount() const override { return m_sound.FrameCount(); }
    bool DecodedToEnd() const override { return true; }
    Chunk Read(std::int64_t firstFrame, std::span<float> stereo) override
    {
        m_lastAsked = stereo.size() / 2;
        m_lastFrame = firstFrame;
        return m_sound.Read(firstFrame, stereo);
    }

private:
    MemoryDecoder m_sound;
    std::atomic<std::size_t> m_lastAsked = 0;
    std::atomic<std::int64_t> m_lastFrame = 0;
};

class RenderedByHand : public testing::Test {
protected:
    using Event = SoundRenderer::Event;

    void Play(std::uint64_t serial, std::int64_t startFrame, SoundShape shape = {})
    {
        m_renderer.SetWish({m_sound, serial, startFrame, shape, true});
    }
    std::span<const float> Of(std::int64_t first, std::int64_t frames) const
    {
        return std::span(m_noise).subspan(static_cast<std::size_t>(first) * 2,
                                          static_cast<std::size_t>(frames) * 2);
    }
    void ExpectNext(std::int64_t first, int frames)
    {
        EXPECT_TRUE(std::ranges::equal(m_output.Take(frames), Of(first, frames)))
            << frames << " frames from " << first;
    }
    // Each frame is a step louder, or softer, than it would be.
    void ExpectFade(std::int64_t first, bool in)
    {
        const std::vector<float> fade = m_output.Take(kFadeFrames);
        ASSERT_EQ(fade.size(), std::size_t{kFadeFrames} * 2);
        for (std::size_t i = 0; i < fade.size(); ++i) {
            const auto step = static_cast<float>(i / 2 + 1) / (kFadeFrames + 1);
            ASSERT_NEAR(fade[i], Of(first, kFadeFrames)[i] * (in ? step : 1.0F - step), 1e-6F) << i;
        }
    }
    bool FallsSilent()
    {
        return Eventually([this] {
            EXPECT_THAT(m_output.TakeWhatIsThere(500), testing::Each(0.0F));
            return m_output.IsPaused();
        });
    }
    bool Comes(Event event, std::uint64_t serial)
    {
        return Eventually([&] {
            const std::scoped_lock lock(m_reportMutex);
            return std::ranges::count(m_reports, std::pair{event, serial}) > 0;
        });
    }
    std::size_t Reports()
    {
        const std::scoped_lock lock(m_reportMutex);
        return m_reports.size();
    }

    const std::vector<float> m_noise = StereoNoise(60'000);
    const std::shared_ptr<WatchedDecoder> m_sound = std::make_shared<WatchedDecoder>(m_noise);
    HandOutput m_output;
    std::mutex m_reportMutex;
    std::vector<std::pair<Event, std::uint64_t>> m_reports;
    SoundRenderer m_renderer{m_output, [this](Event event, std::uint64_t serial) {
                                 const std::scoped_lock lock(m_reportMutex);
                                 m_reports.emplace_back(event, serial);
                             }};
};

TEST_F(RenderedByHand, ANeutralSoundIsGivenBitForBitFromItsStart)
{
    Play(1, 0);
    ExpectNext(0, 30'000);
    EXPECT_EQ(m_renderer.HeardMediaFrame(1), 30'000);
    EXPECT_EQ(m_renderer.HeardMediaFrame(0), std::nullopt);
    EXPECT_EQ(m_renderer.HeardMediaFrame(2), std::nullopt);
    EXPECT_THAT(m_output.Calls(), ElementsAre("Restart 44100", "Begin"));
}

TEST_F(RenderedByHand, TheEndIsToldOnceItsLastFrameIsHeardAndSilenceFollowsIt)
{
    Play(7, 55'000);
    ExpectFade(55'000, true);
    ExpectNext(55'000 + kFadeFrames, 4990 - kFadeFrames);
    m_output.SetUnheard(500);
    ExpectNext(59'990, 10);
    EXPECT_EQ(m_output.Take(100), std::vector<float>(200, 0.0F));
    std::this_thread::sleep_for(60ms);
    EXPECT_EQ(Reports(), 0U);
    m_output.SetUnheard(101);
    std::this_thread::sleep_for(30ms);
    EXPECT_EQ(Reports(), 0U);
    m_output.SetUnheard(100);
    EXPECT_TRUE(Comes(Event::Finished, 7));
    EXPECT_TRUE(Eventually([this] { return m_output.IsPaused(); }));
    EXPECT_EQ(m_renderer.HeardMediaFrame(7), 60'000);
    m_output.SetUnheard(0);
    EXPECT_EQ(m_renderer.HeardMediaFrame(7), 60'000);
    std::this_thread::sleep_for(30ms);
    EXPECT_EQ(Reports(), 1U);
}

TEST_F(RenderedByHand, FromTheMiddleItComesOutOfSilence)
{
    Play(1, 1234);
    ExpectFade(1234, true);
    ExpectNext(1234 + kFadeFrames, 30'000);
    EXPECT_EQ(m_renderer.HeardMediaFrame(1), 31'234 + kFadeFrames);
}

TEST_F(RenderedByHand, APauseFadesIsHeldOnceThatIsHeardAndGoesOnFromItsFrame)
{
    Play(1, 0);
    ExpectNext(0, 3000);
    m_output.Calls();
    m_output.SetUnheard(2000);
    m_renderer.SetWish({m_sound, 2, 1000, {}, false});
    std::this_thread::sleep_for(60ms);
    ExpectFade(3000, false);
    EXPECT_EQ(m_output.Take(2800), std::vector<float>(2 * 2800, 0.0F));
    std::this_thread::sleep_for(60ms);
    EXPECT_THAT(m_output.Calls(), IsEmpty()) << "a server may tell frames as heard too soon";
    EXPECT_TRUE(FallsSilent());
    EXPECT_THAT(m_output.Calls(), ElementsAre("Pause"));

    m_renderer.SetWish({m_sound, 2, 1000, {}, true});
    ExpectFade(1000, true);
    ExpectNext(1000 + kFadeFrames, 1000);
    EXPECT_THAT(m_output.Calls(), ElementsAre("Restart 44100", "Begin"));
    EXPECT_EQ(m_renderer.HeardMediaFrame(2), 2000 + kFadeFrames);
}

TEST_F(RenderedByHand, AnotherPlaceIsGivenSoonFadesOverAndCountsFromItsFrame)
{
    Play(1, 0);
    ExpectNext(0, 3000);
    m_output.Calls();
    for (const auto& [serial, from, to] : {std::tuple{2, 3000, 40'000}, std::tuple{3, 42'000, 9}}) {
        const auto place = static_cast<std::uint64_t>(serial);
        m_renderer.SetWish({m_sound, place, to, {}, true});
        ASSERT_TRUE(Eventually([&] { return std::abs(m_sound->LastFrame() - to) < 20'000; }));
        EXPECT_EQ(m_renderer.HeardMediaFrame(place - 1), std::nullopt);
        ExpectNext(from, kKeptFrames - 1);
        EXPECT_EQ(m_renderer.HeardMediaFrame(place), std::nullopt) << "not heard yet";
        ExpectNext(from + kKeptFrames - 1, 1);
        EXPECT_EQ(m_renderer.HeardMediaFrame(place), to);
        const std::vector<float> fading = m_output.Take(kCrossfadeFrames);
        EXPECT_NEAR(fading[0], Of(from + kKeptFrames, 1)[0], 0.01F);
        EXPECT_NEAR(fading.back(), Of(to + kCrossfadeFrames - 1, 1)[1], 0.01F);
        ExpectNext(to + kCrossfadeFrames, 2000 - kCrossfadeFrames);
    }
    EXPECT_THAT(m_output.Calls(), IsEmpty());
}

TEST_F(RenderedByHand, TheFormerPlaceSoundsOnUntilTheNewOneIsDecoded)
{
    const auto sound = std::make_shared<MemoryDecoder>(m_noise, kRate);
    sound->DecodeTo(30'000);
    m_renderer.SetWish({sound, 1, 0, {}, true});
    ExpectNext(0, 500);
    m_renderer.SetWish({sound, 2, 40'000, {}, true});
    std::this_thread::sleep_for(std::chrono::milliseconds(60));
    ExpectNext(500, 4 * kKeptFrames);
    EXPECT_FALSE(m_renderer.HeardMediaFrame(2));
    sound->DecodeTo(60'000);
    std::this_thread::sleep_for(std::chrono::milliseconds(60));
    ExpectNext(500 + 4 * kKeptFrames, kKeptFrames);
    m_output.Take(kCrossfadeFrames);
    ExpectNext(40'000 + kCrossfadeFrames, 1000);
}

TEST_F(RenderedByHand, APlaceThatIsLongInDecodingFollowsASilence)
{
    const auto sound = std::make_shared<MemoryDecoder>(m_noise, kRate);
    sound->DecodeTo(30'000);
    m_renderer.SetWish({sound, 1, 0, {}, true});
    ExpectNext(0, 500);
    m_renderer.SetWish({sound, 2, 40'000, {}, true});
    EXPECT_TRUE(Eventually([&] {
        const std::size_t frames = m_output.TakeWhatIsThere(500).size();
        return m_renderer.HeardMediaFrame(2).has_value() && frames == 0;
    }));
    sound->DecodeTo(60'000);
    const std::vector<float> begins = m_output.Take(kCrossfadeFrames);
    EXPECT_FALSE(std::ranges::equal(begins, Of(40'000, kCrossfadeFrames))) << "it fades over";
    ExpectNext(40'000 + kCrossfadeFrames, 1000);
}

TEST_F(RenderedByHand, APlaceThatNobodyHasHeardIsLeftWithoutATrace)
{
    m_output.SetHasDevice(false);
    Play(1, 0);
    EXPECT_TRUE(Eventually([this] { return m_sound->LastFrame() > 10'000; }));
    m_renderer.SetWish({m_sound, 2, 30'000, {}, true});
    EXPECT_TRUE(Eventually([this] { return m_sound->LastFrame() > 40'000; }));
    m_output.SetHasDevice(true);
    m_output.Begin();
    ExpectFade(30'000, true);
    ExpectNext(30'000 + kFadeFrames, 3000);
}

// Whatever is asked for, and however quickly: from one sample to the next is no step.
TEST_F(RenderedByHand, NoOperationMakesAStep)
{
    constexpr float kLevel = 0.6F;
    const auto flat = std::make_shared<MemoryDecoder>(std::vector<float>(120'000, kLevel), kRate);
    const auto other = std::make_shared<MemoryDecoder>(std::vector<float>(120'000, kLevel), kRate);
    m_renderer.SetWish({flat, 1, 10, {}, true});
    std::vector<float> heard = m_output.Take(2000);
    m_output.Calls();
    std::mt19937 random(5);
    const auto pick = [&](int below) { return static_cast<int>(random() % 1000) * below / 1000; };
    SoundRenderer::Wish wish = {flat, 1, 0, {}, true};
    int pauses = 0;
    for (int i = 0; i < 60; ++i) {
        ++wish.serial;
        wish.startFrame = 1 + pick(10'000);
        wish.playing = pick(3) != 0;
        wish.sound = pick(8) == 0 ? other : flat;
        m_renderer.SetWish(wish);
        for (int glances = pick(12); glances > 0; --glances) {
            const std::vector<float> more = m_output.TakeAfterCalls(1 + pick(600));
            heard.insert(heard.end(), more.begin(), more.end());
            std::this_thread::sleep_for(5ms);
        }
        pauses += m_output.IsPaused() ? 1 : 0;
    }
    EXPECT_GT(pauses, 1);
    EXPECT_GT(heard.size(), 2U * 30'000);
    float step = 0.0F;
    for (std::size_t i = 2; i < heard.size(); ++i) {
        step = std::max(step, std::abs(heard[i] - heard[i - 2]));
    }
    EXPECT_LT(step, 2.0F * kLevel / kFadeFrames);
}

TEST_F(RenderedByHand, AChangeIsGivenSoonFadesOverAndCountsFromItsFrame)
{
    Play(1, 0);
    ExpectNext(0, 5000);
    m_renderer.SetWish({m_sound, 1, 0, {0, 0.5}, true});
    ASSERT_TRUE(Eventually([this] { return m_sound->LastAsked() == 128; }));
    ExpectNext(5000, kKeptFrames);
    constexpr std::int64_t changed = 5000 + kKeptFrames;
    EXPECT_EQ(m_renderer.HeardMediaFrame(1), changed);
    const std::vector<float> fading = m_output.Take(kCrossfadeFrames);
    ASSERT_EQ(fading.size(), std::size_t{kCrossfadeFrames} * 2);
    EXPECT_NEAR(fading[0], Of(changed, 1)[0], 0.01F);
    EXPECT_NEAR(fading[3], Of(changed + 1, 1)[1], 0.02F);
    m_output.Take(2000);
    EXPECT_EQ(m_renderer.HeardMediaFrame(1), changed + (kCrossfadeFrames + 2000) / 2.0);

    // And back, in the middle of what stands for no whole frame of the sound.
    m_output.Calls();
    m_renderer.SetWish({m_sound, 1, 0, {}, true});
    const double media = changed + (kCrossfadeFrames + 2000 + kKeptFrames) / 2.0;
    ASSERT_TRUE(Eventually([this] { return m_sound->LastAsked() == 256; }));
    m_output.Take(kKeptFrames + kCrossfadeFrames);
    const auto now = m_renderer.HeardMediaFrame(1);
    ASSERT_TRUE(now);
    EXPECT_NEAR(*now, media + kCrossfadeFrames, 0.5);
    ExpectNext(static_cast<std::int64_t>(*now), 3000);
    EXPECT_THAT(m_output.Calls(), IsEmpty());
}

// Each change fades over and costs a ring of frames: a slider that is dragged makes many.
TEST_F(RenderedByHand, ChangesFollowEachOtherNoFasterThanTheyFadeOver)
{
    Play(1, 0);
    ExpectNext(0, 1000);
    const Moment asked = Clock::now();
    for (int change = 0; change < 11; ++change) {
        const bool isSlow = change % 2 == 0;
        m_renderer.SetWish({m_sound, 1, 0, {0, isSlow ? 0.8 : 1.0}, true});
        ASSERT_TRUE(
            Eventually([&] { return m_sound->LastAsked() == (isSlow ? 204U : 256U); }, 5s, 1ms));
    }
    EXPECT_GE(Milliseconds(Clock::now() - asked), 400.0);
}

TEST_F(RenderedByHand, AChangeInTheSilenceAfterTheEndChangesNothing)
{
    Play(1, 57'000);
    ExpectFade(57'000, true);
    ExpectNext(57'000 + kFadeFrames, 2990 - kFadeFrames);
    m_renderer.SetWish({m_sound, 1, 57'000, {0, 0.5}, true});
    std::this_thread::sleep_for(60ms);
    ExpectNext(59'990, 10);
    EXPECT_TRUE(Comes(Event::Finished, 1));
}

TEST_F(RenderedByHand, AfterAnInterruptionItGoesOnAtTheFirstFrameThatWasNotHeard)
{
    Play(1, 0);
    ExpectNext(0, 6000);
    m_output.SetUnheard(300);
    m_output.Calls();
    m_output.Interrupt();
    EXPECT_TRUE(Eventually([this] { return m_output.IsRunning(); }));
    EXPECT_THAT(m_output.Calls(), ElementsAre("Restart 44100", "Begin"));
    ExpectFade(5700, true);
    ExpectNext(5700 + kFadeFrames, 5000 - kFadeFrames);
    EXPECT_EQ(m_renderer.HeardMediaFrame(1), 10'700);
}

TEST_F(RenderedByHand, NoDeviceIsToldAfterAWhileAndAgain)
{
    m_output.SetHasDevice(false);
    const Moment asked = Clock::now();
    Play(3, 0);
    EXPECT_TRUE(Comes(Event::NoDevice, 3));
    EXPECT_GE(Milliseconds(Clock::now() - asked), 1500.0);
    EXPECT_TRUE(Eventually([this] { return Reports() >= 2; }));
    EXPECT_GE(Milliseconds(Clock::now() - asked), 3000.0);
}

TEST_F(RenderedByHand, ASoundThatIsDecodedTooSlowlyWaitsForItsFrames)
{
    const auto sound = std::make_shared<MemoryDecoder>(m_noise, kRate);
    sound->DecodeTo(kRate * 45 / 1000 - 1); // too few to begin with
    m_renderer.SetWish({sound, 1, 0, {}, true});
    std::this_thread::sleep_for(60ms);
    EXPECT_FALSE(m_output.IsRunning());
    sound->DecodeTo(2500);
    EXPECT_TRUE(Eventually([this] { return m_output.IsRunning(); }));
    ExpectNext(0, 2500);
    EXPECT_EQ(Reports(), 0U);
    sound->DecodeTo(60'000);
    ExpectNext(2500, 10'000);
}

TEST_F(RenderedByHand, TheLevelHoldsFromTheFirstFrameAndChangesInARamp)
{
    m_renderer.SetLevel({0.5F, 0.25F});
    Play(1, 0);
    const std::vector<float> quiet = m_output.Take(2000);
    ASSERT_EQ(quiet.size(), 4000U);
    for (std::size_t i = 0; i < quiet.size(); i += 2) {
        ASSERT_EQ(quiet[i], m_noise[i] * 0.5F);
        ASSERT_EQ(quiet[i + 1], m_noise[i + 1] * 0.25F);
    }
    m_renderer.SetLevel({1.0F, 1.0F});
    m_output.Take(kRate / 100);
    ExpectNext(2000 + kRate / 100, 2000);
}

TEST_F(RenderedByHand, ASoundHasItsGainFromTheFirstFrameAndBackAtOneItPassesAsItIs)
{
    m_renderer.SetSoundGain(0.5F);
    Play(1, 0);
    const std::vector<float> quiet = m_output.Take(2000);
    ASSERT_EQ(quiet.size(), 4000U);
    for (std::size_t i = 0; i < quiet.size(); ++i)
        ASSERT_EQ(quiet[i], m_noise[i] * 0.5F);
    m_renderer.SetSoundGain(1.0F);
    const std::vector<float> fade = m_output.Take(kRate / 2);
    for (std::size_t i = 0; i < 1000; ++i) // it takes its time
        ASSERT_NEAR(fade[i], m_noise[4000 + i] * 0.5F, 0.01F);
    ExpectNext(2000 + kRate / 2, 2000);
}

// What is louder in another key stays below -1 dB behind the gain.
TEST_F(RenderedByHand, AGainLeavesRoomForThePeaksOfAnotherKey)
{
    m_renderer.SetSoundGain(3.0F);
    Play(1, 0, {.keySemitones = 4, .speed = 1.0});
    const std::vector<float> loud = m_output.Take(kRate / 2);
    const float most = std::abs(
        *std::ranges::max_element(loud, {}, [](float sample) { return std::abs(sample); }));
    EXPECT_LE(most, 0.8913F);
    EXPECT_GT(most, 0.8F);
}

TEST_F(RenderedByHand, WhatIsHeardLiesInTheMiddleOfWhatIsHeardAround)
{
    std::vector<float> around(2048);
    const auto hears = [&](int unheard, std::uint64_t serial = 1) {
        m_output.SetUnheard(unheard);
        return m_renderer.HearAround(serial, around);
    };
    m_renderer.Listen(true);
    EXPECT_FALSE(hears(0));
    Play(1, 0);
    ExpectNext(0, 8000);
    EXPECT_TRUE(hears(2000));
    EXPECT_TRUE(std::ranges::equal(around, Of(6000 - 512, 1024)));
    EXPECT_TRUE(hears(100)) << "of what comes there is no more than was taken";
    EXPECT_TRUE(std::ranges::equal(around, Of(8000 - 1024, 1024)));
    EXPECT_TRUE(hears(7800)) << "before the first frame is silence";
    EXPECT_TRUE(std::ranges::equal(std::span(around).subspan(2 * 312), Of(0, 712)));
    EXPECT_EQ(around[2 * 312 - 1], 0.0F);
    EXPECT_TRUE(hears(1));
    EXPECT_FALSE(hears(0)) << "nothing is heard of what was not given";
    EXPECT_FALSE(hears(2000, 2)) << "another place";
    m_output.Interrupt();
    EXPECT_FALSE(hears(2000));
}

TEST_F(RenderedByHand, ASoundThatIsTakenAwayIsHeld)
{
    Play(1, 0);
    ExpectNext(0, 3000);
    m_output.Calls();
    m_renderer.SetWish({nullptr, 2, 0, {}, true});
    std::this_thread::sleep_for(60ms);
    ExpectFade(3000, false);
    EXPECT_TRUE(FallsSilent());
    EXPECT_THAT(m_output.Calls(), ElementsAre("Pause"));
    std::this_thread::sleep_for(60ms);
    EXPECT_THAT(m_output.Calls(), IsEmpty());
    EXPECT_EQ(m_renderer.HeardMediaFrame(2), std::nullopt);
}

} // namespace
} // namespace lantern::test
