// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace lantern {

inline constexpr int kKnobWidth = 4;

// How the values of a slider lie along its width, in pixels.
struct SlideScale {
    std::int32_t min = 0;
    std::int32_t max = 100;
    int width = 0;

    // From min to max in 32 bits, where a distance too large for them comes out negative.
    std::int32_t Range() const;
    // A value within the scale. Where min exceeds max, it is max.
    std::int32_t Clamp(std::int32_t value) const;
    // Where the knob begins for any value, also one outside the scale. Range() must be above 0.
    int KnobLeft(std::int32_t value) const;
    // The value whose knob has its centre under the pointer, kept within the slider.
    std::int32_t ValueAt(float x) const;
};

} // namespace lantern
