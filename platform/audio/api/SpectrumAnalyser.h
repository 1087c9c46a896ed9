// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <span>

namespace lantern {

// The spectrum of the sound that is being heard: not of what has been handed to the device ahead
// of time, and with volume, balance, key and speed as they are heard.
//
// It belongs to the engine and lives as long. Everything is called on the user-interface thread.
class SpectrumAnalyser {
public:
    // The bands lie between these, in equal steps of pitch.
    static constexpr double kLowestHz = 40.0;
    static constexpr double kHighestHz = 16000.0;
    // The level in decibels of a full-scale tone that is strength 0; a full-scale one is 1, and
    // the strengths between are linear in decibels.
    static constexpr double kFloorDb = -66.0;

    virtual ~SpectrumAnalyser() = default;

    // Keeps the latest sound at hand from now on, or no longer. It starts off, and off costs
    // nothing; nothing can be measured then.
    virtual void Listen(bool on) = 0;
    // Whether there may be anything to measure: a sound plays.
    virtual bool IsSounding() = 0;
    // Fills in how strong each of so many bands is, from the lowest to the highest, 0 to 1. All
    // are 0 in silence, in pause, and while nothing plays.
    virtual void Measure(std::span<float> strengths) = 0;

    // Called when a sound begins to play or goes on, from inside the engine's operation: take
    // note, and do the work later.
    std::function<void()> Started;
};

} // namespace lantern
