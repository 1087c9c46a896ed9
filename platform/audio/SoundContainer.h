// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AvPointers.h"
#include "ByteSource.h"
#include "StampTrack.h"
#include "WorkLimit.h"

#include <cstdint>
#include <limits>
#include <memory>
#include <string_view>

namespace lantern {

// What tells how long the sound of a container is, as measured against whole decodes.
enum class LengthRule {
    Packets,      // the packets' durations, less the frames that they tell to skip
    Claim,        // the header, as long as the last packet's time stamp bears it out
    TrustedClaim, // the header: the container renders its packets, and runs over its end
};

// How a place in the middle is found, to the very packet.
enum class SeekRule {
    Never,   // it can't be
    Reading, // the packets before it are read, which takes a moment in an hour of sound
    Index,   // the library finds it, at once
    Stream,  // likewise, unless the file is a chain of streams
    Tail     // as by Index, and a look at the tail tells the length
};

struct ContainerKind {
    std::string_view name; // of FFmpeg's demuxer
    LengthRule rule = LengthRule::Packets;
    SeekRule seeks = SeekRule::Never;
};

// The bytes of a sound taken apart into the packets of its audio stream. Nothing but the given
// bytes is ever opened, whatever they refer to, and nothing but the containers that the program
// plays is recognised. Owned and used by one thread at a time.
class SoundContainer {
public:
    // Null if the bytes are no such container or have no audio. Both references must outlive it.
    static std::unique_ptr<SoundContainer> Open(const ByteSource& bytes, const WorkLimit& limit);

    // False for a decoder that no sound of ours needs; the library may offer others.
    static bool MayDecode(const AVCodec& decoder);

    const ContainerKind& Kind() const { return *m_kind; }
    const AVStream& Stream() const { return *m_stream; }
    // The decoder of its sound, which is not open yet; null if there is none that may decode it.
    AvPointer<AVCodecContext> MakeCodec() const;

    // The next packet of the audio stream; false at the end, on a failure and once halted.
    bool ReadPacket(AVPacket& packet);
    // Whether a place in the middle can be told at all.
    bool MayBeEntered() const;
    // Goes on at the last packet that begins by the time, in the stream's units. False where that
    // can't be told, too, as in a chain of Ogg streams.
    bool SeekTo(std::int64_t stamp);

    // Frames at the rate, counted from the sound's start, as the header states it; 0 if it
    // doesn't.
    std::int64_t ClaimedFrames(int sampleRate) const;
    // The sound ends there, whatever the packets hold beyond: a Musepack file that was cut keeps
    // the whole block, and the header counts the frames that are meant to be heard.
    bool EndsAtClaim() const
    {
        return m_kind->rule == LengthRule::TrustedClaim || m_statedFrames != 0;
    }
    // Whether the packets noted so far are those of a sound of that length.
    bool IsBorneOut(std::int64_t claimedFrames, const StampTrack& stamps, int sampleRate) const;
    // Frames that the container itself says to drop before the first, beside the decoder's delay.
    std::int64_t SilentFrames() const { return m_silentFrames; }
    // How far the reading has come, from 0 to 1.
    double Progress() const;
    bool LimitReached() const { return m_limit.Reached(); }

private:
    static constexpr std::int64_t kAnyNumber = std::numeric_limits<std::int64_t>::max();

    SoundContainer(const ByteSource& bytes, const WorkLimit& limit) : m_bytes(bytes), m_limit(limit)
    {
    }

    static int ReadBytes(void* opaque, std::uint8_t* out, int size);
    static std::int64_t SeekBytes(void* opaque, std::int64_t offset, int whence);
    static int RefuseToOpen(AVFormatContext* context, AVIOContext** io, const char* url, int flags,
                            AVDictionary** options);

    bool OpenInput();
    bool ChooseStream();
    void ReadMusepackHeader();

    const ByteSource& m_bytes;
    const WorkLimit& m_limit;
    std::int64_t m_position = 0;
    std::int64_t m_bytesToRead = kAnyNumber; // that the library may still read for what it is at
    // The format context uses the byte context until its own end.
    AvPointer<AVIOContext> m_io;
    AvPointer<AVFormatContext> m_format;
    const ContainerKind* m_kind = nullptr;
    AVStream* m_stream = nullptr;
    std::int64_t m_statedFrames = 0; // where we read the header ourselves
    std::int64_t m_silentFrames = 0;
};

} // namespace lantern
