// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AdvanceDecoder.h"
#include "OpenedSound.h"
#include "PcmStore.h"
#include "SoundDecoder.h"

#include <atomic>
#include <cstdint>
#include <thread>

namespace lantern {

// A sound that is decoded once, from its start to its end, and kept: where a decode from another
// place would not give the same.
class StoredSound final : public SoundDecoder {
public:
    StoredSound(OpenedSound sound, const PcmLimits& limits);
    ~StoredSound() override;

    // The length to tell until it is known.
    void Expect(std::int64_t frames) { m_expectedFrames = frames; }

    int SampleRate() const override { return m_sampleRate; }
    std::int64_t FrameCount() const override;
    bool DecodedToEnd() const override { return m_ended.load(std::memory_order_acquire); }
    int CutBy() const override { return m_store.Trouble(); }
    Chunk Read(std::int64_t firstFrame, std::span<float> stereo) override;
    void Release() override;

private:
    void DecodeToEnd();

    OpenedSound m_sound; // the thread's
    const int m_sampleRate;
    PcmStore m_store;
    AdvanceDecoder m_advance;
    std::int64_t m_expectedFrames = 0;
    std::atomic<bool> m_ended = false;
    std::thread m_thread; // last: it uses all of the above
};

} // namespace lantern
