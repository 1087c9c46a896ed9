// SPDX-License-Identifier: GPL-3.0-or-later
// What the renderer gives to an output, frame by frame.
#include "SoundRenderer.h"

#include "HandOutput.h"
#include "MemoryDecoder.h"
#include "TestSounds.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace lantern::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kRate = 44100;
constexpr int kKeptFrames = kRate * 30 / 1000;      // rendered before a change, and played
constexpr int kCrossfadeFrames = kRate * 10 / 1000; // from there on

// A sound that tells how many frames were asked of it last: a whole block where it is neutral.
class WatchedDecoder final : public SoundDecoder {
public:
    explicit WatchedDecoder(const std::vector<float>& stereo) : m_sound(stereo, kRate) {}

    std::size_t LastAsked() const { return m_lastAsked; }

    int SampleRate() const override { return m_sound.SampleRate(); }
    std::int64_t FrameCount() const override { return m_sound.FrameCount(); }
    bool DecodedToEnd() const override { return true; }
    Chunk Read(std::int64_t firstFrame, std::span<float> stereo) override
    {
        m_lastAsked = stereo.size() / 2;
        return m_sound.Read(firstFrame, stereo);
    }

private:
    MemoryDecoder m_sound;
    std::atomic<std::size_t> m_lastAsked = 0;
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
    Play(1, 1234);
    ExpectNext(1234, 30'000);
    EXPECT_EQ(m_renderer.HeardMediaFrame(1), 31'234);
    EXPECT_EQ(m_renderer.HeardMediaFrame(0), std::nullopt);
    EXPECT_EQ(m_renderer.HeardMediaFrame(2), std::nullopt);
    EXPECT_THAT(m_output.Calls(), ElementsAre("Restart 44100", "Begin"));
}

TEST_F(RenderedByHand, TheEndIsToldOnceItsLastFrameIsHeardAndSilenceFollowsIt)
{
    Play(7, 55'000);
    ExpectNext(55'000, 4990);
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

TEST_F(RenderedByHand, APauseHoldsTheOutputAndLosesNoFrame)
{
    Play(1, 0);
    ExpectNext(0, 3000);
    for (std::int64_t frame = 3000; frame < 6000; frame += 1000) {
        m_output.Calls();
        m_renderer.SetWish({m_sound, 1, 0, {}, false});
        EXPECT_TRUE(Eventually([this] { return m_output.IsPaused(); }));
        m_renderer.SetWish({m_sound, 1, 0, {}, true});
        ExpectNext(frame, 1000);
        EXPECT_THAT(m_output.Calls(), ElementsAre("Pause", "Resume"));
    }
}

TEST_F(RenderedByHand, AnotherPlaceStartsTheOutputAnew)
{
    Play(1, 0);
    ExpectNext(0, 3000);
    m_output.Calls();
    m_renderer.SetWish({m_sound, 2, 40'000, {}, true});
    EXPECT_TRUE(Eventually([this] { return m_renderer.HeardMediaFrame(2) == 40'000; }));
    EXPECT_EQ(m_renderer.HeardMediaFrame(1), std::nullopt);
    ExpectNext(40'000, 5000);
    EXPECT_THAT(m_output.Calls(), ElementsAre("Restart 44100", "Begin"));
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
    ExpectNext(57'000, 2990);
    m_renderer.SetWish({m_sound, 1, 57'000, {0, 0.5}, true});
    std::this_thread::sleep_for(60ms);
    ExpectNext(59'990, 10);
    EXPECT_TRUE(Comes(Event::Finished, 1));
}

TEST_F(RenderedByHand, AfterAnInterruptionItGoesOnAtTheFirstFrameThatWasNotHeard)
{
    Play(1, 1000);
    ExpectNext(1000, 5000);
    m_output.SetUnheard(300);
    m_output.Calls();
    m_output.Interrupt();
    EXPECT_TRUE(Eventually([this] { return m_output.IsRunning(); }));
    EXPECT_THAT(m_output.Calls(), ElementsAre("Restart 44100", "Begin"));
    ExpectNext(5700, 5000);
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
    EXPECT_TRUE(Eventually([this] { return m_output.IsPaused(); }));
    EXPECT_THAT(m_output.Calls(), ElementsAre("Pause"));
    std::this_thread::sleep_for(60ms);
    EXPECT_THAT(m_output.Calls(), IsEmpty());
    EXPECT_EQ(m_renderer.HeardMediaFrame(2), std::nullopt);
}

} // namespace
} // namespace lantern::test
