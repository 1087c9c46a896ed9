// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace lantern {

// How one axis of the picture lies on the surface: source pixels 0..sourceCount-1 fill the device
// pixels from edge to edge, of which those from clipBegin to before clipEnd exist.
struct AxisGeometry {
    int sourceCount = 0;
    std::int64_t beginEdge = 0;
    std::int64_t endEdge = 0;
    int clipBegin = 0;
    int clipEnd = 0;

    bool operator==(const AxisGeometry&) const = default;
};

struct AxisRange {
    int begin = 0;
    int end = 0; // one past the last

    bool operator==(const AxisRange&) const = default;
};

// The geometry of sourceCount pixels between two edges in units of the surface. It is empty
// (clipBegin is not below clipEnd) when nothing of it lies on the deviceCount pixels.
AxisGeometry MakeAxisGeometry(int sourceCount, int toMin, int toMax, double devicePixelRatio,
                              int deviceCount);

// The device pixels that show any part of the source pixels given, clipped.
AxisRange DevicePixelsOf(const AxisGeometry& geometry, AxisRange source);

// For each device pixel of an axis, the source pixels that it shows, weighted by the part of it
// that each one covers. Enlarging, that is one source pixel, or a pair where an edge falls inside
// the device pixel; reducing, it is all that fall on it.
class AxisTable {
public:
    // The weights of a device pixel add up to one whole, exactly.
    static constexpr int kWeightBits = 24;
    static constexpr std::uint32_t kWholeWeight = std::uint32_t{1} << kWeightBits;
    // A pair is so frequent that it has a form of its own: the weight of its second pixel, in
    // parts of which 32768 would be the whole.
    static constexpr int kPairWeightBits = 15;

    AxisTable() = default;
    explicit AxisTable(const AxisGeometry& geometry);

    const AxisGeometry& Geometry() const { return m_geometry; }
    int FirstSource(int pixel) const { return m_firstSources[Index(pixel)]; }
    int LastSource(int pixel) const { return FirstSource(pixel) + SourceCount(pixel) - 1; }
    int SourceCount(int pixel) const
    {
        return static_cast<int>(m_weightBegins[Index(pixel) + 1] - m_weightBegins[Index(pixel)]);
    }
    std::span<const int> FirstSources(AxisRange pixels) const;
    std::span<const std::uint32_t> Weights(int pixel) const;
    std::int16_t PairWeight(int pixel) const;

    // The device pixels of a range that show two source pixels, ascending, and their weights.
    struct Pairs {
        std::span<const int> pixels;
        std::span<const std::int16_t> weights; // once for each channel of each pixel
    };
    static constexpr std::size_t kChannels = 4;
    Pairs PairPixels(AxisRange pixels) const;
    // Those that show more, ascending.
    std::span<const int> CrowdedPixels(AxisRange pixels) const;

private:
    std::size_t Index(int pixel) const
    {
        return static_cast<std::size_t>(pixel - m_geometry.clipBegin);
    }
    void AppendPixel(int pixel);

    AxisGeometry m_geometry;
    std::vector<int> m_firstSources;
    std::vector<std::size_t> m_weightBegins; // one more than there are pixels
    std::vector<std::uint32_t> m_weights;
    std::vector<int> m_pairPixels;
    std::vector<std::int16_t> m_pairWeights;
    std::vector<int> m_crowdedPixels;
};

} // namespace lantern
