// SPDX-License-Identifier: GPL-3.0-or-later
#include "CellAxis.h"

#include <algorithm>

namespace lantern {

namespace {

// Where the middle of a device pixel lies: its cell, and how far in it, in parts of kWhole.
struct Place {
    static constexpr int kBits = 20;
    static constexpr std::int64_t kWhole = std::int64_t{1} << kBits;

    Place(const AxisGeometry& geometry, int pixel)
    {
        const std::int64_t cellParts = 2 * (geometry.endEdge - geometry.beginEdge);
        // From the middle of the pixel before the first, so that nothing is negative.
        const std::int64_t parts =
            (2 * (pixel - geometry.beginEdge) + 1) * geometry.sourceCount + cellParts / 2;
        cell = static_cast<int>(parts / cellParts) - 1;
        part = parts % cellParts * kWhole / cellParts;
    }

    int cell;
    std::int64_t part;
};

// Of a curve through three points at 0, a half and 1: together one whole, exactly.
std::array<std::int16_t, CellAxis::kNodes> CurveWeights(std::int64_t part)
{
    constexpr std::int64_t whole = Place::kWhole;
    constexpr int shift = 2 * Place::kBits - CellAxis::kWeightBits;
    const auto begin = static_cast<std::int16_t>((whole - part) * (whole - 2 * part) >> shift);
    const auto end = static_cast<std::int16_t>(part * (2 * part - whole) >> shift);
    const auto middle = static_cast<std::int16_t>((1 << CellAxis::kWeightBits) - begin - end);
    return {begin, middle, end};
}

} // namespace

CellAxis::CellAxis(const AxisGeometry& geometry) : m_geometry(geometry)
{
    m_firstCell = Place(geometry, geometry.clipBegin).cell;
    int widest = 0;
    for (int pixel = geometry.clipBegin; pixel < geometry.clipEnd; ++pixel) {
        m_cells.push_back(Place(geometry, pixel).cell);
        while (m_begins.size() <= CellIndex(m_cells.back()))
            m_begins.push_back(pixel);
        widest = std::max(widest, pixel + 1 - m_begins.back());
    }
    m_begins.push_back(geometry.clipEnd);
    m_stride = (static_cast<std::size_t>(widest) + kGroup - 1) / kGroup * kGroup;
    for (std::vector<std::int16_t>& weights : m_weights)
        weights.resize((m_begins.size() - 1) * m_stride);
    for (int pixel = geometry.clipBegin; pixel < geometry.clipEnd; ++pixel) {
        const Place place(geometry, pixel);
        const auto offset = static_cast<std::size_t>(pixel - PixelsOf(place.cell).begin);
        const auto weights = CurveWeights(place.part);
        for (std::size_t node = 0; node < kNodes; ++node)
            m_weights[node][CellIndex(place.cell) * m_stride + offset] = weights[node];
    }
}

AxisRange CellAxis::PixelsNear(AxisRange source) const
{
    const int lastCell = m_firstCell + static_cast<int>(m_begins.size()) - 2;
    const int first = std::max(source.begin - 2, m_firstCell);
    const int last = std::min(source.end, lastCell);
    if (first > last)
        return {m_geometry.clipBegin, m_geometry.clipBegin};
    return {PixelsOf(first).begin, PixelsOf(last).end};
}

} // namespace lantern
