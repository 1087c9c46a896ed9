// SPDX-License-Identifier: GPL-3.0-or-later
#include "NodeStatistics.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace lantern::letters {
namespace {

// The guess weighs as much as so many windows that were seen.
constexpr double kGuesses = 1;
constexpr double kUnitsPerPixel = 254;
constexpr double kMostUnits = 127;
constexpr double kMostPixels = 0.7; // a bit more than is told
constexpr double kLeastInside = 24; // of a pixel's own middle, so that no dot is lost

} // namespace

NodeStatistics::NodeStatistics(int columns, int rows)
    : m_columns(columns), m_rows(rows), m_classes(columns, rows), m_sums(m_classes.Count()),
      m_counts(m_classes.Count()), m_firstPatterns(m_classes.Count())
{
    // Pixels as far away, whichever way, are of one kind; in a square also with the axes swapped.
    std::vector<std::pair<int, int>> seen;
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            std::pair away{std::abs(2 * column - columns + 1), std::abs(2 * row - rows + 1)};
            if (columns == rows && away.first > away.second)
                std::swap(away.first, away.second);
            const auto found = std::ranges::find(seen, away);
            m_kinds.push_back(static_cast<std::size_t>(found - seen.begin()));
            if (found == seen.end())
                seen.push_back(away);
        }
    }
    for (unsigned pattern = m_classes.PatternCount(); pattern-- > 0;) {
        if (!m_classes.IsInverted(pattern))
            m_firstPatterns[m_classes.ClassOf(pattern)] = pattern;
    }
}

NodeStatistics::Features NodeStatistics::FeaturesOf(unsigned pattern) const
{
    Features features{};
    for (std::size_t pixel = 0; pixel < m_kinds.size(); ++pixel)
        features[m_kinds[pixel]] += (pattern >> pixel & 1U) != 0 ? 1 : -1;
    return features;
}

void NodeStatistics::Add(unsigned pattern, double distance)
{
    const double clamped = std::clamp(distance, -kMostPixels, kMostPixels);
    const std::size_t patternClass = m_classes.ClassOf(pattern);
    m_sums[patternClass] += m_classes.IsInverted(pattern) ? -clamped : clamped;
    ++m_counts[patternClass];
    const Features features = FeaturesOf(pattern);
    for (std::size_t row = 0; row < kMostKinds; ++row) {
        for (std::size_t column = 0; column < kMostKinds; ++column)
            m_products[row][column] += features[row] * features[column];
        m_answers[row] += features[row] * clamped;
    }
}

// Least squares by elimination. A little on the diagonal keeps it solvable where kinds are missing.
NodeStatistics::Features NodeStatistics::FitWeights() const
{
    auto products = m_products;
    Features answers = m_answers;
    for (std::size_t kind = 0; kind < kMostKinds; ++kind)
        products[kind][kind] += 1;
    for (std::size_t pivot = 0; pivot < kMostKinds; ++pivot) {
        for (std::size_t row = 0; row < kMostKinds; ++row) {
            if (row == pivot)
                continue;
            const double factor = products[row][pivot] / products[pivot][pivot];
            for (std::size_t column = 0; column < kMostKinds; ++column)
                products[row][column] -= factor * products[pivot][column];
            answers[row] -= factor * answers[pivot];
        }
    }
    for (std::size_t kind = 0; kind < kMostKinds; ++kind)
        answers[kind] /= products[kind][kind];
    return answers;
}

std::vector<std::int8_t> NodeStatistics::Distances() const
{
    const Features weights = FitWeights();
    const bool isOnPixel = m_columns % 2 == 1 && m_rows % 2 == 1;
    const auto middlePixel = static_cast<unsigned>(m_columns * m_rows / 2);
    std::vector<std::int8_t> distances;
    for (std::size_t patternClass = 0; patternClass < m_classes.Count(); ++patternClass) {
        const unsigned pattern = m_firstPatterns[patternClass];
        const Features features = FeaturesOf(pattern);
        double guess = 0;
        for (std::size_t kind = 0; kind < kMostKinds; ++kind)
            guess += features[kind] * weights[kind];
        const double mean = (m_sums[patternClass] + kGuesses * std::clamp(guess, -1.0, 1.0)) /
                            (m_counts[patternClass] + kGuesses);
        double units = std::clamp(mean * kUnitsPerPixel, -kMostUnits, kMostUnits);
        if (m_classes.IsOwnInverse(patternClass))
            units = 0;
        else if (isOnPixel && (pattern >> middlePixel & 1U) != 0)
            units = std::max(units, kLeastInside);
        else if (isOnPixel)
            units = std::min(units, -kLeastInside);
        distances.push_back(static_cast<std::int8_t>(std::lround(units)));
    }
    return distances;
}

} // namespace lantern::letters
