// SPDX-License-Identifier: GPL-3.0-or-later
#include "SampleConverter.h"

extern "C" {
#include <libavutil/channel_layout.h>
#include <libavutil/opt.h>
}

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <functional>
#include <span>

namespace lantern {
namespace {

AVSampleFormat AvFormat(SampleKind kind)
{
    return kind == SampleKind::Int16 ? AV_SAMPLE_FMT_S16 : AV_SAMPLE_FMT_FLT;
}

// One or two channels are what they are, whatever places the file gives them.
AVChannelLayout InputLayout(const AVFrame& frame)
{
    AVChannelLayout layout = {};
    const bool places = frame.ch_layout.order == AV_CHANNEL_ORDER_NATIVE;
    if (places && frame.ch_layout.nb_channels > 2)
        av_channel_layout_from_mask(&layout, frame.ch_layout.u.mask);
    else
        av_channel_layout_default(&layout, frame.ch_layout.nb_channels);
    return layout;
}

std::uint64_t LayoutMask(const AVFrame& frame)
{
    return frame.ch_layout.order == AV_CHANNEL_ORDER_NATIVE ? frame.ch_layout.u.mask : 0;
}

// Makes stereo of the mono frames at the start of the span, from the last to the first.
template <typename Sample>
void SpreadMono(std::byte* bytes, int frames)
{
    for (int i = frames - 1; i >= 0; --i) {
        Sample sample = {};
        std::memcpy(&sample, bytes + static_cast<std::size_t>(i) * sizeof(Sample), sizeof(Sample));
        const std::array both = {sample, sample};
        std::memcpy(bytes + static_cast<std::size_t>(i) * sizeof(both), both.data(), sizeof(both));
    }
}

// As loud as no sound is, whatever scale a file goes by. NaN is not, either.
template <typename Sample>
bool IsSample(Sample value)
{
    constexpr auto kBeyondMeasure = static_cast<Sample>(1e10);
    return std::abs(value) < kBeyondMeasure;
}

// One sample that is none would go on sounding: a stretcher never forgets it. False without memory.
template <typename Sample>
bool SilenceNoSamples(AVFrame& frame)
{
    const bool planar = av_sample_fmt_is_planar(static_cast<AVSampleFormat>(frame.format)) != 0;
    const int channels = frame.ch_layout.nb_channels;
    const auto inPlane = static_cast<std::size_t>(frame.nb_samples) *
                         static_cast<std::size_t>(planar ? 1 : channels);
    for (int plane = 0; plane < (planar ? channels : 1); ++plane) {
        const auto samples = [&] {
            return std::span(reinterpret_cast<Sample*>(frame.extended_data[plane]), inPlane);
        };
        if (std::ranges::all_of(samples(), IsSample<Sample>))
            continue;
        if (av_frame_make_writable(&frame) < 0)
            return false;
        std::ranges::replace_if(samples(), std::not_fn(IsSample<Sample>), Sample{});
    }
    return true;
}

bool SilenceNoSamples(AVFrame& frame)
{
    switch (av_get_packed_sample_fmt(static_cast<AVSampleFormat>(frame.format))) {
    case AV_SAMPLE_FMT_FLT:
        return SilenceNoSamples<float>(frame);
    case AV_SAMPLE_FMT_DBL:
        return SilenceNoSamples<double>(frame);
    default:
        return true;
    }
}

} // namespace

void ToFloats(SampleKind kind, std::span<const std::byte> samples, float* out)
{
    if (kind == SampleKind::Float) {
        std::memcpy(out, samples.data(), samples.size());
        return;
    }
    constexpr float kFullScale = 32768.0F;
    for (std::size_t i = 0; i < samples.size() / sizeof(std::int16_t); ++i) {
        std::int16_t sample = 0;
        std::memcpy(&sample, samples.data() + i * sizeof(sample), sizeof(sample));
        out[i] = static_cast<float>(sample) / kFullScale;
    }
}

bool SampleConverter::Convert(AVFrame& frame, std::vector<std::byte>& out)
{
    if (!SilenceNoSamples(frame))
        return false;
    const bool sameInput = m_converter && m_inputFormat == frame.format &&
                           m_inputChannels == frame.ch_layout.nb_channels &&
                           m_inputLayout == LayoutMask(frame) && m_inputRate == frame.sample_rate;
    if (!sameInput) {
        Finish(out);
        if (!Prepare(frame))
            return false;
    }
    Append(frame.extended_data, frame.nb_samples, out);
    return true;
}

void SampleConverter::Finish(std::vector<std::byte>& out)
{
    if (m_converter && m_inputRate != m_sampleRate)
        Append(nullptr, 0, out);
    m_converter.reset();
}

bool SampleConverter::Prepare(const AVFrame& frame)
{
    AVChannelLayout input = InputLayout(frame);
    if (input.order != AV_CHANNEL_ORDER_NATIVE || frame.sample_rate <= 0)
        return false;
    AVChannelLayout output = {};
    av_channel_layout_default(&output, std::min(input.nb_channels, 2));

    SwrContext* converter = nullptr;
    const int made = swr_alloc_set_opts2(&converter, &output, AvFormat(m_kind), m_sampleRate,
                                         &input, static_cast<AVSampleFormat>(frame.format),
                                         frame.sample_rate, 0, nullptr);
    m_converter.reset(converter);
    // Mixed down, full level in every channel stays full level.
    if (made < 0 || av_opt_set_double(converter, "rematrix_maxval", 1.0, 0) < 0 ||
        swr_init(converter) < 0) {
        m_converter.reset();
        return false;
    }
    m_inputFormat = frame.format;
    m_inputChannels = frame.ch_layout.nb_channels;
    m_inputLayout = LayoutMask(frame);
    m_inputRate = frame.sample_rate;
    return true;
}

void SampleConverter::Append(const std::uint8_t* const* planes, int frames,
                             std::vector<std::byte>& out)
{
    const int room = swr_get_out_samples(m_converter.get(), frames);
    if (room <= 0)
        return;
    const std::size_t frameSize = StereoFrameSize(m_kind);
    const std::size_t before = out.size();
    out.resize(before + static_cast<std::size_t>(room) * frameSize);

    std::byte* const target = out.data() + before;
    auto* plane = reinterpret_cast<std::uint8_t*>(target);
    // The library takes its input as pointers to what could be written to, and only reads it.
    auto** const input = const_cast<const std::uint8_t**>(planes);
    const int converted = std::max(0, swr_convert(m_converter.get(), &plane, room, input, frames));
    if (m_inputChannels == 1 && m_kind == SampleKind::Int16)
        SpreadMono<std::int16_t>(target, converted);
    else if (m_inputChannels == 1)
        SpreadMono<float>(target, converted);
    out.resize(before + static_cast<std::size_t>(converted) * frameSize);
}

} // namespace lantern
