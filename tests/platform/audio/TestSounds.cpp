// SPDX-License-Identifier: GPL-3.0-or-later
#include "TestSounds.h"

#include <cmath>
#include <numbers>
#include <random>
#include <string_view>

namespace lantern {
namespace {

void PutText(std::vector<std::uint8_t>& out, std::string_view text)
{
    for (const char character : text)
        out.push_back(static_cast<std::uint8_t>(character));
}

void PutLittle(std::vector<std::uint8_t>& out, std::uint32_t value, int bytes)
{
    for (int i = 0; i < bytes; ++i)
        out.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
}

} // namespace

Pcm MakeTicks(int sampleRate, int channels, std::int64_t frames)
{
    Pcm pcm{.sampleRate = sampleRate, .channels = channels, .samples = {}};
    pcm.samples.reserve(static_cast<std::size_t>(frames * channels));
    std::mt19937 random(1);
    for (std::int64_t frame = 0; frame < frames; ++frame) {
        const double intoSecond = static_cast<double>(frame % sampleRate) / sampleRate;
        const double burst =
            intoSecond < 0.020 ? 20000 * std::cos(2 * std::numbers::pi * 1000 * intoSecond) : 0;
        for (int channel = 0; channel < channels; ++channel) {
            const auto noise = static_cast<int>(random() % 201) - 100;
            const double level = channel % 2 == 0 ? 1.0 : 0.5;
            pcm.samples.push_back(static_cast<std::int16_t>(std::lround(burst * level) + noise));
        }
    }
    return pcm;
}

std::vector<std::uint8_t> WavImage(const Pcm& pcm)
{
    const auto dataSize = static_cast<std::uint32_t>(pcm.samples.size() * sizeof(std::int16_t));
    const auto channels = static_cast<std::uint32_t>(pcm.channels);
    const auto rate = static_cast<std::uint32_t>(pcm.sampleRate);
    std::vector<std::uint8_t> out;
    PutText(out, "RIFF");
    PutLittle(out, dataSize + 36, 4);
    PutText(out, "WAVEfmt ");
    PutLittle(out, 16, 4);
    PutLittle(out, 1, 2);
    PutLittle(out, channels, 2);
    PutLittle(out, rate, 4);
    PutLittle(out, rate * channels * 2, 4);
    PutLittle(out, channels * 2, 2);
    PutLittle(out, 16, 2);
    PutText(out, "data");
    PutLittle(out, dataSize, 4);
    for (const std::int16_t sample : pcm.samples)
        PutLittle(out, static_cast<std::uint16_t>(sample), 2);
    return out;
}

} // namespace lantern
