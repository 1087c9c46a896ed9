// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <optional>

namespace lantern {

// A line through two colours, 0xFFRRGGBB, along which others may lie.
class ColourLine {
public:
    ColourLine(std::uint32_t from, std::uint32_t to)
        : m_from(RgbOf(from)), m_along(Difference(m_from, RgbOf(to))),
          m_length(Product(m_along, m_along))
    {
    }
    int Length() const { return m_length; }
    // From 0 at the one colour to Length at the other, or beyond; none beside the line.
    std::optional<int> PlaceOf(std::uint32_t word) const
    {
        constexpr std::int64_t near = 20;
        const Rgb away = Difference(m_from, RgbOf(word));
        const std::int64_t along = Product(away, m_along);
        const std::int64_t beside = std::int64_t{Product(away, away)} * m_length - along * along;
        if (beside > near * near * m_length)
            return std::nullopt;
        return static_cast<int>(along);
    }

private:
    using Rgb = std::array<int, 3>;

    static Rgb RgbOf(std::uint32_t word)
    {
        return {static_cast<int>(word >> 16 & 0xFF), static_cast<int>(word >> 8 & 0xFF),
                static_cast<int>(word & 0xFF)};
    }
    static Rgb Difference(const Rgb& from, const Rgb& to)
    {
        return {to[0] - from[0], to[1] - from[1], to[2] - from[2]};
    }
    static int Product(const Rgb& first, const Rgb& second)
    {
        return first[0] * second[0] + first[1] * second[1] + first[2] * second[2];
    }

    Rgb m_from;
    Rgb m_along;
    int m_length;
};

} // namespace lantern
