// SPDX-License-Identifier: GPL-3.0-or-later
#include "PatternClasses.h"

#include <limits>
#include <utility>

namespace lantern {

namespace {

constexpr std::uint16_t kUnknown = std::numeric_limits<std::uint16_t>::max();

enum Turn : unsigned { MirrorColumns = 1, MirrorRows = 2, SwapAxes = 4 };

} // namespace

PatternClasses::PatternClasses(int columns, int rows) : m_columns(columns), m_rows(rows)
{
    const unsigned all = (1U << (columns * rows)) - 1;
    const unsigned turns = columns == rows ? 8 : 4;
    m_classes.assign(std::size_t{all} + 1, kUnknown);
    for (unsigned pattern = 0; pattern <= all; ++pattern) {
        if (m_classes[pattern] != kUnknown)
            continue;
        const auto upright = static_cast<std::uint16_t>(2 * Count());
        bool isOwnInverse = false;
        for (unsigned turn = 0; turn < turns; ++turn) {
            const unsigned turned = Turned(pattern, turn);
            m_classes[turned] = upright;
            isOwnInverse = isOwnInverse || turned == (pattern ^ all);
        }
        for (unsigned turn = 0; turn < turns && !isOwnInverse; ++turn)
            m_classes[Turned(pattern, turn) ^ all] = upright + 1;
        m_isOwnInverse.push_back(isOwnInverse);
    }
}

unsigned PatternClasses::Turned(unsigned pattern, unsigned turn) const
{
    unsigned turned = 0;
    for (int row = 0; row < m_rows; ++row) {
        for (int column = 0; column < m_columns; ++column) {
            int x = (turn & MirrorColumns) != 0 ? m_columns - 1 - column : column;
            int y = (turn & MirrorRows) != 0 ? m_rows - 1 - row : row;
            if ((turn & SwapAxes) != 0)
                std::swap(x, y);
            turned |= (pattern >> (y * m_columns + x) & 1U) << (row * m_columns + column);
        }
    }
    return turned;
}

} // namespace lantern
