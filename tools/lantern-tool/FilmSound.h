// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ClipSound.h"
#include "Track.h"

#include <QString>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace lantern::tool {

// The sound of a part of a track, in a key and at a speed: its clips one after the other, each
// begun at its place in the track, whatever came before, and silence where there is none.
//
// Life cycle: construct, SetRate, then Read up to the end. One thread.
class FilmSound {
public:
    // The track outlives the object.
    FilmSound(const Track& track, SoundShape shape, std::int32_t fromMs, std::int32_t toMs);

    // Of the first clip that sounds; a disc's if none does.
    int OwnRate() const;
    void SetRate(int rate);

    // The samples that follow, and how many of them there are: fewer than asked at the end. The
    // track's end is that of its sound, by the sample. The result is an error message, empty on
    // success.
    [[nodiscard]] QString Read(std::span<float> stereo, std::size_t& filled);

private:
    struct Part {
        const AudioClip* clip = nullptr;
        std::int64_t offsetMs = 0; // where it begins in the clip
        std::int64_t endFrame = 0; // of the film
    };
    std::int64_t FrameAt(std::int64_t trackMs) const;
    [[nodiscard]] QString Begin(const Part& part);
    [[nodiscard]] QString End();
    std::size_t ReadPart(std::span<float> stereo);

    const Track& m_track;
    SoundShape m_shape;
    std::int32_t m_fromMs;
    std::int32_t m_toMs;
    int m_rate = 0;
    std::vector<Part> m_parts;
    std::size_t m_part = 0;
    std::unique_ptr<ClipSound> m_sound; // of the part; null for silence
    bool m_isBegun = false;
    std::int64_t m_frame = 0;
    std::int64_t m_slack = 0; // of the last part: it may be so much longer or shorter
};

} // namespace lantern::tool
