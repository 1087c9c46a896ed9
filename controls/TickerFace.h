// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <array>
#include <cstdint>

namespace lantern {

// What lies over the digits, if anything.
enum class TickerCover : std::uint8_t { None, Idle, Loading };
TickerCover CoverFor(std::int32_t seconds, bool state);

// Units of seconds first, tens of minutes last.
using TickerDigits = std::array<std::int16_t, 4>;

struct TickerTime {
    TickerDigits digits{};
    std::int32_t seconds = 0; // without the minutes
};
// The minutes begin again after 99. Below 0 the digits come out negative.
TickerTime TimeOf(std::int32_t seconds);

// Where the pictures stand in the strip, in pixels from its left.
inline constexpr int kTickerWidth = 69;
inline constexpr int kTickerHeight = 24;
inline constexpr int kMarginWidth = 5;
inline constexpr int kDigitWidth = 13;
inline constexpr int kColonWidth = 7;
inline constexpr int kColonLeft = kMarginWidth + 2 * kDigitWidth;
inline constexpr std::array<int, 4> kDigitLefts = {
    kColonLeft + kColonWidth + kDigitWidth, // the order of TickerDigits
    kColonLeft + kColonWidth,
    kMarginWidth + kDigitWidth,
    kMarginWidth,
};
static_assert(kDigitLefts[0] + kDigitWidth + kMarginWidth == kTickerWidth);

// What the strip says, in letters.
QString TickerText(TickerCover cover, const TickerDigits& digits);

} // namespace lantern
