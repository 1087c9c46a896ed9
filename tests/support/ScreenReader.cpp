// SPDX-License-Identifier: GPL-3.0-or-later
#include "ScreenReader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <sstream>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>

namespace lantern::test {
namespace {

constexpr Clock::duration kPatience = 30s;

std::vector<std::string> Parts(const std::string& text, char separator)
{
    std::vector<std::string> parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, separator);)
        parts.push_back(part);
    return parts;
}

ReadObject ObjectOf(const std::string& line)
{
    std::vector<std::string> fields = Parts(line, '\t');
    fields.resize(11);
    return {.depth = std::atoi(fields[1].c_str()),
            .role = fields[2],
            .name = fields[3],
            .description = fields[4],
            .states = Parts(fields[5], ' '),
            .value = fields[6],
            .minimum = fields[7],
            .maximum = fields[8],
            .step = fields[9],
            .actions = Parts(fields[10], ',')};
}

bool Holds(const std::vector<std::string>& words, std::string_view word)
{
    return std::ranges::find(words, word) != words.end();
}

// The answer and its last line, which tells how it ended; empty if it has not ended.
struct Answer {
    std::string text;
    std::string ending;
};

Answer AnswerIn(const std::string& heard)
{
    Answer answer;
    for (const std::string& line : Parts(heard, '\n')) {
        if (line == "done" || line.starts_with("failed")) {
            answer.ending = line;
            break;
        }
        if (line.starts_with("object\t"))
            answer.text += line + '\n';
    }
    return answer;
}

} // namespace

bool ReadObject::Is(std::string_view state) const
{
    return Holds(states, state);
}

bool ReadObject::Can(std::string_view action) const
{
    return Holds(actions, action);
}

ReadObject ReadTree::Find(std::string_view role, std::string_view name) const
{
    const auto found = std::ranges::find_if(
        m_objects, [&](const ReadObject& one) { return one.role == role && one.name == name; });
    return found == m_objects.end() ? ReadObject() : *found;
}

ReadTree ReadTree::Below(std::string_view role, std::string_view name) const
{
    const auto top = std::ranges::find_if(
        m_objects, [&](const ReadObject& one) { return one.role == role && one.name == name; });
    if (top == m_objects.end())
        return ReadTree({});
    const auto end = std::find_if(top + 1, m_objects.end(),
                                  [&](const ReadObject& one) { return one.depth <= top->depth; });
    return ReadTree({top, end});
}

std::vector<std::string> ReadTree::Names(std::string_view role) const
{
    std::vector<std::string> names;
    for (const ReadObject& one : m_objects) {
        if (one.role == role)
            names.push_back(one.name);
    }
    return names;
}

ScreenReader::ScreenReader(const XServer& screen, const std::string& title) : m_screen(screen)
{
    StartBuses();
    const std::filesystem::path questions = m_folder / "questions";
    if (mkfifo(questions.c_str(), 0600) != 0)
        throw std::runtime_error("no pipe for the screen reader");
    // The system's own interpreter: another one does not know the system's libraries.
    m_reader = std::make_unique<Process>(Process::Command{
        .arguments = {"/usr/bin/python3", "-B", LANTERN_SCREEN_READER, questions.string(), title},
        .environment = OwnEnvironment(),
        .log = m_folder / "reader.log"});
    if (!Eventually([&] { return Heard().find("ready\n") != std::string::npos; }, kPatience))
        throw std::runtime_error("the screen reader did not start: " + Heard());
}

ScreenReader::~ScreenReader()
{
    m_reader.reset();
    m_launcher->End();
}

