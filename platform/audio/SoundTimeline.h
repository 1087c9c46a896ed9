// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <deque>
#include <optional>

namespace lantern {

// Which frame of the sound stands at which frame of the output, since the output last started:
// one stretch of constant speed after the other.
class SoundTimeline {
public:
    // Output frame 0 is this frame of the sound.
    void Restart(std::int64_t mediaFrame, double speed);
    // From this output frame on, whatever was to come there before, and wherever the sound ended.
    void Change(std::int64_t outputFrame, std::int64_t mediaFrame, double speed);
    // The sound ends before this output frame; silence follows.
    void SetEnd(std::int64_t outputFrame) { m_end = outputFrame; }
    std::optional<std::int64_t> End() const { return m_end; }

    double MediaAt(double outputFrame) const;
    // Forgets the stretches that end at or before this output frame.
    void Forget(double outputFrame);

private:
    struct Stretch {
        std::int64_t outputFrame = 0;
        std::int64_t mediaFrame = 0;
        double speed = 1.0;
    };
    std::deque<Stretch> m_stretches = {Stretch{}};
    std::optional<std::int64_t> m_end;
};

} // namespace lantern
