// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <chrono>
#include <cstdint>
#include <memory>
#include <span>

namespace lantern {

class ByteSource;

// A sound opened for playing: PCM at its own rate, as stereo floats, decoded from the start by a
// thread of its own while it is already being read. What is read far ahead of that is decoded
// first, from there on, where a place can be found to the frame: in all kinds but wma, mpc,
// modules, ADPCM and chains of Ogg streams. In these, and in aac, all that is decoded is kept; in
// the others what lies around the place that is read, and the rest is decoded again when it is
// read. A sound is cut off at 8 GB of PCM (twelve hours at CD quality; modules at 1 GB), at a day,
// or when the disk for its temporary file is full.
//
// It is opened on the user-interface thread. Read may then be called from one other thread, the
// const functions and Release from any. Destruction, on any thread, stops the decoding thread and
// waits for the packet or the read that is under way.
class SoundDecoder {
public:
    struct Chunk {
        int frames = 0;      // frames delivered, 0 to what was asked
        bool atEnd = false;  // the frame after these is beyond the sound's end
        bool notYet = false; // fewer frames than asked because they are still being decoded
    };

    // Null if the bytes hold no usable sound: nothing that decodes to at least one frame. The
    // contents decide the type, not the name. A folder, a FIFO, a device, an unreadable file:
    // null, and at once.
    static std::unique_ptr<SoundDecoder> OpenFile(const QString& path);
    // The memory stays the caller's and must stay valid until Release or the decoder's end.
    static std::unique_ptr<SoundDecoder> OpenMemory(std::span<const std::uint8_t> image);

    // The same for any bytes; none are no sound. Its length is measured for so long at most before
    // it is estimated.
    static std::unique_ptr<SoundDecoder> Open(std::unique_ptr<ByteSource> bytes,
                                              std::chrono::milliseconds timeToMeasure);

    // Milliseconds of the sound in the file, exact as playing it to the end would measure it and
    // rounded to the nearest; 0 if there is none. Within a second for any input: what takes longer
    // to measure (an mp3 of many hours, or a damaged file that only a decode could tell) is
    // estimated by then.
    static std::int32_t FileDurationMs(const QString& path);
    static std::int32_t DurationMs(const ByteSource& bytes);

    virtual ~SoundDecoder() = default;

    virtual int SampleRate() const = 0; // frames per second, 8000 to 192000
    // Frames from the start to the end: exact once DecodedToEnd, and mostly before, too. An
    // estimate until then in the cases named above.
    virtual std::int64_t FrameCount() const = 0;
    virtual bool DecodedToEnd() const = 0;

    // The system's code for what ended the decoding before the sound did: ENOSPC, the disk is full;
    // EFBIG, it is longer than any sound is; EIO, its file no longer holds what it did. 0 if
    // nothing did.
    virtual int CutBy() const { return 0; }

    // Copies interleaved stereo frames from the frame given on (0 for a negative one). Never waits
    // for another thread or allocates; a frame that isn't there gives notYet, and is decoded next.
    // Only where all is kept and beyond 64 MB of PCM, six minutes at CD quality, it reads from the
    // disk, mostly from the system's cache.
    virtual Chunk Read(std::int64_t firstFrame, std::span<float> stereo) = 0;

    // Decodes no further, without waiting for it: what is kept by then is all there is. The
    // memory of an image is not touched any more when this returns.
    virtual void Release() {}
};

} // namespace lantern
