// SPDX-License-Identifier: GPL-3.0-or-later
#include "SampleConverter.h"

extern "C" {
#include <libavutil/channel_layout.h>
#include <libavutil/opt.h>
}

#include <algorithm>
#include <array>
#include <cstring>

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

} // namespace

bool SampleConverter::Convert(const AVFrame& frame, std::vector<std::byte>& out)
{
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
