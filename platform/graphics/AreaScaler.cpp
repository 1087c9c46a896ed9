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

// One channel of two mixed: their difference, weighted, to six places behind the point. All of it
// fits 16 bits, which lets compilers work on eight channels at once.
std::uint8_t Mix(std::uint8_t first, std::uint8_t second, std::int16_t secondWeight)
{
    constexpr int places = 6;
    constexpr int differenceShift = 16 + places - AxisTable::kPairWeightBits;
    const auto difference = static_cast<std::int16_t>((second - first) * (1 << differenceShift));
    const auto step = static_cast<std::int16_t>((difference * secondWeight) >> 16);
    const auto sum = static_cast<std::int16_t>((first << places) + step + (1 << (places - 1)));
    return static_cast<std::uint8_t>(sum >> places);
}

const std::uint8_t* Channels(const std::uint32_t* pixels)
{
    return reinterpret_cast<const std::uint8_t*>(pixels);
}

std::uint8_t* Channels(std::uint32_t* pixels)
{
    return reinterpret_cast<std::uint8_t*>(pixels);
}

void MixRow(const std::uint8_t* first, const std::uint8_t* second, std::int16_t secondWeight,
            std::span<std::uint32_t> out)
{
    std::uint8_t* target = Channels(out.data());
    for (std::size_t channel = 0; channel < out.size() * AxisTable::kChannels; ++channel)
        target[channel] = Mix(first[channel], second[channel], secondWeight);
}

} // namespace

void AreaScaler::SetGeometry(const AxisGeometry& horizontal, const AxisGeometry& vertical)
{
    if (horizontal != m_columns.Geometry())
        m_columns = AxisTable(horizontal);
    if (vertical != m_rows.Geometry())
        m_rows = AxisTable(vertical);
}

DeviceRect AreaScaler::Reach(AxisRange columns, AxisRange rows) const
{
    // A device pixel on an edge shows both neighbours, and is redrawn when either changed.
    const AxisRange x = DevicePixelsOf(m_columns.Geometry(), columns);
    const AxisRange y = DevicePixelsOf(m_rows.Geometry(), rows);
    return {x.begin, y.begin, x.end - x.begin, y.end - y.begin};
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
        const int sources = m_rows.SourceCount(deviceRow);
        if (sources == 1)
            std::ranges::copy(Row(picture, colours, columns, first), out.begin());
        else if (sources == 2)
            MixRow(Channels(Row(picture, colours, columns, first).data()),
                   Channels(Row(picture, colours, columns, first + 1).data()),
                   m_rows.PairWeight(deviceRow), out);
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

    MixPairs(columns, out);
    MixCrowds(columns, out);
}

void AreaScaler::MixPairs(AxisRange columns, std::span<std::uint32_t> out)
{
    // Gathered, mixed all at once, and put in their places.
    const AxisTable::Pairs pairs = m_columns.PairPixels(columns);
    const std::size_t count = pairs.pixels.size();
    m_firstOfPairs.resize(count);
    m_secondOfPairs.resize(count);
    for (std::size_t pair = 0; pair < count; ++pair) {
        const auto source = static_cast<std::size_t>(m_columns.FirstSource(pairs.pixels[pair]));
        m_firstOfPairs[pair] = m_sourceRow[source];
        m_secondOfPairs[pair] = m_sourceRow[source + 1];
    }
    std::uint8_t* first = Channels(m_firstOfPairs.data());
    const std::uint8_t* second = Channels(m_secondOfPairs.data());
    for (std::size_t channel = 0; channel < pairs.weights.size(); ++channel)
        first[channel] = Mix(first[channel], second[channel], pairs.weights[channel]);
    for (std::size_t pair = 0; pair < count; ++pair)
        out[static_cast<std::size_t>(pairs.pixels[pair] - columns.begin)] = m_firstOfPairs[pair];
}

void AreaScaler::MixCrowds(AxisRange columns, std::span<std::uint32_t> out) const
{
    for (const int pixel : m_columns.CrowdedPixels(columns)) {
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
