// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SessionBus.h"
#include "SoundServer.h"

namespace lantern::test {

// A real PipeWire with its session manager and its PulseAudio server, set up as on a desktop but
// for the devices of this machine, which it leaves alone. Ready when the constructor returns. Kill
// and what follows it are of the PulseAudio server: it alone talks to clients, and the sinks are
// its own. KillWhole ends all three, and Restart then starts all of them.
class PipeWireServer final : public SoundServer {
public:
    // A desktop's usual rate is 48000. The ears listen at 44100, and of a sound that was resampled
    // on its way they could not tell which frame is which.
    static constexpr int kRateOfTheEars = 44100;

    explicit PipeWireServer(const std::vector<Sink>& sinks = {{"studio", "Studio Speakers"}},
                            int rate = kRateOfTheEars);

    void KillWhole() override;
    void KeepASinkAlways() override {} // it does from its start
    // It counts in steps, of 512 frames beside the player and the ears, and tells a latency of 0.
    // Measured were 5 to 9 milliseconds in the mean and 18 at most.
    double TellsAheadAtMost() const override { return 512 / 44.1; }
    double TellsAheadInTheMean() const override { return 7.0; }

private:
    std::filesystem::path Socket() const override { return Folder() / "run/pulse/native"; }
    std::unique_ptr<Process> Launch() override;
    std::unique_ptr<Process> Run(const std::string& program);
    void WriteConfiguration(int rate);
    void StartGraph();

    SessionBus m_bus;
    std::unique_ptr<Process> m_graph;
    std::unique_ptr<Process> m_sessionManager;
};

} // namespace lantern::test
