// SPDX-License-Identifier: GPL-3.0-or-later
#include "SoundShaper.h"

#include "MemoryDecoder.h"
#include "TestSounds.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

namespace lantern {
namespace {

using test::MemoryDecoder;

std::vector<float> Sine(std::size_t frames, double hertz)
{
    std::vector<float> stereo(frames * 2);
    for (std::size_t i = 0; i < frames; ++i) {
        const double angle = 2.0 * std::numbers::pi * hertz * static_cast<double>(i) / kRate;
        stereo[2 * i] = stereo[2 * i + 1] = static_cast<float>(0.5 * std::sin(angle));
    }
    return stereo;
}

// Silence with a short burst every quarter of a second, the first after one.
constexpr std::int64_t kBurstEvery = kRate / 4;
std::vector<float> Bursts(std::size_t count)
{
    std::vector<float> stereo((count + 1) * kBurstEvery * 2);
    for (std::size_t burst = 1; burst <= count; ++burst) {
        for (std::size_t i = 0; i < kRate / 200; ++i) {
            const double angle = 2.0 * std::numbers::pi * 1000.0 * static_cast<double>(i) / kRate;
            const std::size_t at = 2 * (burst * kBurstEvery + i);
            stereo[at] = stereo[at + 1] = static_cast<float>(0.6 * std::sin(angle));
        }
    }
    return stereo;
}

// Everything that is left, at most so many frames.
std::vector<float> RenderAll(SoundShaper& shaper, std::size_t atMost)
{
    std::vector<float> heard(atMost * 2);
    std::size_t frames = 0;
    while (frames < atMost) {
        const std::size_t piece = std::min<std::size_t>(256, atMost - frames);
        const auto block = shaper.Render(std::span(heard).subspan(frames * 2, piece * 2));
        frames += static_cast<std::size_t>(block.frames);
        if (block.atEnd || block.notYet) {
            break;
        }
    }
    heard.resize(frames * 2);
    return heard;
}

// A sound played with changes, each at the frame reached and with a crossfade of ten milliseconds.
class Performance {
public:
    Performance(SoundDecoder& sound, std::int64_t start, SoundShape shape)
        : m_segments{{0.0, static_cast<double>(start), shape.speed}}
    {
        m_shaper.Start(sound, start, shape);
    }

    std::vector<float> Render(std::size_t frames)
    {
        std::vector<float> piece = RenderAll(m_shaper, frames);
        heard.insert(heard.end(), piece.begin(), piece.end());
        return piece;
    }

    void Change(SoundShape shape)
    {
        const auto now = static_cast<double>(heard.size() / 2);
        m_segments.push_back({now, std::round(MediaAt(now)), shape.speed});
        m_shaper.Change(std::llround(m_segments.back().media), shape, RenderAll(m_shaper, 441));
    }

    double MediaAt(double frame) const
    {
        auto segment = m_segments.rbegin();
        while (segment->output > frame) {
            ++segment;
        }
        return segment->media + (frame - segment->output) * segment->speed;
    }

