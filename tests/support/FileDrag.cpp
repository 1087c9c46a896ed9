// SPDX-License-Identifier: GPL-3.0-or-later
#include "FileDrag.h"

#include <cctype>
#include <csignal>
#include <sstream>
#include <stdexcept>

namespace lantern::test {
namespace {

constexpr Point kSource = {60, 50}; // inside the program's window
constexpr Point kFirstStep = {15, 10};
constexpr int kSteps = 6;

Process::Command SourceProgram(const XServer& screen, const ScratchFolder& folder,
                               std::string_view uriList, const std::vector<std::string>& actions,
                               const EnvironmentChanges& environment)
{
    WriteFile(folder / "list", uriList);
    Process::Command command = {.arguments = {LANTERN_DRAG_SOURCE, (folder / "list").string()},
                                .environment = screen.Environment(),
                                .log = folder / "log"};
    command.arguments.insert(command.arguments.end(), actions.begin(), actions.end());
    command.environment.insert(command.environment.end(), environment.begin(), environment.end());
    return command;
}

} // namespace

FileDrag::FileDrag(const XServer& screen, Hand& hand, std::string_view uriList,
                   const std::vector<std::string>& actions, const EnvironmentChanges& environment)
    : m_hand(hand), m_program(SourceProgram(screen, m_folder, uriList, actions, environment)),
      m_source(kSource)
{
    if (!AwaitWord("ready"))
        throw std::runtime_error("nothing to drag from: " + ReadFile(m_folder / "log"));
}

FileDrag::~FileDrag()
{
    if (m_isCarrying)
        m_hand.Release();
}

void FileDrag::CarryTo(Point point)
{
    if (!m_isCarrying) {
        m_hand.MoveTo(m_source);
        m_hand.Press();
        m_pointer = {m_source.x + kFirstStep.x, m_source.y + kFirstStep.y};
        m_hand.MoveTo(m_pointer);
        m_isCarrying = true;
    }
    const Point from = m_pointer;
    for (int step = 1; step <= kSteps; ++step) {
        m_hand.MoveTo({from.x + (point.x - from.x) * step / kSteps,
                       from.y + (point.y - from.y) * step / kSteps});
    }
    m_pointer = point;
}

bool FileDrag::AwaitAnswer(std::string_view action) const
{
    return Eventually([&] { return LastOf("over") == action; }, 5s);
}

bool FileDrag::AwaitQuestion() const
{
    return AwaitWord("asked");
}

void FileDrag::Kill()
{
    m_program.Signal(SIGKILL);
    m_program.WaitForExit(5s);
}

std::string FileDrag::Drop()
{
    m_hand.Release();
    m_isCarrying = false;
    AwaitWord("dropped");
    return LastOf("dropped");
}

bool FileDrag::AwaitWord(std::string_view word) const
{
    return Eventually([&] { return ReadFile(m_folder / "log").find(word) != std::string::npos; },
                      10s);
}

std::string FileDrag::LastOf(std::string_view word) const
{
    std::istringstream lines(ReadFile(m_folder / "log"));
    std::string last = "none";
    std::string said;
    std::string action;
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        words >> said >> action;
        if (said == word)
            last = action;
    }
    return last;
}

std::string FileUri(const std::filesystem::path& path)
{
    std::ostringstream uri;
    uri << "file://" << std::uppercase << std::hex;
    for (const char character : path.native()) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte < 0x80 && (std::isalnum(byte) != 0 ||
                            std::string_view("/-._~").find(character) != std::string_view::npos))
            uri << character;
        else
            uri << '%' << int{byte} / 16 << int{byte} % 16;
    }
    return uri.str();
}

} // namespace lantern::test
