// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SampleConverter.h"
#include "SoundContainer.h"
#include "StampTrack.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace lantern {

// The frames of a sound, from the first to the last and no others: encoder delay and padding are
// gone, what a decoder loses or can't decode is silence in its place, and the end is where the
// container's rule puts it. Owned and used by one thread at a time.
class DecodedStream {
public:
    // Null if nothing decodes to at least one frame. Both references must outlive it.
    static std::unique_ptr<DecodedStream> Open(const ByteSource& bytes, const WorkLimit& limit);

    // The same, from this frame of the sound on; null where that can't be told to the frame. What
    // is decoded with a loss may differ by a trace from a decode from the start.
    static std::unique_ptr<DecodedStream> OpenAt(const ByteSource& bytes, const WorkLimit& limit,
                                                 std::int64_t frame);
    // The same where the stamp of this frame is known from a decode from the start.
    static std::unique_ptr<DecodedStream> OpenAt(const ByteSource& bytes, const WorkLimit& limit,
                                                 std::int64_t frame, std::int64_t stamp);

    int SampleRate() const { return m_sampleRate; }
    SampleKind Kind() const { return m_sampleKind; }

    // The next frames, interleaved stereo of the kind, valid until the next call. Empty at the
    // sound's end and once halted.
    std::span<const std::byte> NextBlock();

    // The stamp of the block's first frame; none where something else than a decoded frame begins
    // there, such as silence.
    std::optional<std::int64_t> BlockStamp() const { return m_blockStamp; }

    // A decode from any place gives bit for bit what one from the start does, as a rule.
    bool IsExactFromAnywhere() const;

    const SoundContainer& Container() const { return *m_container; }

private:
    explicit DecodedStream(std::unique_ptr<SoundContainer> container);

    bool OpenCodec();
    bool DecodeFirstFrame();
    bool SeekTo(std::int64_t frame, std::optional<std::int64_t> decoded);
    std::optional<std::int64_t> FramesSinceFirst(std::int64_t stamp) const;
    void NoteStamp();
    bool ReadToStamp(std::int64_t stamp);
    bool Arrive();
    void Advance();
    void DecodePacket(const AVPacket* packet);
    bool TakeFrame();
    bool BeginSound();
    void AppendSilence(std::int64_t frames);
    void DropDelay();
    void KeepWithinClaim();
    void EndSound();

    std::int64_t FramesIn(const std::vector<std::byte>& bytes) const;
    std::size_t SizeOf(std::int64_t frames) const;

    std::unique_ptr<SoundContainer> m_container;
    StampTrack m_stamps;
    AvPointer<AVCodecContext> m_codec;
    AvPointer<AVPacket> m_packet;
    AvPointer<AVFrame> m_frame;
    // Known with the first frame that is decoded, as are the rate and the kind.
    std::optional<SampleConverter> m_converter;
    SampleKind m_sampleKind = SampleKind::Int16;
    int m_sampleRate = 0;

    std::vector<std::byte> m_block; // what NextBlock returns
    bool m_blockReturned = false;
    std::optional<std::int64_t> m_blockStamp;
    std::vector<std::byte> m_withheld; // frames beyond the claimed end, until it is refuted
    std::int64_t m_claimedFrames = 0;  // 0 without a claim, or once it is refuted
    std::int64_t m_emittedFrames = 0;  // in all blocks returned so far
    std::int64_t m_delayFrames = 0;    // still to be dropped at the start
    std::int64_t m_leadFrames = 0;     // of the sound, before the first that was decoded
    std::int64_t m_firstStamp = AV_NOPTS_VALUE;  // of that
    std::optional<std::int64_t> m_soughtDecoded; // a decoded frame, until one before it is there
    bool m_missed = false;                       // what was sought lies before all that came
    std::int64_t m_closingSilence = 0;           // frames still to come after the last packet
    std::int64_t m_undecodedTicks = 0; // of the packets that failed before the first frame
    bool m_exactPlaces = false;        // stamps tell each frame from the next
    bool m_packetsEnded = false;
    bool m_finished = false;
};

} // namespace lantern
