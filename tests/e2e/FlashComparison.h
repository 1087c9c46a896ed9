// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Ears.h"
#include "Eyes.h"
#include "FlashTrack.h"
#include "StallWatch.h"

#include <string>
#include <vector>

namespace lantern::test {

// A stretch of a play-through in which flashes are measured.
struct Stretch {
    Moment from;
    Moment to;
    int halfTones = 0; // of the key
};

// One tone and its flash.
struct FlashError {
    Moment heard;
    double pictureLateMs = 0.0; // below 0 if the picture came first
    bool isDoubtful = false;    // the machine stalled around it
};

// A tone or a flash that has no partner of its kind.
struct Contradiction {
    std::string what;
    bool isDoubtful = false; // the machine stalled around it
};

struct Comparison {
    std::vector<FlashError> errors; // of every tone in the stretches, in order
    std::vector<Contradiction> contradictions;
    Clock::duration stalled = {}; // of the stretches, the time in which a stall may hide a flash

    std::vector<double> Sorted() const; // the errors without the doubtful ones
    double Median() const;
    // Of the last quarter of the play-through less the first: what the two drifted apart.
    double Drift() const;
    std::size_t DoubtfulCount() const;
    std::string Distribution() const; // for people to read
};

// The points that the eyes watched, in this order.
enum WatchedPoint : std::size_t { PictureWatched, BorderWatched };

Comparison Compare(const Recording& heard, const std::vector<Eyes::Change>& seen,
                   const std::vector<Stretch>& stretches, const StallWatch& stalls);

} // namespace lantern::test
