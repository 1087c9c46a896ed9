// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <random>
#include <variant>
#include <vector>

namespace lantern::letters {

struct Point {
    double x = 0;
    double y = 0;
};

// The same numbers on every machine, which the standard's own distributions don't promise.
class Chance {
public:
    explicit Chance(std::uint32_t seed) : m_random(seed) {}

    double Between(double low, double high) { return low + (high - low) * Part(); }
    bool OneIn(std::uint32_t n) { return Below(n) == 0; }
    std::uint32_t Below(std::uint32_t n) { return static_cast<std::uint32_t>(m_random()) % n; }
    Point Direction(); // of length 1, any as likely as another

private:
    double Part() { return static_cast<double>(m_random()) / 4294967296.0; }

    std::mt19937 m_random;
};

struct Bar {
    Point middle;
    Point along; // of length 1
    double halfLength = 0;
    double halfWidth = 0;
};

// A ring, cut off along a line through its middle if it isn't whole.
struct Arc {
    Point middle;
    double radius = 0;
    double halfWidth = 0;
    bool isWhole = false;
    Point side; // of length 1; the half that lies there is kept
};

struct Disc {
    Point middle;
    double radius = 0;
};

// Strokes as letters have them, one colour on another.
class Shapes {
public:
    // Some strokes around a square from 0, 0.
    Shapes(Chance& chance, double side);

    // How far a point lies inside of the edge; negative outside.
    double Distance(Point point) const;

private:
    std::vector<std::variant<Bar, Arc, Disc>> m_strokes;
};

} // namespace lantern::letters
