// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace lantern::letters {

// Draws scenes of random strokes, with and without outlines, as pixels that are set where half of
// them is covered, and learns from them how far the nodes of DistanceTable lie inside of an edge.
// The same on every machine.
std::vector<std::int8_t> LearnDistances(int scenes);
inline constexpr int kScenes = 8000;

// As the source file that the program is built with.
std::string SourceOf(const std::vector<std::int8_t>& seed);

} // namespace lantern::letters
