// SPDX-License-Identifier: GPL-3.0-or-later
// Sounds of more than 48,000 frames a second, in another key and at another speed.
#include "MemoryDecoder.h"
#include "SoundShaper.h"
#include "TestSounds.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace lantern {
namespace {

using test::MemoryDecoder;

constexpr std::size_t kBlock = 256;

std::vector<float> Tone(int rate, double seconds, double hertz)
{
    std::vector<float> stereo(static_cast<std::size_t>(rate * seconds) * 2);
    for (std::size_t i = 0; i < stereo.size(); ++i) {
        const double angle = 2.0 * std::numbers::pi * hertz * static_cast<double>(i / 2) / rate;
        stereo[i] = static_cast<float>((i % 2 == 0 ? 0.5 : 0.25) * std::sin(angle));
    }
    return stereo;
}

std::vector<float> Rendered(SoundShaper& shaper, std::size_t atMost)
{
    std::vector<float> heard(atMost * 2);
    std::size_t frames = 0;
    for (SoundShaper::Block block; frames < atMost && !block.atEnd && !block.notYet;) {
        const std::size_t piece = std::min(kBlock, atMost - frames);
        block = shaper.Render(std::span(heard).subspan(frames * 2, piece * 2));
        frames += static_cast<std::size_t>(block.frames);
    }
    heard.resize(frames * 2);
    return heard;
}

// By how many frames the left side is behind a tone that starts at frame 0.
double DelayBehindTone(std::span<const float> stereo, int rate, double hertz)
{
    double sine = 0.0;
    double cosine = 0.0;
    for (std::size_t i = 0; i < stereo.size() / 2; ++i) {
        const double angle = 2.0 * std::numbers::pi * hertz * static_cast<double>(i) / rate;
        sine += std::sin(angle) * static_cast<double>(stereo[2 * i]);
        cosine += std::cos(angle) * static_cast<double>(stereo[2 * i]);
    }
    return std::atan2(-cosine, sine) / (2.0 * std::numbers::pi * hertz) * rate;
}

double Loudness(std::span<const float> stereo, std::size_t side)
{
    double sum = 0.0;
    for (std::size_t i = side; i < stereo.size(); i += 2)
        sum += static_cast<double>(stereo[i]) * static_cast<double>(stereo[i]);
    return std::sqrt(sum / (static_cast<double>(stereo.size()) / 2));
}

class HighRateShaper : public testing::TestWithParam<int> {};

TEST_P(HighRateShaper, ThePlaceIsWhereItIsAtAnOrdinaryRate)
{
    // The middle of a burst of a fifth of a second, by its energy.
    const auto middleMs = [](int rate, SoundShape shape) {
        const auto silent = static_cast<std::size_t>(rate);
        std::vector<float> stereo(2 * silent);
        const std::vector<float> burst = Tone(rate, 0.2, 700.0);
        stereo.insert(stereo.begin() + static_cast<std::ptrdiff_t>(silent), burst.begin(),
                      burst.end());
        MemoryDecoder sound(stereo, rate);
        SoundShaper shaper;
        shaper.Start(sound, rate / 4 + 1, shape);
        const std::vector<float> heard = Rendered(shaper, static_cast<std::size_t>(rate) * 3 / 5);
        double sum = 0.0;
        double weighted = 0.0;
        for (std::size_t i = 0; i < heard.size(); i += 2) {
            const double level = static_cast<double>(heard[i]) * static_cast<double>(heard[i]);
            sum += level;
            weighted += level * static_cast<double>(i / 2);
        }
        return weighted / sum / rate * 1000.0;
    };
    for (const SoundShape shape : {SoundShape{0, 0.8}, {3, 1.0}, {10, 1.9}}) {
        const double middle = middleMs(GetParam(), shape);
        EXPECT_NEAR(middle, 350.0 / shape.speed, 8.0);
        const int ordinary = GetParam() % 44100 == 0 ? 44100 : 48000;
        EXPECT_NEAR(middle, middleMs(ordinary, shape), 1.0)
            << shape.keySemitones << " " << shape.speed;
    }
}

TEST_P(HighRateShaper, SpeedKeepsTheToneItsLevelAndItsSides)
{
    constexpr double kHertz = 441.0;
    MemoryDecoder sound(Tone(GetParam(), 2.5, kHertz), GetParam());
    SoundShaper shaper;
    for (const double speed : {0.8, 1.25}) {
        shaper.Start(sound, GetParam(), {0, speed});
        const std::vector<float> heard = Rendered(shaper, static_cast<std::size_t>(GetParam()));
        const auto half = static_cast<std::ptrdiff_t>(heard.size() / 4 * 2);
        const std::vector<float> later(heard.begin() + half, heard.end());
        EXPECT_NEAR(Loudness(later, 0), 0.5 / std::numbers::sqrt2, 0.02);
        EXPECT_NEAR(Loudness(later, 1), 0.25 / std::numbers::sqrt2, 0.01);
        // Over half a second the tone neither gains nor loses.
        const auto quarter = later.size() / 4 * 2;
        const double period = GetParam() / kHertz;
        const double behind =
            DelayBehindTone(std::span(later).first(quarter), GetParam(), kHertz) -
            DelayBehindTone(std::span(later).subspan(quarter, quarter), GetParam(), kHertz) -
            static_cast<double>(quarter / 2);
        EXPECT_NEAR(std::remainder(behind, period), 0.0, 0.02 * period);
    }
}

TEST_P(HighRateShaper, LoudMusicStaysWithinFullScaleAndEndsWhereItEnds)
{
    std::vector<float> loud = Tone(GetParam(), 0.5, 300.0);
    for (float& sample : loud)
        sample = sample > 0.0F ? 1.0F : -1.0F;
    MemoryDecoder sound(loud, GetParam());
    SoundShaper shaper;
    for (const SoundShape shape : {SoundShape{4, 1.0}, {0, 0.8}, {-3, 1.5}}) {
        shaper.Start(sound, 0, shape);
        const std::vector<float> heard = Rendered(shaper, static_cast<std::size_t>(GetParam()) * 2);
        const auto [least, most] = std::ranges::minmax(heard);
        EXPECT_GE(least, -1.0F);
        EXPECT_LE(most, 1.0F);
        EXPECT_GT(most, 0.9F);
        EXPECT_EQ(static_cast<double>(heard.size() / 2),
                  std::ceil(static_cast<double>(loud.size() / 2) / shape.speed));
    }
}

TEST_P(HighRateShaper, AChangeToAndFromNeutralMakesNoClickAndNeutralIsBitForBit)
{
    const std::vector<float> tone = Tone(GetParam(), 2.0, 440.0);
    MemoryDecoder sound(tone, GetParam());
    SoundShaper shaper;
    const auto fade = static_cast<std::size_t>(GetParam() / 100);
    const auto piece = static_cast<std::size_t>(GetParam() / 5);
    shaper.Start(sound, GetParam(), {});
    std::vector<float> heard = Rendered(shaper, piece);
    std::size_t place = static_cast<std::size_t>(GetParam()) + piece;
    shaper.Change(static_cast<std::int64_t>(place), {0, 0.8}, Rendered(shaper, fade));
    for (const float sample : Rendered(shaper, piece))
        heard.push_back(sample);
    place += static_cast<std::size_t>(static_cast<double>(piece) * 0.8);
    shaper.Change(static_cast<std::int64_t>(place), {}, Rendered(shaper, fade));
    for (const float sample : Rendered(shaper, piece))
        heard.push_back(sample);
    EXPECT_TRUE(std::equal(heard.end() - static_cast<std::ptrdiff_t>((piece - fade) * 2),
                           heard.end(),
                           tone.begin() + static_cast<std::ptrdiff_t>((place + fade) * 2)));
    // The tone itself steps by less at each frame the more of them there are.
    const double steepest = 2.0 * std::numbers::pi * 440.0 / GetParam() * 0.5;
    for (std::size_t i = 2; i < heard.size(); ++i)
        ASSERT_LT(std::abs(heard[i] - heard[i - 2]), 2.0 * steepest) << i;
}

INSTANTIATE_TEST_SUITE_P(Rates, HighRateShaper, testing::Values(88200, 96000, 176400, 192000),
                         [](const auto& test) { return std::to_string(test.param); });

} // namespace
} // namespace lantern
