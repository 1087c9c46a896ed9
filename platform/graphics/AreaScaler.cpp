// SPDX-License-Identifier: GPL-3.0-or-later
#include "AreaScaler.h"

#include <algorithm>
#include <cstddef>

namespace lantern {

namespace {

std::size_t Count(AxisRange range)
{
    return static_cast<std::size_t>(range.end - range.begin);
}

// The two-row mix in 16-bit steps, which compilers turn into vector code: the difference of the
// channels, weighted, to six places behind the point.
void BlendRows(std::span<const std::uint32_t> upper, std::span<const std::uint32_t> lower,
               std::uint32_t lowerWeight, std::span<std::uint32_t> out)
{
    constexpr int weightShift = AxisTable::kWeightBits - 15;
    constexpr std::uint32_t half = 1U << (weightShift - 1);
    const auto weight =
        static_cast<std::int16_t>(std::min((lowerWeight + half) >> weightShift, 0x7FFFU));
    const auto* from = reinterpret_cast<const std::uint8_t*>(upper.data());
    const auto* to = reinterpret_cast<const std::uint8_t*>(lower.data());
    auto* target = reinterpret_cast<std::uint8_t*>(out.data());
    const std::size_t channels = out.size() * sizeof(std::uint32_t);
    for (std::size_t channel = 0; channel < channels; ++channel) {
        const auto difference = static_cast<std::int16_t>((to[channel] - from[channel]) * 128);
        const auto step = static_cast<std::int16_t>((difference * weight) >> 16);
        const auto mixed = static_cast<std::int16_t>(from[channel] * 64 + step + 32);
        target[channel] = static_cast<std::uint8_t>(mixed >> 6);
    }
}

} // namespace

void AreaScaler::SetGeometry(const AxisGeometry& horizontal, const AxisGeometry& vertical)
{
    if (horizontal != m_columns.Geometry())
        m_columns = AxisTable(horizontal);
    if (vertical != m_rows.Geometry())
        m_rows = AxisTable(vertical);
}

void AreaScaler::Draw(const IndexedPicture& picture, const ColourWords& colours,
                      const SurfaceImage& image, const DeviceRect& rect)
{
    const AxisRange columns{rect.left, rect.left + rect.width};
    for (ScaledRow& row : m_scaledRows)
        row.source = -1;
    for (int deviceRow = rect.top; deviceRow < rect.top + rect.height; ++deviceRow) {
        const std::span out(image.pixels + std::ptrdiff_t{deviceRow} * image.stride + rect.left,
                            static_cast<std::size_t>(rect.width));
        const int first = m_rows.FirstSource(deviceRow);
        const auto weights = m_rows.Weights(deviceRow);
        if (weights.size() == 1)
            std::ranges::copy(Row(picture, colours, columns, first), out.begin());
        else if (weights.size() == 2)
            BlendRows(Row(picture, colours, columns, first),
                      Row(picture, colours, columns, first + 1), weights[1], out);
        else
            MixRows(picture, colours, columns, deviceRow, out);
    }
}

std::span<const std::uint32_t> AreaScaler::Row(const IndexedPicture& picture,
                                               const ColourWords& colours, AxisRange columns,
                                               int source)
{
    ScaledRow& row = m_scaledRows[static_cast<std::size_t>(source) % m_scaledRows.size()];
    if (row.source != source) {
        row.source = source;
        row.pixels.resize(Count(columns));
        const auto width = static_cast<std::size_t>(picture.width);
        ScaleRow(picture.indexes.subspan(static_cast<std::size_t>(source) * width, width), colours,
                 columns, row.pixels);
    }
    return row.pixels;
}

void AreaScaler::ScaleRow(std::span<const std::uint8_t> indexes, const ColourWords& colours,
                          AxisRange columns, std::span<std::uint32_t> out)
{
    m_sourceRow.resize(indexes.size());
    const int lastSource = m_columns.LastSource(columns.end - 1);
    for (int source = m_columns.FirstSource(columns.begin); source <= lastSource; ++source) {
        const auto at = static_cast<std::size_t>(source);
        m_sourceRow[at] = colours[indexes[at]];
    }

    const std::span<const int> sources = m_columns.FirstSources(columns);
    for (std::size_t pixel = 0; pixel < out.size(); ++pixel)
        out[pixel] = m_sourceRow[static_cast<std::size_t>(sources[pixel])];

    for (const int pixel : m_columns.MixedPixels(columns)) {
        ChannelSums sums;
        auto source = static_cast<std::size_t>(m_columns.FirstSource(pixel));
        for (const std::uint32_t weight : m_columns.Weights(pixel))
            sums.Add(m_sourceRow[source++], weight);
        out[static_cast<std::size_t>(pixel - columns.begin)] = sums.Pixel();
    }
}

void AreaScaler::MixRows(const IndexedPicture& picture, const ColourWords& colours,
                         AxisRange columns, int deviceRow, std::span<std::uint32_t> out)
{
    m_sums.assign(out.size(), ChannelSums{});
    int source = m_rows.FirstSource(deviceRow);
    for (const std::uint32_t weight : m_rows.Weights(deviceRow)) {
        const std::span<const std::uint32_t> row = Row(picture, colours, columns, source++);
        for (std::size_t pixel = 0; pixel < out.size(); ++pixel)
            m_sums[pixel].Add(row[pixel], weight);
    }
    std::ranges::transform(m_sums, out.begin(),
                           [](const ChannelSums& sums) { return sums.Pixel(); });
}

} // namespace lantern
