// SPDX-License-Identifier: GPL-3.0-or-later
#include "SoundServer.h"

#include "Lent.h"
#include "PipeWireServer.h"
#include "PulseServer.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <string_view>

namespace lantern::test {
namespace {

std::vector<std::string> Words(const std::vector<std::string>& arguments)
{
    std::vector<std::string> words = {"pactl"};
    words.insert(words.end(), arguments.begin(), arguments.end());
    return words;
}

std::string WithoutLineEnd(std::string text)
{
    std::erase(text, '\n');
    return text;
}

} // namespace

SoundServer::SoundServer(const std::vector<Sink>& sinks) : m_sinks(sinks)
{
    m_folder.PrivateFolder("run");
    m_folder.PrivateFolder("home");
}

void SoundServer::Start()
{
    m_server = Launch();
    if (!Eventually([this] { return Obeys({"info"}); }, 10s, 10ms))
        throw std::runtime_error("the sound server did not start: " + ReadFile(m_folder / "log"));
    for (const Sink& sink : m_sinks)
        LoadSink(sink);
    // A server may need a moment until it can tell one sink from the others.
    const auto isDefault = [this] {
        const std::string& first = m_sinks.front().name;
        return Obeys({"set-default-sink", first}) && DefaultSink() == first;
    };
    if (!m_sinks.empty() && !Eventually(isDefault, 10s, 10ms))
        throw std::runtime_error("the sound server takes no default: " +
                                 ReadFile(m_folder / "log"));
}

void SoundServer::LoadSink(const Sink& sink)
{
    // Without norewinds an idle null sink of PulseAudio renders two seconds ahead, and the first
    // sound is late.
    m_moduleOfSink[sink.name] = WithoutLineEnd(Control(
        {"load-module", "module-null-sink", "sink_name=" + sink.name,
         "rate=" + std::to_string(sink.rate), "channels=2", "format=float32le", "norewinds=1",
         "sink_properties=\"device.description='" + sink.description + "'\""}));
}

void SoundServer::AddSink(const Sink& sink)
{
    NoteChange();
    m_sinks.push_back(sink);
    LoadSink(sink);
}

void SoundServer::RemoveSink(const std::string& name)
{
    NoteChange();
    Control({"unload-module", m_moduleOfSink.at(name)});
    m_moduleOfSink.erase(name);
    std::erase_if(m_sinks, [&](const Sink& sink) { return sink.name == name; });
}

void SoundServer::SetDefaultSink(const std::string& name)
{
    NoteChange();
    Control({"set-default-sink", name});
}

std::string SoundServer::DefaultSink() const
{
    return WithoutLineEnd(Control({"get-default-sink"}));
}

void SoundServer::Kill()
{
    NoteChange();
    m_server->Signal(SIGKILL);
    m_server->WaitForExit(5s);
}

void SoundServer::Restart()
{
    Kill();
    m_moduleOfSink.clear();
    Start();
}

void SoundServer::Freeze()
{
    NoteChange();
    m_server->Signal(SIGSTOP);
}

void SoundServer::Thaw()
{
    m_server->Signal(SIGCONT);
}

bool SoundServer::MakeReady()
{
    const auto isIdle = [this] {
        return Control({"list", "short", "sink-inputs"}).empty() &&
               Control({"list", "short", "source-outputs"}).empty();
    };
    return m_isAsStarted && m_server->IsRunning() && Eventually(isIdle, 2s, 20ms);
}

bool SoundServer::Obeys(const std::vector<std::string>& arguments) const
{
    return Process({.arguments = Words(arguments), .environment = Environment()}).WaitForExit(5s) ==
           0;
}

std::string SoundServer::Control(const std::vector<std::string>& arguments) const
{
    return OutputOf({.arguments = Words(arguments), .environment = Environment()});
}

std::shared_ptr<SoundServer> LendSoundServer(const std::vector<PulseSink>& sinks)
{
    const char* const variable = std::getenv("LANTERN_SOUND_SERVER");
    const std::string_view wanted = variable != nullptr ? variable : "";
    if (wanted == "pipewire")
        return Lend<PipeWireServer>(sinks);
    if (wanted == "pipewire-48000")
        return Lend<PipeWireServer>(sinks, 48000);
    return Lend<PulseServer>(sinks);
}

} // namespace lantern::test
