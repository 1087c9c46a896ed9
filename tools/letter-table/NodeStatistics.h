// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "PatternClasses.h"

#include <array>
#include <cstdint>
#include <vector>

namespace lantern::letters {

// Gathers how far the middle of a window lies inside of the edge, for each class of patterns, and
// tells the mean of each. What was hardly seen leans on a linear guess from the window's pixels.
class NodeStatistics {
public:
    NodeStatistics(int columns, int rows);

    void Add(unsigned pattern, double distance);
    // In 1/254 of a pixel, at most half a pixel. The sign of a pixel that the middle falls on is
    // that of the pixel.
    std::vector<std::int8_t> Distances() const;

private:
    static constexpr std::size_t kMostKinds = 6;
    // Pixels that the same symmetry holds for weigh the same: by kind, the set ones less the
    // clear ones.
    using Features = std::array<double, kMostKinds>;

    Features FeaturesOf(unsigned pattern) const;
    Features FitWeights() const;

    int m_columns;
    int m_rows;
    PatternClasses m_classes;
    std::vector<std::size_t> m_kinds; // of each pixel of the window
    std::vector<double> m_sums;
    std::vector<double> m_counts;
    std::vector<unsigned> m_firstPatterns;
    std::array<Features, kMostKinds> m_products{};
    Features m_answers{};
};

} // namespace lantern::letters
