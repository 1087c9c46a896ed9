// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "PeakLimiter.h"
#include "RateChanger.h"
#include "SoundDecoder.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace RubberBand {
class RubberBandStretcher;
}

namespace lantern {

// How a sound is played: each independent of the other.
struct SoundShape {
    int keySemitones = 0;
    double speed = 1.0; // frames of the sound for each frame of the output

    bool IsNeutral() const { return *this == SoundShape{}; }
    bool operator==(const SoundShape&) const = default;
};

// The shape for the numbers of the controls, limited to what can be played.
SoundShape ShapeFor(int semitones, float tempoPercent);

// Turns a sound into what is played of it, in another key and at another speed. A neutral shape
// passes the samples bit for bit.
//
// A change of shape does not steer the running stretcher: that lets the place drift away from the
// one computed by up to a tenth of a second. The stretcher starts afresh instead, led in with the
// sound that precedes the place, and a crossfade joins the two. So the first frame after Start or
// Change is the frame of the sound that was given, and each frame after it is one step of the
// speed further, to 5 milliseconds at every moment.
//
// One thread at a time; any call but Render at a neutral shape may take some milliseconds.
class SoundShaper {
public:
    struct Block {
        int frames = 0;
        bool atEnd = false;  // the sound ends after these frames
        bool notYet = false; // fewer frames than asked because they are still being decoded
    };

    SoundShaper();
    ~SoundShaper();

    // Comes before all else. The sound is borrowed until the next Start.
    void Start(SoundDecoder& sound, std::int64_t mediaFrame, SoundShape shape,
               std::vector<float> tail = {});
    // Goes on at this frame, fading over from the tail: what has been rendered, or would have
    // been, from there on in the former shape or at the former place.
    void Change(std::int64_t mediaFrame, SoundShape shape, std::vector<float> tail);

    Block Render(std::span<float> stereo);

    // How loud what is not neutral may get from now on, of full scale. Any thread.
    void SetLoudest(float peak) { m_loudest = peak; }

private:
    void Prime(std::int64_t mediaFrame, SoundShape shape);
    void PrepareStretcher();
    void MakeStretcher();
    Block RenderSegment(std::span<float> stereo);
    Block RenderNeutral(std::span<float> stereo);
    Block RenderStretched(std::span<float> stereo);
    std::optional<std::int64_t> SegmentLength() const;
    int Retrieve(std::span<float> stereo);
    void ShapeMore();
    RateChanger::Sides TakeShaped(std::size_t atMost);
    bool Feed();
    void Stretch(RateChanger::Sides fed);
    void MixTail(std::span<float> stereo);

    static constexpr int kMostFedFrames = 1024; // of the sound

    SoundDecoder* m_sound = nullptr;
    SoundShape m_shape;
    std::int64_t m_segmentStart = 0;
    std::int64_t m_segmentFrames = 0; // rendered since the segment's start
    std::optional<std::int64_t> m_soundEnd;

    std::unique_ptr<RubberBand::RubberBandStretcher> m_stretcher;
    // The stretcher gets no more frames a second than it needs: what it does for each of them takes
    // long. Set for sounds of higher rates.
    std::optional<RateChanger> m_toStretcher;
    std::optional<RateChanger> m_fromStretcher;
    std::optional<PeakLimiter> m_limiter; // behind it: what it makes is louder here and there
    std::atomic<float> m_loudest = 1.0F;
    int m_soundRate = 0;        // that all of these were made for
    double m_soundFrames = 1.0; // for each frame of the stretcher
    std::int64_t m_nextFed = 0; // negative: the silence before the sound
    int m_framesToDrop = 0;
    std::array<float, 2 * kMostFedFrames> m_interleaved = {};
    std::array<float, kMostFedFrames> m_left = {};
    std::array<float, kMostFedFrames> m_right = {};
    RateChanger::Sides m_shaped; // what the limiter has let through and nobody has taken yet

    std::vector<float> m_tail;
    std::size_t m_tailMixed = 0;
};

} // namespace lantern
