// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <chrono>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace lantern {

// Where the sound goes: one stream of stereo floats to one device of the system.
//
// The stream is started by Restart, then Begin when the source has its first frames. From there
// frames are counted: frame 0 is the first that the source gave after Restart, and nothing given
// before it is heard any more. Any thread may call; none of the calls waits for the system's sound
// server, except WaitForDevices, which says how long.
class AudioOutput {
public:
    struct Device {
        std::string id; // what the system knows it by
        QString name;   // what people read
    };

    enum class State {
        Waiting,    // not sounding yet: not begun, or no device at hand. It starts by itself
        Running,    // sounding, or paused
        Interrupted // ran dry, or its device is gone: what was heard stays, Restart goes on
    };

    // Gives the frames to be played. The output's own thread calls it, and it must neither lock,
    // nor allocate, nor wait: it delivers what it has and says how many frames that is.
    class Source {
    public:
        virtual int Fill(std::span<float> stereo) = 0;

    protected:
        ~Source() = default;
    };

    virtual ~AudioOutput() = default;

    // The devices, the system's default first. The first call looks for the system's sound server
    // and waits for its answer, for the time given at most.
    virtual std::vector<Device> WaitForDevices(std::chrono::milliseconds atMost) = 0;
    // The device to play on from now on; a running stream moves there. An empty or unknown id is
    // the system's default.
    virtual void Select(const std::string& id) = 0;
    // The device of the stream; without a stream the one that it would be made on. An empty id if
    // there is none.
    virtual Device DeviceInUse() = 0;
    // What the desktop shows of what is played, from now on; empty for the program's own name.
    virtual void SetName(const QString& name) = 0;

    // Silences and empties the stream, which is made anew if it does not have this rate. The
    // source is borrowed until Close and not called between Restart and Begin.
    virtual void Restart(int sampleRate, Source& source) = 0;
    virtual void Begin() = 0;
    virtual void Pause() = 0; // until the next Restart
    virtual void Close() = 0;

    virtual State GetState() = 0;
    // Whether the sound server, which has a device, owes an answer before the stream can sound.
    virtual bool IsAnswerDue() = 0;
    // Frames of the current stream that have been heard by now, between two frames too; 0 before
    // the first. It may step back by a little, but stays within what the source gave.
    virtual double HeardFrames() = 0;
};

std::unique_ptr<AudioOutput> MakeAudioOutput();

} // namespace lantern