void ScreenReader::StartBuses()
{
    m_folder.PrivateFolder("run");
    m_folder.PrivateFolder("home");
    m_busAddress = "unix:path=" + (m_folder / "bus").string();
    m_sessionBus = std::make_unique<Process>(
        Process::Command{.arguments = {"dbus-daemon", "--session", "--nofork", "--nopidfile",
                                       "--address=" + m_busAddress},
                         .environment = OwnEnvironment(),
                         .log = m_folder / "bus.log"});
    if (!Eventually([&] { return std::filesystem::exists(m_folder / "bus"); }, kPatience))
        throw std::runtime_error("no session bus: " + ReadFile(m_folder / "bus.log"));
    // The launcher ends the bus that it has started when it is asked to end, but not when it is
    // killed.
    m_launcher = std::make_unique<Process>(
        Process::Command{.arguments = {"setpriv", "--pdeathsig", "TERM",
                                       "/usr/libexec/at-spi-bus-launcher", "--launch-immediately"},
                         .environment = OwnEnvironment(),
                         .log = m_folder / "launcher.log"});
    // As a screen reader does when it starts.
    const auto isTold = [&] {
        Process tell({.arguments = {"dbus-send", "--session", "--print-reply",
                                    "--dest=org.a11y.Bus", "/org/a11y/bus",
                                    "org.freedesktop.DBus.Properties.Set", "string:org.a11y.Status",
                                    "string:ScreenReaderEnabled", "variant:boolean:true"},
                      .environment = OwnEnvironment()});
        return tell.WaitForExit(5s) == 0;
    };
    const auto answers = [&] {
        Process ask({.arguments = {"dbus-send", "--session", "--print-reply", "--dest=org.a11y.Bus",
                                   "/org/a11y/bus", "org.a11y.Bus.GetAddress"},
                     .environment = OwnEnvironment()});
        return ask.WaitForExit(5s) == 0;
    };
    if (!Eventually(answers, kPatience, 20ms) || !Eventually(isTold, kPatience, 20ms))
        throw std::runtime_error("no bus for screen readers: " +
                                 ReadFile(m_folder / "launcher.log"));
}

EnvironmentChanges ScreenReader::OwnEnvironment() const
{
    EnvironmentChanges environment = m_screen.Environment();
    environment.insert(environment.end(), {{"DBUS_SESSION_BUS_ADDRESS", m_busAddress},
                                           {"AT_SPI_BUS_ADDRESS", std::nullopt},
                                           {"HOME", (m_folder / "home").string()},
                                           {"XDG_RUNTIME_DIR", (m_folder / "run").string()},
                                           {"GSETTINGS_BACKEND", "memory"},
                                           {"LC_ALL", "C.UTF-8"}});
    return environment;
}

ReadTree ScreenReader::Tree()
{
    std::vector<ReadObject> objects;
    for (const std::string& line : Parts(Ask("tree"), '\n'))
        objects.push_back(ObjectOf(line));
    return ReadTree(std::move(objects));
}

void ScreenReader::Do(const std::string& action, const Path& path)
{
    std::string question = "do\t" + action;
    for (const std::string& step : path)
        question += '\t' + step;
    Ask(question);
}

void ScreenReader::Set(double value, const Path& path)
{
    std::string question = "set\t" + std::to_string(value);
    for (const std::string& step : path)
        question += '\t' + step;
    Ask(question);
}

std::string ScreenReader::Ask(const std::string& question)
{
    const std::size_t from = Heard().size();
    const int pipe = open((m_folder / "questions").c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
    const std::string line = question + '\n';
    if (write(pipe, line.data(), line.size()) != static_cast<ssize_t>(line.size()))
        ADD_FAILURE() << "the screen reader does not listen";
    close(pipe);
    Answer answer;
    Eventually(
        [&] {
            answer = AnswerIn(Heard().substr(from));
            return !answer.ending.empty();
        },
        kPatience, 10ms);
    if (answer.ending != "done")
        ADD_FAILURE() << question << ": " << (answer.ending.empty() ? "no answer" : answer.ending);
    return answer.text;
}

ScreenReader::Listening::Listening(const ScreenReader& reader)
    : m_reader(&reader), m_from(reader.Heard().size())
{
}

bool ScreenReader::Listening::Hears(std::string_view event, Clock::duration atMost) const
{
    const std::string line = "event\t" + std::string(event) + '\n';
    return Eventually([&] { return m_reader->Heard().find(line, m_from) != std::string::npos; },
                      atMost, 10ms);
}

int ScreenReader::Listening::Count(std::string_view event) const
{
    const std::vector<std::string> heard = Parts(m_reader->Heard().substr(m_from), '\n');
    return static_cast<int>(std::ranges::count(heard, "event\t" + std::string(event)));
}

} // namespace lantern::test
