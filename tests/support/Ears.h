// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SoundServer.h"

#include <cstdint>
#include <map>
#include <memory>
#include <span>
#include <vector>

namespace lantern::test {

// What a sink played, and when each frame of it was heard.
class Recording {
public:
    static constexpr int kRate = 44100;

    std::vector<float> stereo; // interleaved
    // Moments at which the server told which frame, counted in frames and parts of one, was being
    // heard. Each is exact to a fraction of a millisecond; the sink's clock is not quite ours.
    std::vector<std::pair<Moment, double>> marks;

    std::int64_t FrameCount() const { return static_cast<std::int64_t>(stereo.size() / 2); }
    // By the marks around it. The recording has to have marks.
    Moment HeardAt(double frame) const;
    std::int64_t FrameAt(Moment moment) const;
    // How far three of four marks lie at most from what their neighbours say: a check of the ears.
    // A machine that stalls spoils the marks of that moment, and they move no answer.
    Clock::duration Unsteadiness() const;

    // The frames heard between two moments, as a recording of their own without marks.
    std::vector<float> Between(Moment from, Moment to) const;
};

// Records the monitor of a sink from construction on. Never misses a frame, unless the sink goes.
class Ears {
public:
    Ears(const SoundServer& server, const std::string& sink);
    ~Ears();

    Recording Heard() const; // all of it so far
    // The last frames recorded, fewer if there were not so many yet.
    std::vector<float> HeardLately(Clock::duration howLong) const;

private:
    struct Listener;
    std::unique_ptr<Listener> m_listener;
};

} // namespace lantern::test
