// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AvPointers.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace lantern {

// How a sample is kept. Whatever has 16 bits or less, or lost more than that in coding, is kept as
// 16 bits; what is deeper and lossless, as a float.
enum class SampleKind { Int16, Float };

constexpr std::size_t StereoFrameSize(SampleKind kind)
{
    return 2 * (kind == SampleKind::Int16 ? sizeof(std::int16_t) : sizeof(float));
}

// As floats of full scale 1.
void ToFloats(SampleKind kind, std::span<const std::byte> samples, float* out);

// Turns decoded frames of any layout into interleaved stereo of one kind and rate. Mono goes to
// both sides unchanged; more than two channels are mixed down so that they can't clip. Samples of
// up to 16 bits come through bit for bit, unless their rate has to be changed.
class SampleConverter {
public:
    SampleConverter(SampleKind kind, int sampleRate) : m_kind(kind), m_sampleRate(sampleRate) {}

    // Appends the frame's samples. What is no number, or beyond all measure, becomes silence in the
    // frame. False if there is no way to make stereo of it.
    bool Convert(AVFrame& frame, std::vector<std::byte>& out);
    // Appends what a change of the rate still holds back.
    void Finish(std::vector<std::byte>& out);

private:
    bool Prepare(const AVFrame& frame);
    void Append(const std::uint8_t* const* planes, int frames, std::vector<std::byte>& out);

    SampleKind m_kind;
    int m_sampleRate;
    AvPointer<SwrContext> m_converter;
    // What the converter was made for: a sound may change in its course.
    int m_inputFormat = AV_SAMPLE_FMT_NONE;
    int m_inputChannels = 0;
    std::uint64_t m_inputLayout = 0;
    int m_inputRate = 0;
};

} // namespace lantern
