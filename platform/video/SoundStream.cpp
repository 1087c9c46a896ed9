// SPDX-License-Identifier: GPL-3.0-or-later
#include "FilmStream.h"

#include <algorithm>
#include <cmath>

namespace lantern {
namespace {

constexpr int kLossyBitRate = 192000;
constexpr int kFramesAtOnce = 4096; // of an encoder that takes any number
// All that a 16-bit sound has, and a deeper one, too; the encoder leaves out the bits that are 0.
constexpr int kExactBits = 24;

AVSampleFormat SampleFormatOf(FilmKind kind)
{
    switch (kind) {
    case FilmKind::Mp4:
        return AV_SAMPLE_FMT_FLTP;
    case FilmKind::WebM:
        return AV_SAMPLE_FMT_FLT;
    case FilmKind::Matroska:
        break;
    }
    return AV_SAMPLE_FMT_S32;
}

std::int32_t ExactSample(float sample)
{
    constexpr float kFull = 1 << (kExactBits - 1);
    const float scaled = std::clamp(std::nearbyint(sample * kFull), -kFull, kFull - 1);
    return static_cast<std::int32_t>(scaled) * (1 << (32 - kExactBits));
}

} // namespace

QString SoundStream::Open(const FilmFormat& format)
{
    const FilmCodecs& codecs = CodecsOf(format.kind);
    AVCodecContext& encoder = Prepare(codecs.sound);
    encoder.sample_rate = format.soundRate;
    encoder.sample_fmt = SampleFormatOf(format.kind);
    encoder.time_base = {1, format.soundRate};
    av_channel_layout_default(&encoder.ch_layout, 2);
    if (codecs.isExact)
        encoder.bits_per_raw_sample = kExactBits;
    else
        encoder.bit_rate = kLossyBitRate;
    QString error = FilmStream::Open("");
    // The container's times count from the start of the lead-in, and beside them it tells how long
    // that is. Later libraries count so themselves.
    if (format.kind != FilmKind::Mp4 && LIBAVFORMAT_VERSION_MAJOR < 60)
        SetLater(encoder.initial_padding);
    return error;
}

QString SoundStream::Add(std::span<const float> stereo)
{
    m_stereo.insert(m_stereo.end(), stereo.begin(), stereo.end());
    const int size = Encoder().frame_size;
    const auto frames = static_cast<std::size_t>(size > 0 ? size : kFramesAtOnce);
    QString error;
    while (error.isEmpty() && m_stereo.size() - m_taken >= 2 * frames)
        error = EncodeFrames(frames);
    m_stereo.erase(m_stereo.begin(), m_stereo.begin() + static_cast<std::ptrdiff_t>(m_taken));
    m_taken = 0;
    return error;
}

QString SoundStream::Finish()
{
    QString error;
    if (!m_stereo.empty())
        error = EncodeFrames(m_stereo.size() / 2);
    return error.isEmpty() ? Encode(nullptr) : error;
}

QString SoundStream::EncodeFrames(std::size_t frames)
{
    const AVCodecContext& encoder = Encoder();
    const FilmPointer<AVFrame> frame = MadeForFilm(av_frame_alloc());
    frame->nb_samples = static_cast<int>(frames);
    frame->format = encoder.sample_fmt;
    frame->sample_rate = encoder.sample_rate;
    frame->pts = m_encodedFrames;
    if (av_channel_layout_copy(&frame->ch_layout, &encoder.ch_layout) < 0 ||
        av_frame_get_buffer(frame.get(), 0) < 0)
        throw std::bad_alloc();
    Fill(*frame);
    m_taken += 2 * frames;
    m_encodedFrames += frame->nb_samples;
    return Encode(frame.get());
}

void SoundStream::Fill(AVFrame& frame)
{
    const auto samples =
        std::span(m_stereo).subspan(m_taken, 2 * static_cast<std::size_t>(frame.nb_samples));
    if (frame.format == AV_SAMPLE_FMT_FLTP) {
        auto* const left = reinterpret_cast<float*>(frame.data[0]);
        auto* const right = reinterpret_cast<float*>(frame.data[1]);
        for (std::size_t i = 0; i < samples.size() / 2; ++i) {
            left[i] = samples[2 * i];
            right[i] = samples[2 * i + 1];
        }
    } else if (frame.format == AV_SAMPLE_FMT_FLT) {
        std::ranges::copy(samples, reinterpret_cast<float*>(frame.data[0]));
    } else {
        std::ranges::transform(samples, reinterpret_cast<std::int32_t*>(frame.data[0]),
                               ExactSample);
    }
}

} // namespace lantern
