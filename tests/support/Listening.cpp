// SPDX-License-Identifier: GPL-3.0-or-later
#include "Listening.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace lantern::test {
namespace {

constexpr double kQuietSeconds = 0.1;

double Mono(std::span<const float> stereo, std::size_t frame)
{
    return (static_cast<double>(stereo[2 * frame]) + static_cast<double>(stereo[2 * frame + 1])) /
           2.0;
}

Burst Describe(std::span<const float> stereo, std::size_t from, std::size_t to, int rate)
{
    Burst burst;
    for (std::size_t i = from; i < to; ++i)
        burst.level = std::max(burst.level, std::abs(Mono(stereo, i)));
    std::size_t start = from;
    while (std::abs(Mono(stereo, start)) < burst.level / 2.0)
        ++start;
    burst.startFrame = static_cast<double>(start);
    burst.lengthFrames = static_cast<double>(to - from);
    const std::size_t quarter = (to - from) / 4;
    burst.frequency =
        Frequency(stereo.subspan(2 * (from + quarter), 2 * (to - from - 2 * quarter)), rate);
    return burst;
}

} // namespace

double Level(std::span<const float> stereo, Side side)
{
    double sum = 0.0;
    const std::size_t offset = side == Side::Left ? 0 : 1;
    for (std::size_t i = offset; i < stereo.size(); i += 2)
        sum += static_cast<double>(stereo[i]) * static_cast<double>(stereo[i]);
    return stereo.empty() ? 0.0 : std::sqrt(sum / (static_cast<double>(stereo.size()) / 2.0));
}

double Frequency(std::span<const float> stereo, int rate)
{
    double first = -1.0;
    double last = -1.0;
    int crossings = 0;
    for (std::size_t i = 1; i < stereo.size() / 2; ++i) {
        const double before = Mono(stereo, i - 1);
        const double after = Mono(stereo, i);
        if (before >= 0.0 || after < 0.0)
            continue;
        last = static_cast<double>(i) - after / (after - before);
        if (first < 0.0)
            first = last;
        ++crossings;
    }
    return crossings < 2 ? 0.0 : (crossings - 1) * rate / (last - first);
}

std::vector<Burst> FindBursts(std::span<const float> stereo, int rate, double threshold)
{
    const auto quiet = static_cast<std::size_t>(kQuietSeconds * rate);
    std::vector<Burst> bursts;
    std::size_t start = 0;
    std::size_t afterLastLoud = 0; // 0 while it is quiet
    for (std::size_t i = 0; i < stereo.size() / 2; ++i) {
        if (std::abs(Mono(stereo, i)) >= threshold) {
            if (afterLastLoud == 0)
                start = i;
            afterLastLoud = i + 1;
        } else if (afterLastLoud != 0 && i - afterLastLoud >= quiet) {
            bursts.push_back(Describe(stereo, start, afterLastLoud, rate));
            afterLastLoud = 0;
        }
    }
    if (afterLastLoud != 0)
        bursts.push_back(Describe(stereo, start, afterLastLoud, rate));
    return bursts;
}

} // namespace lantern::test
