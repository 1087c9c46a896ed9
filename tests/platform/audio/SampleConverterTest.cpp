// SPDX-License-Identifier: GPL-3.0-or-later
#include "SampleConverter.h"

#include "TestSounds.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <span>

namespace lantern {
namespace {

struct FrameKind {
    AVSampleFormat format = AV_SAMPLE_FMT_S16;
    int channels = 2;
    int rate = kRate;
    std::uint64_t places = 0; // none told
};

// A frame of interleaved samples.
template <typename Sample>
AvPointer<AVFrame> MakeFrame(const FrameKind& kind, std::span<const Sample> samples)
{
    AvPointer<AVFrame> frame(av_frame_alloc());
    frame->format = kind.format;
    frame->sample_rate = kind.rate;
    frame->nb_samples = static_cast<int>(samples.size()) / kind.channels;
    if (kind.places != 0) {
        av_channel_layout_from_mask(&frame->ch_layout, kind.places);
    } else {
        frame->ch_layout.order = AV_CHANNEL_ORDER_UNSPEC;
        frame->ch_layout.nb_channels = kind.channels;
    }
    EXPECT_EQ(av_frame_get_buffer(frame.get(), 0), 0);
    std::memcpy(frame->data[0], samples.data(), samples.size_bytes());
    return frame;
}

AvPointer<AVFrame> Shorts(const FrameKind& kind, const std::vector<std::int16_t>& samples)
{
    return MakeFrame<std::int16_t>(kind, samples);
}

AvPointer<AVFrame> Floats(FrameKind kind, const std::vector<float>& samples)
{
    kind.format = AV_SAMPLE_FMT_FLT;
    return MakeFrame<float>(kind, samples);
}

template <typename Sample>
std::vector<Sample> SamplesIn(const std::vector<std::byte>& bytes)
{
    std::vector<Sample> samples(bytes.size() / sizeof(Sample));
    std::ranges::copy(bytes, std::as_writable_bytes(std::span(samples)).begin());
    return samples;
}

// One converter fed with frames.
template <typename Sample>
class Conversion {
public:
    explicit Conversion(int rate = kRate)
        : m_converter(sizeof(Sample) == 2 ? SampleKind::Int16 : SampleKind::Float, rate)
    {
    }
    bool Feed(const AvPointer<AVFrame>& frame) { return m_converter.Convert(*frame, m_out); }
    std::vector<Sample> Finished()
    {
        m_converter.Finish(m_out);
        return Out();
    }
    std::vector<Sample> Out() const { return SamplesIn<Sample>(m_out); }

private:
    SampleConverter m_converter;
    std::vector<std::byte> m_out;
};

std::vector<std::int16_t> Tone(int rate, int frames, int channels)
{
    std::vector<std::int16_t> samples;
    for (int i = 0; i < frames * channels; ++i) {
        const double angle = 2.0 * std::numbers::pi * 440.0 * (i / channels) / rate;
        samples.push_back(static_cast<std::int16_t>(std::lround(10000.0 * std::sin(angle))));
    }
    return samples;
}

TEST(SampleConverter, SixteenBitsComeThroughBitForBit)
{
    const std::vector<std::int16_t> samples = {-32768, 32767, 1, -1, 0, 12345};
    Conversion<std::int16_t> kept;
    EXPECT_TRUE(kept.Feed(Shorts({}, samples)));
    EXPECT_TRUE(kept.Feed(Shorts({}, samples)));
    std::vector<std::int16_t> twice = samples;
    twice.insert(twice.end(), samples.begin(), samples.end());
    EXPECT_EQ(kept.Finished(), twice);

    Conversion<float> widened;
    EXPECT_TRUE(widened.Feed(Shorts({}, samples)));
    std::vector<float> expected;
    for (const std::int16_t sample : samples)
        expected.push_back(static_cast<float>(sample) / 32768.0F);
    EXPECT_EQ(widened.Finished(), expected);
}

// Numbers that are no samples, and what is beyond all measure.
template <typename Sample>
std::vector<Sample> BadSamples()
{
    using Limits = std::numeric_limits<Sample>;
    return {Limits::quiet_NaN(), Limits::infinity(), -Limits::infinity(),
            Limits::max(),       Limits::lowest(),   Limits::signaling_NaN()};
}

TEST(SampleConverter, WhatIsNoSampleBecomesSilence)
{
    std::vector<float> samples = {0.5F, -1.0F, 1.5F, 0.25F};
    samples.insert(samples.begin() + 2, 6, 0.0F);
    std::vector<float> damaged = samples;
    std::ranges::copy(BadSamples<float>(), damaged.begin() + 2);
    const auto frame = Floats({}, damaged);
    const AvPointer<AVFrame> shared(av_frame_clone(frame.get()));
    Conversion<float> kept;
    EXPECT_TRUE(kept.Feed(frame));
    EXPECT_EQ(kept.Finished(), samples);
    EXPECT_TRUE(std::isnan(reinterpret_cast<const float*>(shared->data[0])[2]))
        << "what others hold stays as it is";

    Conversion<std::int16_t> narrowed;
    EXPECT_TRUE(narrowed.Feed(Floats({}, damaged)));
    EXPECT_EQ(narrowed.Finished(),
              (std::vector<std::int16_t>{16384, -32768, 0, 0, 0, 0, 0, 0, 32767, 8192}));

    Conversion<float> doubles;
    EXPECT_TRUE(doubles.Feed(MakeFrame<double>({.format = AV_SAMPLE_FMT_DBL},
                                               std::span<const double>(BadSamples<double>()))));
    EXPECT_EQ(doubles.Finished(), std::vector<float>(6, 0.0F));
}

TEST(SampleConverter, WhatIsNoSampleIsFoundInEachChannel)
{
    for (const int channel : {0, 1}) {
        const AvPointer<AVFrame> frame(av_frame_alloc());
        frame->format = AV_SAMPLE_FMT_FLTP;
        frame->sample_rate = kRate;
        frame->nb_samples = 100;
        av_channel_layout_default(&frame->ch_layout, 2);
        ASSERT_EQ(av_frame_get_buffer(frame.get(), 0), 0);
        for (int i = 0; i < 2; ++i)
            std::fill_n(reinterpret_cast<float*>(frame->extended_data[i]), 100, 0.5F);
        reinterpret_cast<float*>(frame->extended_data[channel])[99] = std::nanf("");
        Conversion<float> kept;
        EXPECT_TRUE(kept.Feed(frame));
        std::vector<float> expected(200, 0.5F);
        expected[static_cast<std::size_t>(198 + channel)] = 0.0F;
        EXPECT_EQ(kept.Finished(), expected);
    }
}

TEST(SampleConverter, AChangeOfTheRateSpreadsNothingThatIsNoSample)
{
    std::vector<float> samples(2 * 2000, 0.5F);
    std::ranges::copy(BadSamples<float>(), samples.begin() + 2000);
    Conversion<float> conversion(48000);
    EXPECT_TRUE(conversion.Feed(Floats({}, samples)));
    const std::vector<float> converted = conversion.Finished();
    EXPECT_GT(converted.size(), 4000U);
    for (const float sample : converted)
        ASSERT_LT(std::abs(sample), 1.0F);
}

TEST(SampleConverter, MonoGoesToBothSides)
{
    Conversion<std::int16_t> shorts;
    EXPECT_TRUE(shorts.Feed(Shorts({.channels = 1}, {7, -8, 9})));
    EXPECT_EQ(shorts.Finished(), (std::vector<std::int16_t>{7, 7, -8, -8, 9, 9}));
    Conversion<float> floats;
    EXPECT_TRUE(floats.Feed(Floats({.channels = 1}, {0.25F, -0.3F})));
    EXPECT_EQ(floats.Finished(), (std::vector<float>{0.25F, 0.25F, -0.3F, -0.3F}));
}

TEST(SampleConverter, TwoChannelsAreTheSidesWhateverPlacesTheyAreGiven)
{
    Conversion<std::int16_t> conversion;
    const std::uint64_t odd = AV_CH_FRONT_CENTER | AV_CH_LOW_FREQUENCY;
    EXPECT_TRUE(conversion.Feed(Shorts({.places = odd}, {100, -200, 300, -400})));
    EXPECT_EQ(conversion.Finished(), (std::vector<std::int16_t>{100, -200, 300, -400}));
    Conversion<std::int16_t> single;
    EXPECT_TRUE(single.Feed(Shorts({.channels = 1, .places = AV_CH_FRONT_LEFT}, {100, 300})));
    EXPECT_EQ(single.Finished(), (std::vector<std::int16_t>{100, 100, 300, 300}));
}

TEST(SampleConverter, MoreChannelsAreMixedByTheirPlaces)
{
    // A quadrophonic frame whose second pair stands behind, and one whose places nobody tells.
    const std::vector<float> leftBack = {0.0F, 0.0F, 1.0F, 0.0F};
    for (const std::uint64_t places : {std::uint64_t{AV_CH_LAYOUT_QUAD}, std::uint64_t{0}}) {
        Conversion<float> conversion;
        EXPECT_TRUE(conversion.Feed(Floats({.channels = 4, .places = places}, leftBack)));
        const std::vector<float> heard = conversion.Finished();
        ASSERT_EQ(heard.size(), 2U);
        if (places != 0) {
            EXPECT_GT(heard[0], 0.3F);
            EXPECT_EQ(heard[1], 0.0F);
        } else { // the default for four: left, right, centre, back
            EXPECT_GT(heard[0], 0.2F);
            EXPECT_EQ(heard[0], heard[1]);
        }
    }
}

TEST(SampleConverter, ThreeChannelsWithPlacesAreNotTheThreeByDefault)
{
    // Left, right and back: by default the third would be below the range of hearing.
    Conversion<float> conversion;
    EXPECT_TRUE(
        conversion.Feed(Floats({.channels = 3, .places = AV_CH_LAYOUT_2_1}, {0.0F, 0.0F, 1.0F})));
    const std::vector<float> heard = conversion.Finished();
    ASSERT_EQ(heard.size(), 2U);
    EXPECT_GT(heard[0], 0.2F);
    EXPECT_GT(heard[1], 0.2F);
}

TEST(SampleConverter, MixedDownFullLevelEverywhereStaysFullLevel)
{
    Conversion<float> conversion;
    EXPECT_TRUE(conversion.Feed(Floats({.channels = 6}, std::vector<float>(6 * 10, 1.0F))));
    for (const float sample : conversion.Finished()) {
        EXPECT_GT(sample, 0.9F);
        EXPECT_LE(sample, 1.0F);
    }
}

TEST(SampleConverter, TheKindOfFramesMayChangeAtAnyMoment)
{
    Conversion<float> conversion;
    EXPECT_TRUE(conversion.Feed(Shorts({}, {16384, -16384})));
    EXPECT_TRUE(conversion.Feed(Floats({}, {0.1F, 0.2F})));
    EXPECT_TRUE(conversion.Feed(Floats({.channels = 1}, {0.3F})));
    EXPECT_TRUE(conversion.Feed(
        Floats({.channels = 3, .places = AV_CH_LAYOUT_SURROUND}, {0.0F, 0.0F, 1.0F})));
    EXPECT_TRUE(conversion.Feed(
        Floats({.channels = 3, .places = AV_CH_LAYOUT_2POINT1}, {0.0F, 0.0F, 1.0F})));
    const std::vector<float> heard = conversion.Finished();
    ASSERT_EQ(heard.size(), 10U);
    EXPECT_EQ(std::vector<float>(heard.begin(), heard.begin() + 6),
              (std::vector<float>{0.5F, -0.5F, 0.1F, 0.2F, 0.3F, 0.3F}));
    EXPECT_GT(heard[6], 0.2F); // the centre
    EXPECT_EQ(heard[8], 0.0F); // what only a subwoofer plays is left out
}

TEST(SampleConverter, AnotherRateIsChangedToItsOwnWithoutLosingTheEnd)
{
    Conversion<std::int16_t> conversion;
    const std::vector<std::int16_t> tone = Tone(kRate / 2, 2000, 2);
    EXPECT_TRUE(conversion.Feed(Shorts({.rate = kRate / 2}, tone)));
    const std::size_t before = conversion.Out().size();
    EXPECT_LT(before, 4000U * 2); // the rest is held back
    const std::vector<std::int16_t> heard = conversion.Finished();
    ASSERT_EQ(heard.size(), 4000U * 2);
    const std::vector<std::int16_t> expected = Tone(kRate, 4000, 2);
    for (std::size_t i = 200; i < heard.size() - 200; ++i)
        ASSERT_NEAR(heard[i], expected[i], 30) << i;
}

TEST(SampleConverter, ARateThatChangesInTheCourseLosesNothingEither)
{
    Conversion<std::int16_t> conversion;
    EXPECT_TRUE(conversion.Feed(Shorts({.rate = kRate / 2}, Tone(kRate / 2, 1000, 2))));
    EXPECT_TRUE(conversion.Feed(Shorts({}, Tone(kRate, 500, 2))));
    EXPECT_TRUE(
        conversion.Feed(Shorts({.channels = 1, .rate = 2 * kRate}, Tone(2 * kRate, 600, 1))));
    EXPECT_EQ(conversion.Finished().size(), (2000U + 500U + 300U) * 2);
}

TEST(SampleConverter, AFrameThatIsNoSoundIsRefusedAndHarmsNothing)
{
    Conversion<std::int16_t> conversion;
    EXPECT_TRUE(conversion.Feed(Shorts({}, {1, 2})));
    AvPointer<AVFrame> noRate = Shorts({}, {3, 4});
    noRate->sample_rate = 0;
    EXPECT_FALSE(conversion.Feed(noRate));
    noRate->sample_rate = -1;
    EXPECT_FALSE(conversion.Feed(noRate));
    AvPointer<AVFrame> noFormat = Shorts({}, {5, 6});
    noFormat->format = 99;
    EXPECT_FALSE(conversion.Feed(noFormat));
    EXPECT_FALSE(conversion.Feed(noFormat));
    EXPECT_FALSE(conversion.Feed(Shorts({.channels = 40}, std::vector<std::int16_t>(40))));
    EXPECT_EQ(conversion.Out(), (std::vector<std::int16_t>{1, 2}));
    EXPECT_TRUE(conversion.Feed(Shorts({}, {7, 8})));
    EXPECT_EQ(conversion.Finished(), (std::vector<std::int16_t>{1, 2, 7, 8}));
}

TEST(SampleConverter, AFrameWithoutSamplesAddsNothing)
{
    Conversion<std::int16_t> conversion;
    AvPointer<AVFrame> empty = Shorts({}, {1, 2});
    empty->nb_samples = 0;
    EXPECT_TRUE(conversion.Feed(empty));
    EXPECT_TRUE(conversion.Finished().empty());
    EXPECT_TRUE(conversion.Finished().empty()); // once more
}

} // namespace
} // namespace lantern
