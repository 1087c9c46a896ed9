// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <cstdint>
#include <functional>
#include <span>

namespace lantern {

class LoudnessMeter;
class SpectrumAnalyser;

// What the player is doing, by the numbers that the rest of the program compares.
enum class SoundStatus : std::int32_t { Empty = 0, Playing = 1, Paused = 2, Stopped = 3 };

// What both ears hear of the two channels of a sound: each its own, or both the same one.
enum class VoiceGuide : std::uint8_t { Both, Left, Right };

// An output device: by what the system knows it, the same at every start, and what people read.
// Both are empty where there is none.
struct SoundDevice {
    QString id;
    QString name;

    bool operator==(const SoundDevice&) const = default;
};

// A sound may reach the ear so much later, or earlier, than the system says, in milliseconds.
inline constexpr std::int32_t kLongestSoundDelayMs = 500;

// One player of sound: it loads one sound at a time, plays it on one output device and tells the
// position that is being heard.
//
// Life cycle: construct, EngineInit once, then any call in any order, destroy. Before a successful
// EngineInit no sound can be loaded; the other operations are harmless. Everything is called on
// one thread, the user-interface thread, and SoundDone is delivered on it, from its event loop.
//
// Volume, balance, key and tempo belong to the engine and outlive the loaded sound. They are
// stored as given; callers clamp. A change while a sound plays is heard within 150 ms, without a
// click and without a jump of the position.
class AudioEngine {
public:
    virtual ~AudioEngine() = default;

    // Devices are counted from 0; the first is the system's default. 0 means that there is none.
    virtual int GetDeviceCount() = 0;
    virtual bool EngineInit() = 0;
    virtual QString GetDeviceName(int device) = 0; // empty for an index out of range
    virtual void SelectDevice(int device) = 0;     // a sound that plays goes on, on that device

    // Milliseconds of the sound in the file; 0 or less if it is no usable sound. The loaded sound
    // stays as it is. Returns within a second whatever the path names.
    virtual std::int32_t GetFileDuration(const QString& path) = 0;

    // Both replace the loaded sound, which is then stopped at 0, and return 0 on success. After a
    // failure nothing is loaded. The memory stays the caller's and must stay valid until the next
    // load or CloseSound.
    virtual std::int32_t LoadFile(const QString& path) = 0;
    virtual std::int32_t LoadMemory(std::span<const std::uint8_t> image) = 0;
    virtual std::int32_t GetLoadedDuration() = 0; // milliseconds
    // The system's code for what keeps the loaded sound from playing to its end, such as a full
    // disk where it is unpacked, or a file that was cut meanwhile; 0 for nothing. What is there
    // plays.
    virtual int GetSoundTrouble() { return 0; }
    virtual void CloseSound() = 0;

    // Positions are milliseconds within the loaded sound. A seek is exact to the sample at
    // position * rate / 1000 and clamps to the sound.
    virtual void SeekSound(std::int32_t positionMs) = 0;
    virtual void StartSound() = 0; // starts or resumes at the current position
    virtual void PauseSound() = 0;
    virtual void StopSound() = 0; // stops and returns to 0
    virtual SoundStatus GetSoundStatus() = 0;
    // The position being heard now. It never runs backwards between seeks, whatever becomes of the
    // delay meanwhile.
    virtual std::int32_t GetSoundPosition() = 0;

    virtual float GetEngineVolume() = 0; // 0 to 100 percent of full level
    virtual void SetEngineVolume(float percent) = 0;
    virtual float GetEngineBalance() = 0; // -50 left to +50 right
    virtual void SetEngineBalance(float balance) = 0;
    virtual int GetEnginePitch() = 0; // -10 to +10 semitones
    virtual void SetEnginePitch(int semitones) = 0;
    virtual float GetEngineTempo() = 0; // -90 to +90 percent faster
    virtual void SetEngineTempo(float percent) = 0;

    // The device that the sound goes to, or would go to now. It may become another one at any time.
    virtual SoundDevice DeviceInUse() { return {}; }
    // How much later than the system says a sound reaches the ear; negative for earlier. It moves
    // the position that is told, and nothing of the sound, which ends when both have come to its
    // end. What is out of range counts as the nearest in range.
    virtual void SetSoundDelay(std::int32_t) {}

    // Where a sound has the voice on one of its channels: which of them both ears hear. It stays
    // from sound to sound, and a change is heard as those above are.
    virtual void SetVoiceGuide(VoiceGuide) {}

    // A factor of the amplitude beside the volume, above 0, which holds for a whole sound: 1, and
    // it passes as it is. A sound that begins has it from its first frame; a change while one plays
    // is a fade of half a second.
    virtual void SetSoundGain(float) {}

    // What the sounds are called where the desktop shows who plays, from now on; empty for no name
    // of their own. An engine that nobody hears does without.
    virtual void NameSound(const QString&) {}

    // What shows the sound's spectrum; null where there is none. The engine's own.
    virtual SpectrumAnalyser* Spectrum() { return nullptr; }

    // What measures how loud sounds are; null where there is none. The engine's own.
    virtual LoudnessMeter* Loudness() { return nullptr; }

    // Called when the sound has been heard to its end (the status is then Stopped). Never from
    // inside an operation above.
    std::function<void()> SoundDone;
};

} // namespace lantern
