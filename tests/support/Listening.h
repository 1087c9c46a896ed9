// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>
#include <vector>

// What a trained ear makes of recorded sound. Samples are interleaved stereo.
namespace lantern::test {

enum class Side { Left, Right };

// Root mean square of one side.
double Level(std::span<const float> stereo, Side side);
inline double Level(std::span<const float> stereo)
{
    return (Level(stereo, Side::Left) + Level(stereo, Side::Right)) / 2.0;
}

// Of the strongest pure tone, by its zero crossings: exact to half a percent for a tenth of a
// second of tone; 0 if there is none.
double Frequency(std::span<const float> stereo, int rate);

// A sound with silence before it.
struct Burst {
    double startFrame = 0.0; // where it rises through half of its level
    double lengthFrames = 0.0;
    double level = 0.0;     // its peak
    double frequency = 0.0; // of its middle
};

// The bursts of a recording: what rises above the threshold after a tenth of a second of quiet.
std::vector<Burst> FindBursts(std::span<const float> stereo, int rate, double threshold = 0.05);

} // namespace lantern::test
