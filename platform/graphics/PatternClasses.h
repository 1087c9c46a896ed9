// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace lantern {

// The patterns of black and white pixels in a small window, sorted into classes: those that are
// turned, mirrored or inverted forms of each other. What holds for one of a class, such as how far
// its middle lies from the edge, holds for all of it, with the sign changed where it is inverted.
class PatternClasses {
public:
    // A window that is square keeps all eight turns and mirrors, another one four.
    PatternClasses(int columns, int rows);

    std::size_t Count() const { return m_isOwnInverse.size(); }
    // A pattern's bit row * columns + column is set where the pixel is.
    std::size_t ClassOf(unsigned pattern) const { return m_classes[pattern] >> 1; }
    bool IsInverted(unsigned pattern) const { return (m_classes[pattern] & 1U) != 0; }
    // Such a pattern has its middle on the edge.
    bool IsOwnInverse(std::size_t patternClass) const { return m_isOwnInverse[patternClass]; }
    unsigned PatternCount() const { return static_cast<unsigned>(m_classes.size()); }

private:
    unsigned Turned(unsigned pattern, unsigned turn) const;

    int m_columns;
    int m_rows;
    std::vector<std::uint16_t> m_classes; // of each pattern, twice, plus one if it is inverted
    std::vector<bool> m_isOwnInverse;
};

} // namespace lantern
