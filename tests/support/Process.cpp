// SPDX-License-Identifier: GPL-3.0-or-later
#include "Process.h"

#include <algorithm>
#include <csignal>
#include <ctime>
#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace lantern::test {
namespace {

constexpr int kKeptDescriptor = 7;

std::vector<std::string> ChangedEnvironment(const EnvironmentChanges& changes)
{
    std::vector<std::string> result;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string text = *entry;
        const std::string name = text.substr(0, text.find('='));
        const bool isChanged = std::any_of(changes.begin(), changes.end(), [&](const auto& change) {
            return change.first == name;
        });
        if (!isChanged)
            result.push_back(text);
    }
    for (auto change = changes.begin(); change != changes.end(); ++change) {
        // Of several changes of one name the last counts.
        const auto isSame = [&](const auto& later) { return later.first == change->first; };
        if (change->second && std::none_of(change + 1, changes.end(), isSame))
            result.push_back(change->first + "=" + *change->second);
    }
    return result;
}

std::vector<char*> Pointers(std::vector<std::string>& texts)
{
    std::vector<char*> result;
    result.reserve(texts.size() + 1);
    for (std::string& text : texts)
        result.push_back(text.data());
    result.push_back(nullptr);
    return result;
}

// Between fork and exec in a program with threads: system calls only.
[[noreturn]] void BecomeChild(char* const* arguments, char* const* environment, int log, int kept)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    setpgid(0, 0);
    const int nothing = open("/dev/null", O_RDONLY);
    dup2(nothing, STDIN_FILENO);
    dup2(log, STDOUT_FILENO);
    dup2(log, STDERR_FILENO);
    if (kept >= 0)
        dup2(kept, kKeptDescriptor);
    execvpe(arguments[0], arguments, environment);
    _exit(127);
}

} // namespace

Process::Process(const Command& command)
{
    std::vector<std::string> arguments = command.arguments;
    std::vector<std::string> environment = ChangedEnvironment(command.environment);
    const std::vector<char*> argumentPointers = Pointers(arguments);
    const std::vector<char*> environmentPointers = Pointers(environment);
    const int log = open(command.log.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);

    m_startedAt = Clock::now();
    m_id = fork();
    if (m_id == 0)
        BecomeChild(argumentPointers.data(), environmentPointers.data(), log,
                    command.keptDescriptor);
    if (log >= 0)
        close(log);
    if (m_id < 0)
        throw std::system_error(errno, std::generic_category(), "fork");
}

Process::~Process()
{
    if (IsRunning()) {
        Signal(SIGKILL);
        WaitForExit(5s);
    }
}

bool Process::IsRunning()
{
    if (m_exitCode)
        return false;
    int status = 0;
    if (waitpid(m_id, &status, WNOHANG) != m_id)
        return true;
    m_exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return false;
}

std::optional<int> Process::WaitForExit(Clock::duration atMost)
{
    Eventually([&] { return !IsRunning(); }, atMost, 2ms);
    return m_exitCode;
}

void Process::Signal(int number)
{
    if (IsRunning())
        kill(m_id, number);
}

int Process::End(Clock::duration atMost)
{
    Signal(SIGTERM);
    if (!WaitForExit(atMost)) {
        Signal(SIGKILL);
        WaitForExit(5s);
    }
    return m_exitCode.value_or(-1);
}

double Process::ProcessorSeconds() const
{
    clockid_t clock = {};
    timespec time = {};
    if (clock_getcpuclockid(m_id, &clock) != 0 || clock_gettime(clock, &time) != 0)
        return 0.0;
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

long Process::ResidentKibibytes() const
{
    std::ifstream status("/proc/" + std::to_string(m_id) + "/status");
    std::string word;
    long kibibytes = 0;
    while (status >> word) {
        if (word == "VmRSS:")
            status >> kibibytes;
    }
    return kibibytes;
}

std::string OutputOf(const Process::Command& command, Clock::duration atMost)
{
    const ScratchFolder folder;
    Process::Command logged = command;
    logged.log = folder / "output";
    Process process(logged);
    const std::optional<int> code = process.WaitForExit(atMost);
    std::string output = ReadFile(logged.log);
    EXPECT_EQ(code, 0) << command.arguments.front() << ": " << output;
    return output;
}

std::string ReadFile(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}

void WriteFile(const std::filesystem::path& path, std::string_view bytes)
{
    std::ofstream file(path, std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!file)
        throw std::runtime_error("cannot write " + path.string());
}

ScratchFolder::ScratchFolder()
{
    std::string name = (std::filesystem::temp_directory_path() / "lantern-test.XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr)
        throw std::system_error(errno, std::generic_category(), "mkdtemp");
    m_path = name;
}

ScratchFolder::~ScratchFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

std::filesystem::path ScratchFolder::PrivateFolder(const std::string& name) const
{
    std::filesystem::create_directories(m_path / name);
    std::filesystem::permissions(m_path / name, std::filesystem::perms::owner_all);
    return m_path / name;
}

} // namespace lantern::test
