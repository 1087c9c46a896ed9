// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <span>
#include <vector>

namespace lantern {

// How loud sounds are as a whole, by EBU R128.
struct SoundLoudness {
    double lufs = -std::numeric_limits<double>::infinity(); // that, too, for silence
    double truePeak = 0;                                    // 1 is full scale
    bool isWhole = false; // of every sample; otherwise estimated by some of them

    bool operator==(const SoundLoudness&) const = default;
};

// Measures sounds beside the playing, on a thread of its own that yields to all others. It belongs
// to the engine and lives as long. Everything is called on the user-interface thread, and nothing
// waits for what is being measured.
class LoudnessMeter {
public:
    // A file, or an image in memory, which is held for as long as it is needed.
    struct Sound {
        QString path;
        std::span<const std::uint8_t> image;
        std::shared_ptr<const void> imageOwner; // shared with whoever plays it
    };
    // Called from the event loop: where measuring takes its time and a place in the middle of the
    // sound can be found, within a second with an estimate, and then with what is known at the end.
    // That may be an estimate, too, of sounds of many hours and of those that can't be read to
    // their ends.
    using Measured = std::function<void(const SoundLoudness&)>;

    virtual ~LoudnessMeter() = default;

    // The sounds as one, in place of those before.
    virtual void Measure(std::vector<Sound> sounds, Measured measured) = 0;
    virtual void Cancel() = 0; // nothing is told any more
};

} // namespace lantern
