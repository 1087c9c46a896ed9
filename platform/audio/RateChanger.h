// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AvPointers.h"

#include <span>
#include <vector>

namespace lantern {

// Gives stereo sound another rate, piece by piece. What comes out is neither behind nor ahead: its
// first frame is heard with the first that goes in. But it comes when the frames that follow it are
// known, so that some are always still to come.
class RateChanger {
public:
    struct Sides {
        std::span<float> left;
        std::span<float> right;
    };

    RateChanger(int fromRate, int toRate);

    void Reset(); // nothing has gone in so far
    // Valid until the next call.
    Sides Convert(std::span<const float> left, std::span<const float> right);

private:
    AvPointer<SwrContext> m_converter;
    std::vector<float> m_left;
    std::vector<float> m_right;
};

} // namespace lantern
