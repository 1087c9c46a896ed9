// SPDX-License-Identifier: GPL-3.0-or-later
#include "PipeWireServer.h"

#include <csignal>
#include <stdexcept>

namespace lantern::test {
namespace {

// What the session manager's own file of this name does, without the devices of the machine.
constexpr std::string_view kNoMachineDevices = "load_module(\"metadata\")\n"
                                               "default_access.enable()\n"
                                               "device_defaults.enable()\n"
                                               "stream_defaults.enable()\n"
                                               "load_script(\"intended-roles.lua\")\n"
                                               "load_script(\"suspend-node.lua\")\n";

std::string GraphAt(int rate)
{
    const std::string number = std::to_string(rate);
    return "context.properties = {\n  default.clock.rate = " + number +
           "\n  default.clock.allowed-rates = [ " + number + " ]\n}\n";
}

std::vector<PulseSink> SinksAt(int rate, std::vector<PulseSink> sinks)
{
    for (PulseSink& sink : sinks)
        sink.rate = rate;
    return sinks;
}

} // namespace

PipeWireServer::PipeWireServer(const std::vector<Sink>& sinks, int rate)
    : SoundServer(rate == kRateOfTheEars ? sinks : SinksAt(rate, sinks))
{
    WriteConfiguration(rate);
    Start();
}

void PipeWireServer::StartGraph()
{
    const std::filesystem::path socket = Folder() / "run/pipewire-0";
    std::filesystem::remove(socket); // left by one that was killed
    m_graph = Run("pipewire");
    if (!Eventually([&] { return std::filesystem::exists(socket); }, 10s, 10ms))
        throw std::runtime_error("PipeWire did not start: " + ReadFile(Folder() / "log"));
    m_sessionManager = Run("wireplumber");
}

void PipeWireServer::KillWhole()
{
    for (Process* const process : {m_graph.get(), m_sessionManager.get()})
        process->Signal(SIGKILL);
    Kill();
    for (Process* const process : {m_graph.get(), m_sessionManager.get()})
        process->WaitForExit(5s);
}

void PipeWireServer::WriteConfiguration(int rate)
{
    const auto write = [this](const std::string& path, std::string_view text) {
        const std::filesystem::path file = Folder() / "home/.config" / path;
        std::filesystem::create_directories(file.parent_path());
        WriteFile(file, text);
    };
    write("wireplumber/main.lua.d/90-enable-all.lua", kNoMachineDevices);
    write("wireplumber/bluetooth.lua.d/90-enable-all.lua", "");
    write("pipewire/pipewire.conf.d/rate.conf", GraphAt(rate));
}

std::unique_ptr<Process> PipeWireServer::Run(const std::string& program)
{
    EnvironmentChanges environment = m_bus.Environment();
    environment.insert(environment.end(), {{"HOME", (Folder() / "home").string()},
                                           {"XDG_RUNTIME_DIR", (Folder() / "run").string()},
                                           {"XDG_CONFIG_HOME", std::nullopt},
                                           {"XDG_STATE_HOME", std::nullopt},
                                           {"PULSE_RUNTIME_PATH", std::nullopt},
                                           {"PULSE_SERVER", std::nullopt}});
    return std::make_unique<Process>(Process::Command{
        .arguments = {program}, .environment = environment, .log = Folder() / "log"});
}

std::unique_ptr<Process> PipeWireServer::Launch()
{
    if (!m_graph || !m_graph->IsRunning())
        StartGraph();
    return Run("pipewire-pulse");
}

} // namespace lantern::test
