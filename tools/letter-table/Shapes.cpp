// SPDX-License-Identifier: GPL-3.0-or-later
#include "Shapes.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace lantern::letters {
namespace {

double Length(double x, double y)
{
    return std::sqrt(x * x + y * y);
}

double DistanceIn(const Bar& bar, Point point)
{
    const double x = point.x - bar.middle.x;
    const double y = point.y - bar.middle.y;
    const double along = std::abs(x * bar.along.x + y * bar.along.y) - bar.halfLength;
    const double across = std::abs(y * bar.along.x - x * bar.along.y) - bar.halfWidth;
    if (along > 0 && across > 0)
        return -Length(along, across);
    return -std::max(along, across);
}

double DistanceIn(const Arc& arc, Point point)
{
    const double x = point.x - arc.middle.x;
    const double y = point.y - arc.middle.y;
    const double ring = arc.halfWidth - std::abs(Length(x, y) - arc.radius);
    return arc.isWhole ? ring : std::min(ring, x * arc.side.x + y * arc.side.y);
}

double DistanceIn(const Disc& disc, Point point)
{
    return disc.radius - Length(point.x - disc.middle.x, point.y - disc.middle.y);
}

// Most strokes of letters are upright or level, and the slanted ones mostly steep.
Point StrokeDirection(Chance& chance)
{
    switch (chance.Below(5)) {
    case 0:
        return {1, 0};
    case 1:
        return {0, 1};
    case 2: {
        const double slant = chance.Between(-0.5, 0.5);
        const double length = Length(slant, 1);
        return {slant / length, 1 / length};
    }
    default:
        return chance.Direction();
    }
}

} // namespace

Point Chance::Direction()
{
    for (;;) {
        const double x = Between(-1, 1);
        const double y = Between(-1, 1);
        const double length = Length(x, y);
        if (length > 0.1 && length <= 1)
            return {x / length, y / length};
    }
}

Shapes::Shapes(Chance& chance, double side)
{
    const std::uint32_t strokes = 2 + chance.Below(4);
    const double halfWidth = chance.Between(0.45, 2.8);
    for (std::uint32_t stroke = 0; stroke < strokes; ++stroke) {
        const Point middle{chance.Between(0, side), chance.Between(0, side)};
        // The strokes of a letter are alike, more or less.
        const double ownHalfWidth = halfWidth * chance.Between(0.6, 1.2);
        switch (chance.Below(8)) {
        case 0:
            m_strokes.emplace_back(Disc{middle, chance.Between(0.6, 3.5)});
            break;
        case 1:
        case 2:
        case 3:
            m_strokes.emplace_back(Arc{middle, ownHalfWidth + chance.Between(0.8, 16), ownHalfWidth,
                                       chance.OneIn(2), chance.Direction()});
            break;
        default:
            m_strokes.emplace_back(
                Bar{middle, StrokeDirection(chance), chance.Between(1, 9), ownHalfWidth});
        }
    }
}

double Shapes::Distance(Point point) const
{
    double farthest = -std::numeric_limits<double>::max();
    for (const auto& stroke : m_strokes) {
        farthest = std::max(
            farthest, std::visit([&](const auto& one) { return DistanceIn(one, point); }, stroke));
    }
    return farthest;
}

} // namespace lantern::letters
