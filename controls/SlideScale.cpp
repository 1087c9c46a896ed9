// SPDX-License-Identifier: GPL-3.0-or-later
#include "SlideScale.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace lantern {
namespace {

constexpr float kKnobHalf = 2;
static_assert(2 * kKnobHalf == kKnobWidth);

// Ties go to the even neighbour.
std::int32_t RoundWithin(double value, std::int32_t least, std::int32_t most)
{
    const double bounded = std::clamp(value, static_cast<double>(least), static_cast<double>(most));
    return static_cast<std::int32_t>(std::nearbyint(bounded));
}

} // namespace

std::int32_t SlideScale::Range() const
{
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(max) -
                                     static_cast<std::uint32_t>(min));
}

std::int32_t SlideScale::Clamp(std::int32_t value) const
{
    return std::min(std::max(value, min), max);
}

int SlideScale::KnobLeft(std::int32_t value) const
{
    constexpr int kBeyondAnyScreen = 1 << 20; // where sums of pixels can't overflow yet
    const double distance = static_cast<double>(value) - min;
    const double left = distance * (static_cast<double>(width) - kKnobWidth) / Range();
    return RoundWithin(left, -kBeyondAnyScreen, kBeyondAnyScreen);
}

std::int32_t SlideScale::ValueAt(float x) const
{
    const int way = width - kKnobWidth;
    const float left = x - kKnobHalf;
    double part = 0; // of a slider that is all knob, its only place is the start
    if (way != 0 && left >= 0)
        part = static_cast<double>(std::min(left, static_cast<float>(way))) / way;
    return RoundWithin(part * Range() + min, std::numeric_limits<std::int32_t>::min(),
                       std::numeric_limits<std::int32_t>::max());
}

} // namespace lantern
