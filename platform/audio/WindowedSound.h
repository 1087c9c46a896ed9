// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "OpenedSound.h"
#include "PcmWindow.h"
#include "SoundDecoder.h"
#include "SoundFollower.h"
#include "SoundIndex.h"

#include <atomic>
#include <cstdint>
#include <limits>
#include <thread>

namespace lantern {

// A sound of which only what lies around the place that is read is kept, however long it is. It is
// decoded from its start to its end once, to know its length and to make an index, and by that
// again wherever it is read.
class WindowedSound final : public SoundDecoder {
public:
    WindowedSound(OpenedSound sound, std::int64_t longestFrames);
    ~WindowedSound() override;

    // The length to tell until it is known.
    void Expect(std::int64_t frames) { m_expectedFrames = frames; }

    int SampleRate() const override { return m_index.SampleRate(); }
    std::int64_t FrameCount() const override;
    bool DecodedToEnd() const override { return m_ended.load(std::memory_order_acquire); }
    int CutBy() const override { return m_trouble.load(std::memory_order_relaxed); }
    Chunk Read(std::int64_t firstFrame, std::span<float> stereo) override;
    void Release() override;

private:
    // Frames that the thread need not be told of when they are read.
    struct Calm {
        std::int64_t from = 0;
        std::int64_t until = 0;
    };

    void Follow(std::int64_t frame);
    bool IsCalm(std::int64_t frame) const { return frame >= m_calmFrom && frame < m_calmUntil; }
    void Wake();

    void Run();
    bool Count();
    void EndCount(int trouble);
    bool FillWindow(std::int64_t read);
    bool Leap(std::int64_t read);
    bool BeginAt(std::int64_t frame);
    bool Extend(std::int64_t read);
    bool HoldsTheRest() const;
    void SetCalm(std::int64_t read);
    std::int64_t FramesIn(int milliseconds) const
    {
        return std::int64_t{milliseconds} * m_index.SampleRate() / 1000;
    }

    OpenedSound m_sound;
    const std::int64_t m_longestFrames;
    PcmWindow m_window;
    std::int64_t m_expectedFrames = 0;
    std::atomic<std::int64_t> m_countedFrames = 0;
    std::atomic<bool> m_ended = false; // all is counted
    std::atomic<int> m_trouble = 0;

    std::atomic<std::int64_t> m_readFrame = 0;
    std::atomic<std::int64_t> m_calmFrom = 0;
    std::atomic<std::int64_t> m_calmUntil = std::numeric_limits<std::int64_t>::max();
    std::atomic<std::uint32_t> m_wakes = 0;

    // The thread's own:
    SoundIndex m_index;
    SoundFollower m_follower;
    std::int64_t m_impossibleFrom = std::numeric_limits<std::int64_t>::max();
    bool m_filling = false;
    bool m_failing = false; // what is known to be there can't be read

    std::thread m_thread; // last: it uses all of the above
};

} // namespace lantern
