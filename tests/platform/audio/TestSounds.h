// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <span>
#include <vector>

// Sounds of known contents, for the tests of sound.
namespace lantern {

struct Pcm {
    int sampleRate = 44100;
    int channels = 2;
    std::vector<std::int16_t> samples; // interleaved

    std::int64_t FrameCount() const { return static_cast<std::int64_t>(samples.size()) / channels; }
};

// Seeded noise at a low level that uses every bit, with a burst of 1 kHz and 20 ms at each whole
// second, the first at frame 0. The channels differ.
Pcm MakeTicks(int sampleRate, int channels, std::int64_t frames);

// A RIFF image with the plain 16-byte format chunk.
std::vector<std::uint8_t> WavImage(const Pcm& pcm);

} // namespace lantern
