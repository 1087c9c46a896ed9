// SPDX-License-Identifier: GPL-3.0-or-later
#include "CellPainter.h"

#include <algorithm>

namespace lantern {

namespace {

// A field's nodes along a row are kept with six places behind the point. Weighted, in the upper
// half of a product of 16 bits, four are left: 8128 of them are a pixel of the picture.
constexpr int kNodePlaces = 6;
constexpr int kPlaces = kNodePlaces + CellAxis::kWeightBits - 16;
constexpr int kDistancesPerPixel = 508 << kPlaces;
constexpr int kHalfShare = ColourRamps::kSteps / 2;

std::int16_t UpperHalf(std::int16_t first, std::int16_t second)
{
    return static_cast<std::int16_t>((first * second) >> 16);
}

// Of the fields along a row; the loops are written to be turned into vector code.
std::int16_t Along(const std::array<std::int16_t, CellAxis::kNodes>& nodes, std::int16_t begin,
                   std::int16_t middle, std::int16_t end)
{
    return static_cast<std::int16_t>(UpperHalf(nodes[0], begin) + UpperHalf(nodes[1], middle) +
                                     UpperHalf(nodes[2], end));
}

std::int16_t Larger(std::int16_t first, std::int16_t second)
{
    return first > second ? first : second;
}

std::int16_t Smaller(std::int16_t first, std::int16_t second)
{
    return first < second ? first : second;
}

std::int16_t ShareOf(std::int16_t distance, std::int16_t half, std::int16_t steepness)
{
    const auto share = static_cast<std::int16_t>(
        UpperHalf(static_cast<std::int16_t>(distance + half), steepness) + kHalfShare);
    return Larger(Smaller(share, ColourRamps::kSteps), 0);
}

} // namespace

void CellPainter::SetGeometry(const AxisGeometry& horizontal, const AxisGeometry& vertical)
{
    if (horizontal != m_columns.Geometry())
        m_columns = CellAxis(horizontal);
    if (vertical != m_rows.Geometry())
        m_rows = CellAxis(vertical);
    m_shares.resize(m_columns.Stride());
    m_ramps.resize(m_columns.Stride());
    for (std::vector<std::int16_t>& shares : m_shadeShares)
        shares.resize(m_columns.Stride());

    // A whole share is gained over one device pixel, by the mean of both axes; at scales that no
    // screen has, over a little more.
    constexpr std::int64_t most = 32767;
    const std::int64_t pixels =
        horizontal.endEdge - horizontal.beginEdge + (vertical.endEdge - vertical.beginEdge);
    const std::int64_t sources = horizontal.sourceCount + vertical.sourceCount;
    const std::int64_t steepness =
        pixels * (ColourRamps::kSteps << 16) / (sources * kDistancesPerPixel);
    m_steepness = static_cast<std::int16_t>(std::min(steepness, most));
    m_half = static_cast<std::int16_t>((1 << 15) / m_steepness);
    // As a distance that leaves no doubt, and as nodes tell it.
    m_far = (((kHalfShare + 1) << 16) / m_steepness + 8) << (kNodePlaces - kPlaces);
}

void CellPainter::SetRow(int deviceRow)
{
    const int cell = m_rows.CellOf(deviceRow);
    const int offset = deviceRow - m_rows.PixelsOf(cell).begin;
    for (std::size_t node = 0; node < CellAxis::kNodes; ++node)
        m_rowWeights[node] = m_rows.Weights(cell, node)[offset];
}

CellPainter::RowNodes CellPainter::NodesOf(const SmoothCell::Field& field) const
{
    RowNodes nodes;
    for (std::size_t column = 0; column < nodes.size(); ++column) {
        const int sum = field[column] * m_rowWeights[0] +
                        field[CellAxis::kNodes + column] * m_rowWeights[1] +
                        field[2 * CellAxis::kNodes + column] * m_rowWeights[2];
        nodes[column] = static_cast<std::int16_t>(sum >> (CellAxis::kWeightBits - kNodePlaces));
    }
    return nodes;
}

// Where a field stays this far from 0 along a row, one colour has all of it. A curve through three
// points goes beyond them by an eighth of what they are apart, at most.
int CellPainter::WholeSide(const RowNodes& nodes) const
{
    const auto [least, most] = std::minmax({int{nodes[0]}, int{nodes[1]}, int{nodes[2]}});
    const int beyond = (most - least) / 8 + 1;
    if (least - beyond >= m_far)
        return 1;
    return most + beyond <= -m_far ? -1 : 0;
}

void CellPainter::ShareOut(const RowNodes& nodes, std::vector<std::int16_t>& shares) const
{
    const std::int16_t* __restrict begins = m_weights[0];
    const std::int16_t* __restrict middles = m_weights[1];
    const std::int16_t* __restrict ends = m_weights[2];
    std::int16_t* __restrict out = shares.data();
    const std::int16_t half = m_half;
    const std::int16_t steepness = m_steepness;
    const std::size_t width = m_columns.Stride() / CellAxis::kGroup * CellAxis::kGroup;
    for (std::size_t at = 0; at < width; ++at)
        out[at] = ShareOf(Along(nodes, begins[at], middles[at], ends[at]), half, steepness);
}

// Which two of the colours a pixel lies deepest in, and how much of the deepest it has. Each
// field's value carries its own number in the lowest bits, so that it isn't lost in comparing.
template <std::size_t kLooks>
void CellPainter::FindNearest(const SmoothCell& cell)
{
    static_assert(SmoothCell::kMostLooks == 4);
    std::array<RowNodes, kLooks> nodes;
    for (std::size_t look = 0; look < kLooks; ++look)
        nodes[look] = NodesOf(cell.fields[look]);
    const std::int16_t* __restrict begins = m_weights[0];
    const std::int16_t* __restrict middles = m_weights[1];
    const std::int16_t* __restrict ends = m_weights[2];
    std::int16_t* __restrict shares = m_shares.data();
    std::int16_t* __restrict ramps = m_ramps.data();
    const std::int16_t half = m_half;
    const std::int16_t steepness = m_steepness;
    const std::size_t width = m_columns.Stride() / CellAxis::kGroup * CellAxis::kGroup;
    for (std::size_t at = 0; at < width; ++at) {
        std::int16_t first = -32768;
        std::int16_t second = -32768;
        for (std::size_t look = 0; look < kLooks; ++look) {
            const auto value = static_cast<std::int16_t>(
                Along(nodes[look], begins[at], middles[at], ends[at]) * 4 +
                static_cast<std::int16_t>(look));
            second = Larger(second, Smaller(first, value));
            first = Larger(first, value);
        }
        const auto apart = static_cast<std::int16_t>((first >> 2) - (second >> 2));
        shares[at] = ShareOf(apart, half, steepness);
        ramps[at] = static_cast<std::int16_t>((first & 3) * 4 + (second & 3));
    }
}

void CellPainter::MixShades(const SmoothCell& cell, std::size_t begin, std::size_t end,
                            std::uint32_t* out)
{
    constexpr std::uint32_t every = 0x00FF00FF; // other channel
    constexpr std::uint32_t halves = 0x00010001 * (ColourRamps::kSteps / 2);
    const std::size_t steps = cell.looks - 1U;
    for (std::size_t step = 0; step < steps; ++step)
        ShareOut(NodesOf(cell.fields[step]), m_shadeShares[step]);
    for (std::size_t at = begin; at < end; ++at) {
        std::uint32_t redBlue = halves;
        std::uint32_t alphaGreen = halves;
        // Where a shade begins, the ones before it have begun.
        std::int16_t before = ColourRamps::kSteps;
        for (std::size_t shade = 0; shade <= steps; ++shade) {
            const std::int16_t beyond =
                shade < steps ? Smaller(m_shadeShares[shade][at], before) : std::int16_t{0};
            const auto weight = static_cast<std::uint32_t>(before - beyond);
            redBlue += (cell.shades[shade] & every) * weight;
            alphaGreen += (cell.shades[shade] >> 8 & every) * weight;
            before = beyond;
        }
        *out++ = (redBlue >> ColourRamps::kStepBits & every) |
                 (alphaGreen >> ColourRamps::kStepBits & every) << 8;
    }
}

void CellPainter::PaintRow(const SmoothCell& cell, AxisRange range, std::uint32_t* out)
{
    for (std::size_t node = 0; node < CellAxis::kNodes; ++node)
        m_weights[node] = m_columns.Weights(cell.column, node);
    const AxisRange pixels = m_columns.PixelsOf(cell.column);
    const auto begin = static_cast<std::size_t>(std::max(range.begin, pixels.begin) - pixels.begin);
    const auto end = static_cast<std::size_t>(std::min(range.end, pixels.end) - pixels.begin);
    switch (cell.kind) {
    case SmoothCell::Kind::Pair: {
        const std::uint32_t* const ramp = cell.ramps[0];
        const RowNodes nodes = NodesOf(cell.fields[0]);
        if (const int side = WholeSide(nodes); side != 0) {
            std::fill_n(out, end - begin, ramp[side > 0 ? ColourRamps::kSteps : 0]);
            return;
        }
        ShareOut(nodes, m_shares);
        for (std::size_t at = begin; at < end; ++at)
            *out++ = ramp[m_shares[at]];
        return;
    }
    case SmoothCell::Kind::Shades:
        return MixShades(cell, begin, end, out);
    case SmoothCell::Kind::Crowd:
        if (cell.looks == 3)
            FindNearest<3>(cell);
        else
            FindNearest<4>(cell);
        for (std::size_t at = begin; at < end; ++at)
            *out++ = cell.ramps[static_cast<std::size_t>(m_ramps[at])][m_shares[at]];
    }
}

} // namespace lantern
