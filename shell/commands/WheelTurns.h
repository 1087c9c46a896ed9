// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace lantern {

// Gathers the fine steps of a touchpad or a smooth wheel until they make a notch.
class WheelTurns {
public:
    // The notch that the turn completes: 1 away from the user, -1 towards, 0 for none yet. A turn
    // of several notches at once is one.
    int Add(int angleDelta);

private:
    int m_gathered = 0;
};

} // namespace lantern
