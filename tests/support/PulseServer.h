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

// A real PulseAudio of its own whose sinks nobody hears, ready when the constructor returns. What
// is played can be recorded from the monitor of a sink. A client reaches it by the environment
// variable PULSE_SERVER with the value Address().
class PulseServer {
public:
    using Sink = PulseSink;

    explicit PulseServer(const std::vector<Sink>& sinks = {{"studio", "Studio Speakers"}});
    ~PulseServer();

    std::string Address() const;
    EnvironmentChanges Environment() const { return {{"PULSE_SERVER", Address()}}; }

    void AddSink(const Sink& sink);
    void RemoveSink(const std::string& name);
    void SetDefaultSink(const std::string& name);
    std::string DefaultSink() const;
    // From now on a sink named auto_null takes the place of the last one that goes, as on the
    // servers of desktops.
    void KeepASinkAlways();

    void Kill();    // as a crash would: no farewell to its clients
    void Restart(); // with the sinks it had, at the same address
    void Freeze();  // stops answering without going away, until Thaw
    void Thaw();

    // Whether it is as a new one: nothing above was done to it, and nobody plays or records.
    bool MakeReady();

    // The output of pactl with these arguments.
    std::string Control(const std::vector<std::string>& arguments) const;

private:
    void Start();
    void LoadSink(const Sink& sink);

    ScratchFolder m_folder;
    std::vector<Sink> m_sinks;
    std::map<std::string, std::string> m_moduleOfSink;
    std::unique_ptr<Process> m_server;
    bool m_isAsStarted = true;
};

} // namespace lantern::test
