// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "RateChanger.h"
#include "SoundDecoder.h"
#include "SoundShaper.h"
#include "Track.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace lantern::tool {

// One clip of a track as it sounds in a key and at a speed, at any rate, as fast as it can be had.
// Used by one thread.
class ClipSound {
public:
    // Null if it is no sound. The clip outlives the object.
    static std::unique_ptr<ClipSound> Open(const AudioClip& clip);

    int OwnRate() const { return m_sound->SampleRate(); }
    void Start(std::int64_t fromMs, SoundShape shape, int rate);
    // The frames that follow: fewer than asked where the sound ends.
    std::size_t Read(std::span<float> stereo);
    // The system's code for what ended it too early; 0 for nothing.
    int CutBy() const { return m_sound->CutBy(); }

private:
    explicit ClipSound(std::unique_ptr<SoundDecoder> sound) : m_sound(std::move(sound)) {}
    std::size_t ReadShaped(std::span<float> stereo);
    bool ChangeMore();

    std::unique_ptr<SoundDecoder> m_sound;
    SoundShaper m_shaper;
    bool m_isShapedToEnd = false;
    std::optional<RateChanger> m_changer; // where the rate is another one
    double m_framesForOne = 1;
    std::int64_t m_shapedFrames = 0;
    std::int64_t m_changedFrames = 0;
    std::optional<std::int64_t> m_end; // of the changed frames
    std::vector<float> m_block;
    std::vector<float> m_left;
    std::vector<float> m_right;
    RateChanger::Sides m_changed; // what has not been read yet
};

} // namespace lantern::tool
