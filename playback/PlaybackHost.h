// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace lantern {

// What the clock asks of the window around it. Calls come on the user-interface thread, from
// inside the clock's operations. A host must not move the position from inside them, except in
// ReopenLastTrack.
class PlaybackHost {
public:
    virtual ~PlaybackHost() = default;

    // The slider of the track position, in milliseconds. Setting it raises no event of its own.
    virtual std::int32_t SliderValue() = 0;
    virtual std::int32_t SliderMax() = 0;
    virtual void SetSliderValue(std::int32_t positionMs) = 0;
    virtual void CancelScroll() = 0; // ends a drag of the slider

    // The time display; -1 and false while there is no time to show.
    virtual void SetTicker(std::int32_t seconds, bool isPlaying) = 0;

    // Every control that isn't the position's: called at the end of each tick, whatever the state.
    virtual void RefreshControls(std::int32_t positionMs, bool isPlaying) = 0;

    // Opens the track of the remembered path, as the user's own opening of it would.
    virtual void ReopenLastTrack() = 0;

    // Lets the next turn of the wheel move the position (WheelType 3), without a message.
    virtual void WheelMovesPosition() = 0;
};

} // namespace lantern
