// SPDX-License-Identifier: GPL-3.0-or-later
#include "SmoothScaler.h"

#include "LetterSeed.h"

#include <algorithm>
#include <cstddef>

namespace lantern {

namespace {

bool IsLarge(const AxisGeometry& axis)
{
    return 2 * (axis.endEdge - axis.beginEdge) >= 3 * std::int64_t{axis.sourceCount};
}

} // namespace

SmoothScaler::SmoothScaler() : m_table(kLetterSeed)
{
}

bool SmoothScaler::Suits(const AxisGeometry& horizontal, const AxisGeometry& vertical)
{
    return IsLarge(horizontal) && IsLarge(vertical);
}

void SmoothScaler::SetGeometry(const AxisGeometry& horizontal, const AxisGeometry& vertical)
{
    m_painter.SetGeometry(horizontal, vertical);
    m_looks.resize(static_cast<std::size_t>(horizontal.sourceCount + 2 * kRim) *
                   static_cast<std::size_t>(vertical.sourceCount + 2 * kRim));
}

DeviceRect SmoothScaler::Reach(AxisRange columns, AxisRange rows) const
{
    const AxisRange x = m_painter.Columns().PixelsNear(columns);
    const AxisRange y = m_painter.Rows().PixelsNear(rows);
    return {x.begin, y.begin, x.end - x.begin, y.end - y.begin};
}

void SmoothScaler::Draw(const IndexedPicture& picture, const ColourWords& colours,
                        const SurfaceImage& image, const DeviceRect& rect)
{
    m_colours.SetColours(colours);
    const CellAxis& rows = m_painter.Rows();
    const AxisRange columns{rect.left, rect.left + rect.width};
    const AxisRange cellRows{rows.CellOf(rect.top), rows.CellOf(rect.top + rect.height - 1) + 1};
    const AxisRange cellColumns{m_painter.Columns().CellOf(columns.begin),
                                m_painter.Columns().CellOf(columns.end - 1) + 1};
    ReadLooks(picture, cellColumns, cellRows);
    for (int cellRow = cellRows.begin; cellRow < cellRows.end; ++cellRow) {
        ReadCells(cellRow, columns);
        const AxisRange pixels = rows.PixelsOf(cellRow);
        const int end = std::min(pixels.end, rect.top + rect.height);
        for (int row = std::max(pixels.begin, rect.top); row < end; ++row) {
            m_painter.SetRow(row);
            DrawRow(columns, image.pixels + std::ptrdiff_t{row} * image.stride + rect.left);
        }
    }
}

const std::uint8_t* SmoothScaler::LooksAt(int column, int row) const
{
    const int stride = m_painter.Columns().Geometry().sourceCount + 2 * kRim;
    return &m_looks[static_cast<std::size_t>(row + kRim) * static_cast<std::size_t>(stride) +
                    static_cast<std::size_t>(column + kRim)];
}

// All that these cells look at.
void SmoothScaler::ReadLooks(const IndexedPicture& picture, AxisRange columns, AxisRange rows)
{
    const int lastRow = m_painter.Rows().Geometry().sourceCount - 1;
    const int lastColumn = picture.width - 1;
    for (int row = rows.begin - 1; row < rows.end + kRim; ++row) {
        const std::uint8_t* const indexes =
            picture.indexes.data() + std::ptrdiff_t{std::clamp(row, 0, lastRow)} * picture.width;
        auto* const looks = const_cast<std::uint8_t*>(LooksAt(0, row));
        for (int column = columns.begin - 1; column < columns.end + kRim; ++column)
            looks[column] = m_colours.LookOf(indexes[std::clamp(column, 0, lastColumn)]);
    }
}

void SmoothScaler::ReadCells(int row, AxisRange columns)
{
    const CellAxis& axis = m_painter.Columns();
    const std::uint8_t* const upper = LooksAt(0, row);
    const std::uint8_t* const lower = LooksAt(0, row + 1);
    m_runs.clear();
    m_cellCount = 0;
    const int last = axis.CellOf(columns.end - 1);
    for (int cell = axis.CellOf(columns.begin); cell <= last; ++cell) {
        const std::uint8_t look = upper[cell];
        const bool isFlat =
            look == upper[cell + 1] && look == lower[cell] && look == lower[cell + 1];
        const int end = std::min(axis.PixelsOf(cell).end, columns.end);
        if (!isFlat) {
            if (m_cellCount == m_cells.size())
                m_cells.emplace_back();
            SmoothCell& made = m_cells[m_cellCount++];
            made.column = cell;
            const CellWindow window({LooksAt(cell - 1, row - 1), LooksAt(cell - 1, row),
                                     LooksAt(cell - 1, row + 1), LooksAt(cell - 1, row + 2)});
            MakeCell(window, m_table, m_colours, made);
            m_runs.push_back({0, end, true});
        } else if (const std::uint32_t colour = m_colours.Word(look);
                   !m_runs.empty() && !m_runs.back().hasCell && m_runs.back().colour == colour) {
            m_runs.back().end = end;
        } else {
            m_runs.push_back({colour, end, false});
        }
    }
}

void SmoothScaler::DrawRow(AxisRange columns, std::uint32_t* out)
{
    const SmoothCell* cell = m_cells.data();
    int begin = columns.begin;
    for (const Run& run : m_runs) {
        std::uint32_t* const target = out + (begin - columns.begin);
        if (run.hasCell)
            m_painter.PaintRow(*cell++, {begin, run.end}, target);
        else
            std::fill_n(target, run.end - begin, run.colour);
        begin = run.end;
    }
}

} // namespace lantern
