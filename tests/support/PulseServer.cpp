// SPDX-License-Identifier: GPL-3.0-or-later
#include "PulseServer.h"

#include <algorithm>
#include <csignal>
#include <stdexcept>

namespace lantern::test {

PulseServer::PulseServer(const std::vector<Sink>& sinks) : m_sinks(sinks)
{
    m_folder.PrivateFolder("run");
    m_folder.PrivateFolder("home");
    // Nothing of the stock script: it would make a sink of its own where there is none.
    WriteFile(m_folder / "start.pa", "load-module module-native-protocol-unix socket=" +
                                         (m_folder / "native").string() + "\n");
    Start();
}

PulseServer::~PulseServer() = default;

std::string PulseServer::Address() const
{
    return "unix:" + (m_folder / "native").string();
}

void PulseServer::Start()
{
    m_server = std::make_unique<Process>(Process::Command{
        .arguments = {"pulseaudio", "-n", "-F", (m_folder / "start.pa").string(), "--daemonize=no",
                      "--exit-idle-time=-1", "--disallow-exit=yes", "--use-pid-file=no",
                      "--realtime=yes", "--high-priority=yes"},
        .environment = {{"HOME", (m_folder / "home").string()},
                        {"XDG_RUNTIME_DIR", (m_folder / "run").string()},
                        {"PULSE_RUNTIME_PATH", (m_folder / "run").string()},
                        {"PULSE_SERVER", std::nullopt},
                        {"DBUS_SESSION_BUS_ADDRESS", std::nullopt}},
        .log = m_folder / "log"});
    const auto answers = [&] {
        Process info({.arguments = {"pactl", "info"}, .environment = Environment()});
        return info.WaitForExit(5s) == 0;
    };
    if (!Eventually(answers, 10s, 10ms))
        throw std::runtime_error("PulseAudio did not start: " + ReadFile(m_folder / "log"));
    for (const Sink& sink : m_sinks)
        LoadSink(sink);
    if (!m_sinks.empty())
        Control({"set-default-sink", m_sinks.front().name});
}

void PulseServer::LoadSink(const Sink& sink)
{
    // Without norewinds an idle null sink renders two seconds ahead, and the first sound is late.
    std::string module = Control(
        {"load-module", "module-null-sink", "sink_name=" + sink.name,
         "rate=" + std::to_string(sink.rate), "channels=2", "format=float32le", "norewinds=1",
         "sink_properties=\"device.description='" + sink.description + "'\""});
    module.erase(std::remove(module.begin(), module.end(), '\n'), module.end());
    m_moduleOfSink[sink.name] = module;
}

void PulseServer::AddSink(const Sink& sink)
{
    m_isAsStarted = false;
    m_sinks.push_back(sink);
    LoadSink(sink);
}

void PulseServer::RemoveSink(const std::string& name)
{
    m_isAsStarted = false;
    Control({"unload-module", m_moduleOfSink.at(name)});
    m_moduleOfSink.erase(name);
    std::erase_if(m_sinks, [&](const Sink& sink) { return sink.name == name; });
}

void PulseServer::SetDefaultSink(const std::string& name)
{
    m_isAsStarted = false;
    Control({"set-default-sink", name});
}

std::string PulseServer::DefaultSink() const
{
    std::string name = Control({"get-default-sink"});
    name.erase(std::remove(name.begin(), name.end(), '\n'), name.end());
    return name;
}

void PulseServer::KeepASinkAlways()
{
    m_isAsStarted = false;
    Control({"load-module", "module-always-sink"});
}

void PulseServer::Kill()
{
    m_isAsStarted = false;
    m_server->Signal(SIGKILL);
    m_server->WaitForExit(5s);
}

void PulseServer::Restart()
{
    Kill();
    m_moduleOfSink.clear();
    Start();
}

void PulseServer::Freeze()
{
    m_isAsStarted = false;
    m_server->Signal(SIGSTOP);
}

void PulseServer::Thaw()
{
    m_server->Signal(SIGCONT);
}

bool PulseServer::MakeReady()
{
    const auto isIdle = [this] {
        return Control({"list", "short", "sink-inputs"}).empty() &&
               Control({"list", "short", "source-outputs"}).empty();
    };
    return m_isAsStarted && m_server->IsRunning() && Eventually(isIdle, 2s, 20ms);
}

std::string PulseServer::Control(const std::vector<std::string>& arguments) const
{
    std::vector<std::string> words = {"pactl"};
    words.insert(words.end(), arguments.begin(), arguments.end());
    return OutputOf({.arguments = words, .environment = Environment()});
}

} // namespace lantern::test
