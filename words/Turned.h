// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace lantern {

// Moves rows of values to the right and down, by less than there are; what leaves on one side comes
// in on the other.
template <typename Values>
void Turn(Values& values, std::ptrdiff_t width, std::ptrdiff_t right, std::ptrdiff_t down)
{
    const std::ptrdiff_t count = std::ssize(values);
    if (down != 0)
        std::rotate(values.begin(), values.begin() + (count - down * width) % count, values.end());
    for (std::ptrdiff_t row = 0; right != 0 && row < count; row += width) {
        const auto begin = values.begin() + row;
        std::rotate(begin, begin + (width - right) % width, begin + width);
    }
}

} // namespace lantern
