// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Process.h"

#include <compare>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace lantern::test {

struct PulseSink {
    std::string name;
    std::string description; // what people read
    int rate = 44100;

    auto operator<=>(const PulseSink&) const = default;
};

// A real sound server of its own that speaks PulseAudio's protocol. Nobody hears its sinks; what is
// played can be recorded from the monitor of one. A client reaches it by the environment variable
// PULSE_SERVER with the value Address().
class SoundServer {
public:
    using Sink = PulseSink;

    virtual ~SoundServer() = default;
    SoundServer(const SoundServer&) = delete;
    SoundServer& operator=(const SoundServer&) = delete;

    std::string Address() const { return "unix:" + Socket().string(); }
    EnvironmentChanges Environment() const { return {{"PULSE_SERVER", Address()}}; }

    void AddSink(const Sink& sink);
    void RemoveSink(const std::string& name);
    void SetDefaultSink(const std::string& name);
    std::string DefaultSink() const;
    // From now on a sink named auto_null takes the place of the last one that goes, as on the
    // servers of desktops.
    virtual void KeepASinkAlways() = 0;
    // By how many milliseconds it says that a frame is heard before its monitor has it: at most,
    // and in the mean.
    virtual double TellsAheadAtMost() const = 0;
    virtual double TellsAheadInTheMean() const = 0;

    void Kill(); // as a crash would: no farewell to its clients
    // The same, and whatever the server itself runs on.
    virtual void KillWhole() { Kill(); }
    void Restart(); // with the sinks it had, at the same address
    void Freeze();  // stops answering without going away, until Thaw
    void Thaw();

    // Whether it is as a new one: nothing above was done to it, and nobody plays or records.
    bool MakeReady();

    // The output of pactl with these arguments.
    std::string Control(const std::vector<std::string>& arguments) const;

protected:
    explicit SoundServer(const std::vector<Sink>& sinks);

    // For the last line of the constructor. Returns when the server is ready.
    void Start();
    void NoteChange() { m_isAsStarted = false; }
    const ScratchFolder& Folder() const { return m_folder; }

private:
    virtual std::filesystem::path Socket() const = 0;
    // Starts the process that clients talk to.
    virtual std::unique_ptr<Process> Launch() = 0;

    bool Obeys(const std::vector<std::string>& arguments) const;
    void LoadSink(const Sink& sink);

    ScratchFolder m_folder;
    std::vector<Sink> m_sinks;
    std::map<std::string, std::string> m_moduleOfSink;
    std::unique_ptr<Process> m_server;
    bool m_isAsStarted = true;
};

// One for a test: the PulseAudio that stands for servers of that protocol, or a PipeWire if the
// environment variable LANTERN_SOUND_SERVER is "pipewire", or one that runs at 48 kHz, as those of
// desktops do, if it is "pipewire-48000".
std::shared_ptr<SoundServer> LendSoundServer(const std::vector<PulseSink>& sinks = {
                                                 {"studio", "Studio Speakers"}});

} // namespace lantern::test
