// SPDX-License-Identifier: GPL-3.0-or-later
#include "LetterTable.h"

#include "NodeStatistics.h"
#include "Shapes.h"

#include <array>
#include <cmath>

namespace lantern::letters {
namespace {

constexpr int kSide = 24; // of a scene, in pixels
constexpr int kParts = 6; // a pixel is sampled at so many places along each axis
// Beyond this distance from its middle no edge cuts a pixel.
constexpr double kReach = 0.71;
constexpr double kFromUnits = 0.5;

// What is seen of strokes: the letter, the letter with its outline, and the outline alone.
struct Mask {
    double outline = 0; // how far beyond the strokes' edge it goes
    bool isHollow = false;

    double Distance(double strokes) const
    {
        const double outer = strokes + outline;
        return isHollow ? std::min(outer, -strokes) : outer;
    }
};

using Pixels = std::array<std::array<bool, kSide>, kSide>;

Pixels DrawPixels(const Shapes& shapes, const Mask& mask)
{
    Pixels pixels{};
    for (int y = 0; y < kSide; ++y) {
        for (int x = 0; x < kSide; ++x) {
            const double middle = shapes.Distance({x + 0.5, y + 0.5});
            // Where no edge is near, the middle tells for the whole pixel.
            const bool isCut = std::abs(middle + mask.outline) < kReach ||
                               (mask.isHollow && std::abs(middle) < kReach);
            bool& pixel = pixels[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)];
            if (!isCut) {
                pixel = mask.Distance(middle) > 0;
                continue;
            }
            int covered = 0;
            for (int part = 0; part < kParts * kParts; ++part) {
                const Point point{x + (part % kParts + kFromUnits) / kParts,
                                  y + (part / kParts + kFromUnits) / kParts};
                covered += mask.Distance(shapes.Distance(point)) > 0 ? 1 : 0;
            }
            pixel = covered * 2 > kParts * kParts;
        }
    }
    return pixels;
}

unsigned Pattern(const Pixels& pixels, int left, int top, int columns, int rows)
{
    unsigned pattern = 0;
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            const bool pixel = pixels[static_cast<std::size_t>(top + row)]
                                     [static_cast<std::size_t>(left + column)];
            pattern |= static_cast<unsigned>(pixel) << (row * columns + column);
        }
    }
    return pattern;
}

class Learner {
public:
    void Look(const Shapes& shapes, const Mask& mask)
    {
        const Pixels pixels = DrawPixels(shapes, mask);
        const auto learn = [&](NodeStatistics& node, int left, int top, int columns, int rows) {
            const unsigned pattern = Pattern(pixels, left, top, columns, rows);
            // Far from an edge there is nothing to learn.
            if (pattern == 0 || pattern == (1U << (columns * rows)) - 1)
                return;
            const Point middle{left + columns * 0.5, top + rows * 0.5};
            node.Add(pattern, mask.Distance(shapes.Distance(middle)));
        };
        for (int top = 0; top + 4 <= kSide; ++top) {
            for (int left = 0; left + 4 <= kSide; ++left) {
                learn(m_corners, left, top, 3, 3);
                learn(m_sides, left, top, 4, 3);
                learn(m_middles, left, top, 4, 4);
            }
        }
    }

    std::vector<std::int8_t> Seed() const
    {
        std::vector<std::int8_t> seed = m_corners.Distances();
        for (const NodeStatistics* node : {&m_sides, &m_middles}) {
            const std::vector<std::int8_t> distances = node->Distances();
            seed.insert(seed.end(), distances.begin(), distances.end());
        }
        return seed;
    }

private:
    NodeStatistics m_corners{3, 3};
    NodeStatistics m_sides{4, 3};
    NodeStatistics m_middles{4, 4};
};

} // namespace

std::vector<std::int8_t> LearnDistances(int scenes)
{
    Chance chance(1);
    Learner learner;
    for (int scene = 0; scene < scenes; ++scene) {
        const Shapes shapes(chance, kSide);
        learner.Look(shapes, {});
        const double outline = chance.Between(0.7, 2.3);
        if (chance.OneIn(2)) {
            learner.Look(shapes, {outline, false});
            learner.Look(shapes, {outline, true});
        }
    }
    return learner.Seed();
}

std::string SourceOf(const std::vector<std::int8_t>& seed)
{
    constexpr std::size_t kMostColumns = 100;
    std::string source = "// SPDX-License-Identifier: GPL-3.0-or-later\n"
                         "// Made by letter-table; don't edit.\n"
                         "#include \"LetterSeed.h\"\n\n"
                         "namespace lantern {\n\n"
                         "// clang-format off\n"
                         "const std::array<std::int8_t, kLetterSeedSize> kLetterSeed = {\n";
    std::string line = "   ";
    for (const std::int8_t distance : seed) {
        const std::string next = ' ' + std::to_string(distance) + ',';
        if (line.size() + next.size() > kMostColumns) {
            source += line + '\n';
            line = "   ";
        }
        line += next;
    }
    return source + line + "\n};\n// clang-format on\n\n} // namespace lantern\n";
}

} // namespace lantern::letters
