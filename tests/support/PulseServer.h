// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SoundServer.h"

namespace lantern::test {

// A real PulseAudio, ready when the constructor returns.
class PulseServer final : public SoundServer {
public:
    explicit PulseServer(const std::vector<Sink>& sinks = {{"studio", "Studio Speakers"}});

    void KeepASinkAlways() override;
    double TellsAheadAtMost() const override { return 0.0; }
    double TellsAheadInTheMean() const override { return 0.0; }

private:
    std::filesystem::path Socket() const override { return Folder() / "native"; }
    std::unique_ptr<Process> Launch() override;
};

} // namespace lantern::test
