// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AxisTable.h"
#include "PictureScaler.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace lantern {

// The channels of a pixel, two to a word and 32 bits apart, so that a sum of weighted channels
// never runs into its neighbour: 255 wholes and a half are below 2 to the power of 32.
struct ChannelSums {
    std::uint64_t redBlue = 0;
    std::uint64_t alphaGreen = 0;

    void Add(std::uint32_t pixel, std::uint32_t weight)
    {
        redBlue += Spread(pixel) * weight;
        alphaGreen += Spread(pixel >> 8) * weight;
    }

    std::uint32_t Pixel() const { return Gather(redBlue) | Gather(alphaGreen) << 8; }

private:
    static std::uint64_t Spread(std::uint32_t pixel)
    {
        return (pixel & 0xFFU) | std::uint64_t{pixel & 0xFF0000U} << 16;
    }
    static std::uint32_t Gather(std::uint64_t sums)
    {
        constexpr std::uint64_t half = AxisTable::kWholeWeight / 2;
        const std::uint64_t rounded = sums + (half | half << 32);
        return static_cast<std::uint32_t>(rounded >> AxisTable::kWeightBits & 0xFFU) |
               static_cast<std::uint32_t>(rounded >> (32 + AxisTable::kWeightBits)) << 16;
    }
};
static_assert(std::uint64_t{255} * AxisTable::kWholeWeight + AxisTable::kWholeWeight / 2 <
              std::uint64_t{1} << 32);

// Scales an indexed picture to a true-colour image. Each source pixel is a flat block, and a
// device pixel mixes the blocks that fall on it by their area: enlarged, the picture stays sharp
// and its pixels stay even, with one mixed device pixel at most along an edge; at whole multiples
// it has none; reduced, no line is lost.
class AreaScaler final : public PictureScaler {
public:
    void SetGeometry(const AxisGeometry& horizontal, const AxisGeometry& vertical) override;
    DeviceRect Reach(AxisRange columns, AxisRange rows) const override;
    void Draw(const IndexedPicture& picture, const ColourWords& colours, const SurfaceImage& image,
              const DeviceRect& rect) override;

private:
    struct ScaledRow {
        int source = -1;
        std::vector<std::uint32_t> pixels;
    };

    void ScaleRow(std::span<const std::uint8_t> indexes, const ColourWords& colours,
                  AxisRange columns, std::span<std::uint32_t> out);
    void MixPairs(AxisRange columns, std::span<std::uint32_t> out);
    void MixCrowds(AxisRange columns, std::span<std::uint32_t> out) const;
    std::span<const std::uint32_t> Row(const IndexedPicture& picture, const ColourWords& colours,
                                       AxisRange columns, int source);
    void MixRows(const IndexedPicture& picture, const ColourWords& colours, AxisRange columns,
                 int deviceRow, std::span<std::uint32_t> out);

    AxisTable m_columns;
    AxisTable m_rows;
    std::array<ScaledRow, 2> m_scaledRows; // the last ones scaled, by the parity of their source
    std::vector<std::uint32_t> m_sourceRow;
    std::vector<std::uint32_t> m_firstOfPairs;
    std::vector<std::uint32_t> m_secondOfPairs;
    std::vector<ChannelSums> m_sums;
};

} // namespace lantern