    std::vector<float> heard;

private:
    struct Segment {
        double output = 0.0;
        double media = 0.0;
        double speed = 1.0;
    };
    SoundShaper m_shaper;
    std::vector<Segment> m_segments;
};

// Where bursts lie in the middle of their loudness.
std::vector<double> BurstCentres(std::span<const float> stereo)
{
    std::vector<double> centres;
    double sum = 0.0;
    double weighted = 0.0;
    std::size_t quiet = kRate;
    for (std::size_t i = 0; i < stereo.size() / 2; ++i) {
        const double level =
            static_cast<double>(stereo[2 * i]) * static_cast<double>(stereo[2 * i]);
        quiet = level > 0.002 ? 0 : quiet + 1;
        if (quiet < 1500) {
            sum += level;
            weighted += level * static_cast<double>(i);
        } else if (sum > 0.0) {
            centres.push_back(weighted / sum);
            sum = weighted = 0.0;
        }
    }
    return centres;
}

double SharpestBend(std::span<const float> stereo)
{
    double sharpest = 0.0;
    for (std::size_t i = 4; i < stereo.size(); ++i) {
        const double bend = static_cast<double>(stereo[i]) -
                            2.0 * static_cast<double>(stereo[i - 2]) +
                            static_cast<double>(stereo[i - 4]);
        sharpest = std::max(sharpest, std::abs(bend));
    }
    return sharpest;
}

// How often a side of the sound rises through zero.
int Crossings(std::span<const float> stereo, std::size_t side)
{
    int count = 0;
    for (std::size_t i = 2 + side; i < stereo.size(); i += 2) {
        count += stereo[i - 2] < 0.0F && stereo[i] >= 0.0F ? 1 : 0;
    }
    return count;
}

TEST(SoundShaper, ControlsOutOfRangeAreLimitedToWhatCanBePlayed)
{
    EXPECT_EQ(ShapeFor(3, -20), (SoundShape{3, 0.8}));
    EXPECT_EQ(ShapeFor(99, 500), (SoundShape{10, 1.9}));
    EXPECT_EQ(ShapeFor(-99, -500).keySemitones, -10);
    EXPECT_NEAR(ShapeFor(0, -500).speed, 0.1, 1e-12);
    EXPECT_EQ(ShapeFor(0, std::numeric_limits<float>::quiet_NaN()), SoundShape{});
    EXPECT_TRUE(ShapeFor(0, 0).IsNeutral());
}

TEST(SoundShaper, ANeutralShapePassesTheSoundBitForBitToItsEnd)
{
    const std::vector<float> noise = StereoNoise(10'000);
    MemoryDecoder sound(noise);
    SoundShaper shaper;
    shaper.Start(sound, 1234, {});
    EXPECT_EQ(RenderAll(shaper, 20'000), std::vector<float>(noise.begin() + 1234 * 2, noise.end()));
}

TEST(SoundShaper, ABurstComesWhereItsFrameIsInEveryShape)
{
    MemoryDecoder sound(Bursts(4));
    SoundShaper shaper;
    for (const SoundShape shape : {SoundShape{-10, 1.0}, SoundShape{10, 1.0}, SoundShape{0, 0.5},
                                   SoundShape{0, 1.9}, SoundShape{3, 0.8}, SoundShape{-5, 1.3}}) {
        // From the middle of the sound, so that what precedes it counts too.
        const std::int64_t start = kBurstEvery * 3 / 2;
        shaper.Start(sound, start, shape);
        const std::vector<double> centres = BurstCentres(RenderAll(shaper, kRate * 4));
        ASSERT_EQ(centres.size(), 3U) << shape.keySemitones << " " << shape.speed;
        for (std::size_t i = 0; i < centres.size(); ++i) {
            const double media = static_cast<double>(start) + centres[i] * shape.speed;
            const double burst =
                static_cast<double>(kBurstEvery) * static_cast<double>(i + 2) + 110;
            EXPECT_NEAR(media, burst, 0.006 * kRate) << shape.keySemitones << " " << shape.speed;
        }
    }
}

TEST(SoundShaper, ThePlaceDoesNotDriftOverManyChanges)
{
    MemoryDecoder sound(Bursts(20));
    Performance performance(sound, 0, {});
    for (int change = 0; change < 25; ++change) {
        performance.Change(ShapeFor(change % 5 - 2, static_cast<float>(change * 7 % 90 - 40)));
        performance.Render(6000);
    }
    const std::vector<double> centres = BurstCentres(performance.heard);
    ASSERT_GT(centres.size(), 11U);
    for (const double centre : centres) {
        const double media = performance.MediaAt(centre) - 110;
        EXPECT_NEAR(std::remainder(media, kBurstEvery), 0.0, 0.008 * kRate);
    }
}

TEST(SoundShaper, TheKeyChangesThePitchAndTheTempoDoesNot)
{
    MemoryDecoder sound(Sine(3 * kRate, 440.0));
    SoundShaper shaper;
    const auto crossings = [&](SoundShape shape) {
        shaper.Start(sound, kRate, shape);
        return Crossings(RenderAll(shaper, kRate / 2), 0);
    };
    EXPECT_NEAR(crossings({0, 0.8}), 220, 2);
    EXPECT_NEAR(crossings({0, 1.5}), 220, 2);
    EXPECT_NEAR(crossings({12 - 2, 1.0}), 220 * std::exp2(10 / 12.0), 3);
    EXPECT_NEAR(crossings({-10, 1.0}), 220 * std::exp2(-10 / 12.0), 2);
    EXPECT_NEAR(crossings({3, 0.8}), 220 * std::exp2(3 / 12.0), 2);
}

TEST(SoundShaper, EachSideStaysWhereItIsInEveryShape)
{
    std::vector<float> sides = Sine(2 * kRate, 440.0);
    const std::vector<float> right = Sine(2 * kRate, 1000.0);
    for (std::size_t i = 1; i < sides.size(); i += 2) {
        sides[i] = right[i];
    }
    MemoryDecoder sound(sides);
    SoundShaper shaper;
    for (const SoundShape shape : {SoundShape{}, SoundShape{0, 0.8}, SoundShape{0, 1.5},
                                   SoundShape{3, 1.0}, SoundShape{-5, 1.3}}) {
        shaper.Start(sound, kRate / 2, shape);
        const std::vector<float> heard = RenderAll(shaper, kRate / 2);
        const double key = std::exp2(shape.keySemitones / 12.0);
        EXPECT_NEAR(Crossings(heard, 0), 220 * key, 3) << shape.keySemitones;
        EXPECT_NEAR(Crossings(heard, 1), 500 * key, 3) << shape.keySemitones;
    }
}

TEST(SoundShaper, AChangeMakesNoClick)
{
    MemoryDecoder sound(Sine(20 * kRate, 440.0));
    Performance performance(sound, kRate, {});
    performance.Render(5000);
    for (const SoundShape shape : {SoundShape{3, 1.0}, SoundShape{3, 0.8}, SoundShape{0, 1.0},
                                   SoundShape{0, 1.5}, SoundShape{-10, 0.5}, SoundShape{}}) {
        performance.Change(shape);
        performance.Render(9000);
    }
    // A tone of 440 Hz at this level bends by 0.002, up three semitones by 0.003; a click by 0.1.
    EXPECT_LT(SharpestBend(performance.heard), 0.006);
}

TEST(SoundShaper, BackAtNeutralTheSoundPassesBitForBitAfterTheCrossfade)
{
    const std::vector<float> noise = StereoNoise(60'000);
    MemoryDecoder sound(noise);
    Performance performance(sound, 0, {0, 0.8});
    performance.Render(10'000);
    performance.Change({});
    performance.Render(441);
    const std::vector<float> heard = performance.Render(1000);
    EXPECT_TRUE(std::ranges::equal(heard, std::span(noise).subspan(8441 * 2, 1000 * 2)));
}

TEST(SoundShaper, TheEndComesAfterTheSoundsLengthAtItsSpeed)
{
    MemoryDecoder sound(Sine(5000, 440.0));
    SoundShaper shaper;
    for (const double speed : {0.5, 0.8, 1.0, 1.9}) {
        shaper.Start(sound, 1000, {speed == 1.0 ? 2 : 0, speed});
        const std::size_t frames = RenderAll(shaper, 20'000).size() / 2;
        EXPECT_EQ(frames, static_cast<std::size_t>(std::ceil((5000 - 1000) / speed)));
    }
}

TEST(SoundShaper, TheNextSoundHasItsOwnEnd)
{
    MemoryDecoder first(Sine(3000, 440.0));
    MemoryDecoder second(Sine(5000, 440.0));
    SoundShaper shaper;
    for (SoundDecoder* sound : std::initializer_list<SoundDecoder*>{&first, &second, &first}) {
        shaper.Start(*sound, 0, {0, 0.5});
        EXPECT_EQ(static_cast<std::int64_t>(RenderAll(shaper, 20'000).size() / 2),
                  sound->FrameCount() * 2);
    }
}

TEST(SoundShaper, AStartForgetsTheFormerSoundAndItsCrossfade)
{
    const std::vector<float> noise = StereoNoise(5000);
    MemoryDecoder sound(noise);
    SoundShaper shaper;
    for (const std::size_t faded : {std::size_t{0}, std::size_t{100}, std::size_t{441}}) {
        shaper.Start(sound, 0, {0, 0.8});
        shaper.Change(1000, {}, std::vector<float>(2 * 441, 0.9F));
        RenderAll(shaper, faded);
        shaper.Start(sound, 2000, {});
        EXPECT_TRUE(std::ranges::equal(RenderAll(shaper, 1000),
                                       std::span(noise).subspan(2000 * 2, 1000 * 2)))
            << faded;
    }
}

TEST(SoundShaper, AChangeDuringACrossfadeFadesOverFromItsOwnTail)
{
    MemoryDecoder sound(StereoNoise(5000));
    const std::vector<float> tail(2 * 441, -0.9F);
    SoundShaper fresh;
    fresh.Start(sound, 0, {});
    fresh.Change(2000, {}, tail);

    SoundShaper shaper;
    shaper.Start(sound, 0, {});
    shaper.Change(1000, {}, std::vector<float>(2 * 441, 0.9F));
    RenderAll(shaper, 100);
    shaper.Change(2000, {}, tail);
    EXPECT_EQ(RenderAll(shaper, 1000), RenderAll(fresh, 1000));
}

TEST(SoundShaper, ASoundOfAnotherRateIsShapedAsByAFreshOne)
{
    MemoryDecoder sound(StereoNoise(9000), 8000);
    SoundShaper fresh;
    fresh.Start(sound, 0, {3, 0.8});
    const std::vector<float> expected = RenderAll(fresh, 4000);

    MemoryDecoder former(StereoNoise(9000), 44100);
    SoundShaper shaper;
    shaper.Start(former, 0, {3, 0.8});
    RenderAll(shaper, 1000);
    shaper.Start(sound, 0, {3, 0.8});
    EXPECT_EQ(RenderAll(shaper, 4000), expected);
}

TEST(SoundShaper, AtTheEndThereIsNothingLeft)
{
    MemoryDecoder sound(Sine(1000, 440.0));
    SoundShaper shaper;
    for (const SoundShape shape : {SoundShape{}, SoundShape{2, 0.7}}) {
        shaper.Start(sound, 1000, shape);
        std::vector<float> stereo(512);
        const auto block = shaper.Render(stereo);
        EXPECT_EQ(block.frames, 0);
        EXPECT_TRUE(block.atEnd);
    }
}

TEST(SoundShaper, LoudMusicStaysWithinFullScaleInEachShape)
{
    std::vector<float> loud(2 * 60'000);
    for (std::size_t i = 0; i < loud.size(); ++i) {
        const double second = static_cast<double>(i / 2) / kRate;
        const double beat = std::sin(2 * std::numbers::pi * 110 * second) +
                            std::sin(2 * std::numbers::pi * 1234 * second);
        loud[i] = beat > 0 ? 1.0F : -1.0F; // as loud as a master can be
    }
    MemoryDecoder sound(loud);
    for (const SoundShape shape : {SoundShape{3, 1.0}, {-4, 1.0}, {0, 0.8}, {2, 1.5}}) {
        SoundShaper shaper;
        shaper.Start(sound, 0, shape);
        const std::vector<float> heard = RenderAll(shaper, 100'000);
        const auto [least, most] = std::ranges::minmax(heard);
        EXPECT_GE(least, -1.0F);
        EXPECT_LE(most, 1.0F);
        EXPECT_GT(most, 0.9F);
        EXPECT_NEAR(static_cast<double>(heard.size()) / 2, 60'000 / shape.speed, 1.0);
    }
    SoundShaper shaper;
    shaper.Start(sound, 0, {});
    EXPECT_TRUE(RenderAll(shaper, 60'000) == loud) << "neutral it is as it is";
}

TEST(SoundShaper, ItWaitsForTheDecoderAndGoesOnWithoutAGap)
{
    for (const SoundShape shape : {SoundShape{}, SoundShape{3, 0.8}}) {
        MemoryDecoder sound(Sine(kRate, 440.0));
        SoundShaper whole;
        whole.Start(sound, 0, shape);
        const std::vector<float> expected = RenderAll(whole, kRate / 2);

        SoundShaper shaper;
        sound.DecodeTo(0);
        shaper.Start(sound, 0, shape);
        std::vector<float> heard;
        for (std::int64_t decoded = 0; decoded <= kRate; decoded += 997) {
            sound.DecodeTo(decoded);
            const std::vector<float> piece = RenderAll(shaper, kRate / 2 - heard.size() / 2);
            heard.insert(heard.end(), piece.begin(), piece.end());
        }
        ASSERT_EQ(heard.size(), expected.size());
        for (std::size_t i = 0; i < heard.size(); ++i) {
            // One frame too many or too few would differ by 0.03.
            ASSERT_NEAR(heard[i], expected[i], 0.01) << i;
        }
    }
}

} // namespace
} // namespace lantern
