// SPDX-License-Identifier: GPL-3.0-or-later
#include "SpectrumTransform.h"

#include "SpectrumAnalyser.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <numbers>
#include <random>

namespace lantern {
namespace {

constexpr int kBands = 55;

struct Sample {
    double left = 0.0;
    double right = 0.0;
};

std::vector<float> Measured(int sampleRate, const std::function<Sample(double seconds)>& sound,
                            int bands = kBands)
{
    SpectrumTransform transform(sampleRate);
    const std::span<float> stretch = transform.Stretch();
    for (std::size_t i = 0; i < stretch.size(); i += 2) {
        const Sample sample = sound(static_cast<double>(i / 2) / sampleRate);
        stretch[i] = static_cast<float>(sample.left);
        stretch[i + 1] = static_cast<float>(sample.right);
    }
    std::vector<float> strengths(static_cast<std::size_t>(bands), 99.0F);
    transform.Measure(strengths);
    return strengths;
}

double Wave(double hertz, double seconds, double phase = 0.3)
{
    return std::sin(2.0 * std::numbers::pi * hertz * seconds + phase);
}

std::vector<float> MeasuredTone(int sampleRate, double hertz, double decibels = 0.0)
{
    const double amplitude = std::pow(10.0, decibels / 20.0);
    return Measured(sampleRate, [&](double seconds) {
        const double sample = amplitude * Wave(hertz, seconds);
        return Sample{sample, sample};
    });
}

double DecibelsOf(float strength)
{
    return SpectrumAnalyser::kFloorDb * (1.0 - static_cast<double>(strength));
}

std::size_t HighestOf(const std::vector<float>& strengths)
{
    return static_cast<std::size_t>(std::ranges::max_element(strengths) - strengths.begin());
}

std::size_t BandWith(double hertz)
{
    for (int band = 0; band < kBands; ++band) {
        if (hertz >= EdgesOf(band, kBands).lowHz && hertz < EdgesOf(band, kBands).highHz) {
            return static_cast<std::size_t>(band);
        }
    }
    return kBands;
}

TEST(SpectrumTransform, TheBandsAreNeighboursInEqualStepsOfPitch)
{
    EXPECT_NEAR(EdgesOf(0, kBands).lowHz, SpectrumAnalyser::kLowestHz, 1e-9);
    EXPECT_NEAR(EdgesOf(kBands - 1, kBands).highHz, SpectrumAnalyser::kHighestHz, 1e-6);
    const double step = EdgesOf(0, kBands).highHz / EdgesOf(0, kBands).lowHz;
    for (int band = 1; band < kBands; ++band) {
        EXPECT_EQ(EdgesOf(band, kBands).lowHz, EdgesOf(band - 1, kBands).highHz);
        EXPECT_NEAR(EdgesOf(band, kBands).highHz / EdgesOf(band, kBands).lowHz, step, 1e-9);
    }
}

TEST(SpectrumTransform, StrengthIsLinearInDecibelsAboveTheFloor)
{
    EXPECT_EQ(StrengthOf(0.0), 0.0F);
    EXPECT_EQ(StrengthOf(1e-30), 0.0F);
    EXPECT_EQ(StrengthOf(1.0), 1.0F);
    EXPECT_EQ(StrengthOf(100.0), 1.0F);
    EXPECT_NEAR(StrengthOf(std::pow(10.0, -3.3)), 0.5F, 1e-5F);
    EXPECT_EQ(StrengthOf(-1.0), 0.0F);
    EXPECT_EQ(StrengthOf(std::nan("")), 0.0F);
    EXPECT_EQ(StrengthOf(std::numeric_limits<double>::infinity()), 1.0F);
}

TEST(SpectrumTransform, ATonesOwnBandIsTheHighestAndHasItsLevel)
{
    for (const int rate : {44100, 48000}) {
        for (const double decibels : {0.0, -12.0, -40.0}) {
            const std::vector<float> strengths = MeasuredTone(rate, 1000.0, decibels);
            const std::size_t own = BandWith(1000.0);
            EXPECT_EQ(HighestOf(strengths), own) << rate;
            EXPECT_NEAR(DecibelsOf(strengths[own]), decibels, 0.2) << rate;
        }
    }
}

TEST(SpectrumTransform, EveryToneHasItsLevelInItsBandAtEveryRate)
{
    for (const int rate : {22050, 32000, 44100, 48000, 96000, 192000}) {
        const double highest = std::min(SpectrumAnalyser::kHighestHz, rate * 0.49);
        for (double hertz = 41.0; hertz < highest; hertz *= 1.113) {
            const std::vector<float> strengths = MeasuredTone(rate, hertz, -20.0);
            const std::size_t own = BandWith(hertz);
            ASSERT_NEAR(DecibelsOf(strengths[own]), -20.0, 1.0) << hertz << " Hz at " << rate;
            // No other band is higher, but those beside it may be as high at their border.
            ASSERT_LT(DecibelsOf(*std::ranges::max_element(strengths)), -19.0) << hertz;
        }
    }
}

TEST(SpectrumTransform, AToneLeavesBandsFarFromItEmpty)
{
    for (const double hertz : {100.0, 1000.0, 8000.0}) {
        const std::vector<float> strengths = MeasuredTone(44100, hertz);
        for (int band = 0; band < kBands; ++band) {
            const BandEdges edges = EdgesOf(band, kBands);
            const bool isFar = edges.lowHz > hertz * 2.0 || edges.highHz < hertz / 2.0;
            if (isFar && std::abs(edges.lowHz - hertz) > 100.0) {
                EXPECT_LT(DecibelsOf(strengths[static_cast<std::size_t>(band)]), -60.0)
                    << hertz << " in " << edges.lowHz;
            }
        }
    }
}

TEST(SpectrumTransform, SilenceIsNothing)
{
    const std::vector<float> strengths = Measured(44100, [](double) { return Sample{}; });
    EXPECT_EQ(strengths, std::vector<float>(kBands, 0.0F));
}

TEST(SpectrumTransform, ASteadyOffsetIsNoSound)
{
    const std::vector<float> strengths = Measured(44100, [](double) { return Sample{0.5, 0.5}; });
    EXPECT_EQ(strengths, std::vector<float>(kBands, 0.0F));
}

TEST(SpectrumTransform, FullScaleNoiseAndSquaresStayWithinTheField)
{
    std::mt19937 random(5);
    std::uniform_real_distribution<double> sample(-1.0, 1.0);
    const auto noise = Measured(48000, [&](double) {
        return Sample{sample(random), sample(random)};
    });
    const auto square = Measured(44100, [](double seconds) {
        const double side = Wave(441.0, seconds) < 0.0 ? -1.0 : 1.0;
        return Sample{side, side};
    });
    const auto beyond = Measured(44100, [](double seconds) {
        return Sample{1000.0 * Wave(441.0, seconds), 1000.0 * Wave(441.0, seconds)};
    });
    for (const auto& strengths : {noise, square, beyond}) {
        for (const float strength : strengths) {
            EXPECT_GE(strength, 0.0F);
            EXPECT_LE(strength, 1.0F);
        }
    }
    // White noise is as strong as its bandwidth: no band has as much as a full-scale tone.
    EXPECT_LT(*std::ranges::max_element(noise), 1.0F);
    EXPECT_GT(*std::ranges::min_element(noise), 0.3F);
}

TEST(SpectrumTransform, TheSidesCountEachWithHalfOfItsPower)
{
    const std::size_t low = BandWith(500.0);
    const std::size_t high = BandWith(3000.0);
    const auto apart = Measured(44100, [](double seconds) {
        return Sample{Wave(500.0, seconds), Wave(3000.0, seconds)};
    });
    EXPECT_NEAR(DecibelsOf(apart[low]), -3.0, 0.2);
    EXPECT_NEAR(DecibelsOf(apart[high]), -3.0, 0.2);
    const auto opposite = Measured(44100, [](double seconds) {
        return Sample{Wave(500.0, seconds), -Wave(500.0, seconds)};
    });
    EXPECT_NEAR(DecibelsOf(opposite[low]), 0.0, 0.2);
    const auto quarter = Measured(44100, [](double seconds) {
        return Sample{Wave(500.0, seconds), Wave(500.0, seconds, 1.9)};
    });
    EXPECT_NEAR(DecibelsOf(quarter[low]), 0.0, 0.2);
}

TEST(SpectrumTransform, BandsThatTheRateCannotHoldAreEmpty)
{
    const auto strengths = Measured(8000, [](double seconds) {
        return Sample{Wave(1000.0, seconds), Wave(1000.0, seconds)};
    });
    EXPECT_NEAR(DecibelsOf(strengths[BandWith(1000.0)]), 0.0, 0.5);
    for (std::size_t band = BandWith(5000.0); band < strengths.size(); ++band) {
        EXPECT_EQ(strengths[band], 0.0F);
    }
}

TEST(SpectrumTransform, SamplesThatAreNoNumbersAreSilence)
{
    for (const double sample : {std::nan(""), std::numeric_limits<double>::infinity()}) {
        const auto strengths = Measured(44100, [&](double) { return Sample{sample, sample}; });
        EXPECT_EQ(strengths, std::vector<float>(kBands, 0.0F));
    }
}

TEST(SpectrumTransform, AnyNumberOfBandsAndAnyRateHarmsNothing)
{
    const auto tone = [](double seconds) { return Sample{Wave(440.0, seconds), 0.0}; };
    for (const int bands : {0, 1, 2, 1000}) {
        EXPECT_EQ(Measured(44100, tone, bands).size(), static_cast<std::size_t>(bands));
    }
    for (const int rate : {-5, 0, 1, 100, 2000000}) {
        for (const float strength : Measured(rate, tone)) {
            EXPECT_GE(strength, 0.0F);
            EXPECT_LE(strength, 1.0F);
        }
    }
}

TEST(SpectrumTransform, TheWindowIsAPowerOfTwoOfSixtyToAHundredAndTwentyMilliseconds)
{
    for (const int rate : {8000, 11025, 16000, 22050, 32000, 44100, 48000, 96000, 192000}) {
        const int frames = SpectrumWindowFrames(rate);
        EXPECT_EQ(frames & (frames - 1), 0);
        EXPECT_GE(frames * 1000 / rate, 60) << rate;
        EXPECT_LE(frames * 1000 / rate, 120) << rate;
    }
}

} // namespace
} // namespace lantern
