// SPDX-License-Identifier: GPL-3.0-or-later
#include "PulseServer.h"

namespace lantern::test {

PulseServer::PulseServer(const std::vector<Sink>& sinks) : SoundServer(sinks)
{
    // Nothing of the stock script: it would make a sink of its own where there is none.
    WriteFile(Folder() / "start.pa",
              "load-module module-native-protocol-unix socket=" + Socket().string() + "\n");
    Start();
}

std::unique_ptr<Process> PulseServer::Launch()
{
    return std::make_unique<Process>(Process::Command{
        .arguments = {"pulseaudio", "-n", "-F", (Folder() / "start.pa").string(), "--daemonize=no",
                      "--exit-idle-time=-1", "--disallow-exit=yes", "--use-pid-file=no",
                      "--realtime=no", "--high-priority=yes"},
        .environment = {{"HOME", (Folder() / "home").string()},
                        {"XDG_RUNTIME_DIR", (Folder() / "run").string()},
                        {"PULSE_RUNTIME_PATH", (Folder() / "run").string()},
                        {"PULSE_SERVER", std::nullopt},
                        {"DBUS_SESSION_BUS_ADDRESS", std::nullopt}},
        .log = Folder() / "log"});
}

void PulseServer::KeepASinkAlways()
{
    NoteChange();
    Control({"load-module", "module-always-sink"});
}

} // namespace lantern::test
