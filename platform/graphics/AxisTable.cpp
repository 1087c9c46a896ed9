// SPDX-License-Identifier: GPL-3.0-or-later
#include "AxisTable.h"

#include <algorithm>
#include <cmath>

namespace lantern {

namespace {

std::int64_t RoundUpDivide(std::int64_t dividend, std::int64_t divisor)
{
    return (dividend + divisor - 1) / divisor;
}

struct Positions {
    std::size_t begin;
    std::size_t count;
};

// Where the values of a range stand in an ascending list.
Positions Locate(const std::vector<int>& ascending, AxisRange range)
{
    const auto begin = std::ranges::lower_bound(ascending, range.begin);
    const auto end = std::lower_bound(begin, ascending.end(), range.end);
    return {static_cast<std::size_t>(begin - ascending.begin()),
            static_cast<std::size_t>(end - begin)};
}

} // namespace

AxisGeometry MakeAxisGeometry(int sourceCount, int toMin, int toMax, double devicePixelRatio,
                              int deviceCount)
{
    AxisGeometry geometry;
    geometry.sourceCount = sourceCount;
    geometry.beginEdge = std::llround(toMin * devicePixelRatio);
    geometry.endEdge = std::llround(toMax * devicePixelRatio);
    geometry.clipBegin =
        static_cast<int>(std::clamp<std::int64_t>(geometry.beginEdge, 0, deviceCount));
    geometry.clipEnd = static_cast<int>(std::clamp<std::int64_t>(geometry.endEdge, 0, deviceCount));
    return geometry;
}

AxisRange DevicePixelsOf(const AxisGeometry& geometry, AxisRange source)
{
    const std::int64_t length = geometry.endEdge - geometry.beginEdge;
    const std::int64_t begin = geometry.beginEdge + source.begin * length / geometry.sourceCount;
    const std::int64_t end =
        geometry.beginEdge + RoundUpDivide(source.end * length, geometry.sourceCount);
    const std::int64_t low = geometry.clipBegin;
    const std::int64_t high = geometry.clipEnd;
    return {static_cast<int>(std::clamp(begin, low, high)),
            static_cast<int>(std::clamp(end, low, high))};
}

AxisTable::AxisTable(const AxisGeometry& geometry) : m_geometry(geometry)
{
    m_weightBegins.push_back(0);
    for (int pixel = geometry.clipBegin; pixel < geometry.clipEnd; ++pixel)
        AppendPixel(pixel);
}

void AxisTable::AppendPixel(int pixel)
{
    // In parts of which a device pixel has sourceCount and a source pixel has length, all edges
    // are whole numbers.
    const std::int64_t length = m_geometry.endEdge - m_geometry.beginEdge;
    const std::int64_t parts = m_geometry.sourceCount;
    const std::int64_t begin = (pixel - m_geometry.beginEdge) * parts;
    const std::int64_t end = begin + parts;
    const std::int64_t first = begin / length;
    const std::int64_t last = RoundUpDivide(end, length) - 1;
    m_firstSources.push_back(static_cast<int>(first));

    // Rounding the sums rather than the weights makes them add up to the whole.
    std::int64_t before = 0;
    for (std::int64_t source = first; source <= last; ++source) {
        const std::int64_t covered = std::min(end, (source + 1) * length) - begin;
        const std::int64_t sum = (covered * kWholeWeight + parts / 2) / parts;
        m_weights.push_back(static_cast<std::uint32_t>(sum - before));
        before = sum;
    }
    m_weightBegins.push_back(m_weights.size());
    if (last == first + 1) {
        m_pairPixels.push_back(pixel);
        m_pairWeights.insert(m_pairWeights.end(), kChannels, PairWeight(pixel));
    } else if (last > first) {
        m_crowdedPixels.push_back(pixel);
    }
}

std::span<const int> AxisTable::FirstSources(AxisRange pixels) const
{
    return std::span(m_firstSources)
        .subspan(Index(pixels.begin), static_cast<std::size_t>(pixels.end - pixels.begin));
}

std::span<const std::uint32_t> AxisTable::Weights(int pixel) const
{
    const std::size_t begin = m_weightBegins[Index(pixel)];
    const std::size_t end = m_weightBegins[Index(pixel) + 1];
    return std::span(m_weights).subspan(begin, end - begin);
}

std::int16_t AxisTable::PairWeight(int pixel) const
{
    constexpr int shift = kWeightBits - kPairWeightBits;
    constexpr std::uint32_t half = 1U << (shift - 1);
    constexpr std::uint32_t most = (1U << kPairWeightBits) - 1; // it has to stay below the whole
    return static_cast<std::int16_t>(std::min((Weights(pixel)[1] + half) >> shift, most));
}

AxisTable::Pairs AxisTable::PairPixels(AxisRange pixels) const
{
    const Positions at = Locate(m_pairPixels, pixels);
    return {std::span(m_pairPixels).subspan(at.begin, at.count),
            std::span(m_pairWeights).subspan(at.begin * kChannels, at.count * kChannels)};
}

std::span<const int> AxisTable::CrowdedPixels(AxisRange pixels) const
{
    const Positions at = Locate(m_crowdedPixels, pixels);
    return std::span(m_crowdedPixels).subspan(at.begin, at.count);
}

} // namespace lantern
