// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Moment.h"

#include <filesystem>
#include <optional>
#include <string>
#include <sys/types.h>
#include <utility>
#include <vector>

namespace lantern::test {

// Names to set in the environment of a child, or to remove from it.
using EnvironmentChanges = std::vector<std::pair<std::string, std::optional<std::string>>>;

// A child process. It has no standard input, writes what it says to a file, and does not outlive
// this object, nor the thread that started it.
class Process {
public:
    struct Command {
        std::vector<std::string> arguments; // the program first, looked up in PATH
        EnvironmentChanges environment = {};
        std::filesystem::path log = "/dev/null";
        int keptDescriptor = -1; // left open for the child, as number 7
    };

    explicit Process(const Command& command);
    ~Process(); // kills it if it still runs
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    pid_t Id() const { return m_id; }
    Moment StartedAt() const { return m_startedAt; }

    bool IsRunning();
    // The exit code, or 128 plus the signal that ended it; nothing if it still runs.
    std::optional<int> WaitForExit(Clock::duration atMost);
    void Signal(int number);
    // Asks it to end, and kills it if it has not within the time.
    int End(Clock::duration atMost = 3s);

    double ProcessorSeconds() const; // used so far, all threads
    long ResidentKibibytes() const;

private:
    pid_t m_id = -1;
    Moment m_startedAt;
    std::optional<int> m_exitCode;
};

// Runs a command to its end and returns what it printed. A failure fails the running test.
std::string OutputOf(const Process::Command& command, Clock::duration atMost = 30s);

std::string ReadFile(const std::filesystem::path& path);
void WriteFile(const std::filesystem::path& path, std::string_view bytes);

// A folder of its own that goes away with the object.
class ScratchFolder {
public:
    ScratchFolder();
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    const std::filesystem::path& Path() const { return m_path; }
    std::filesystem::path operator/(const std::filesystem::path& name) const
    {
        return m_path / name;
    }
    // A folder in it that only its owner may enter, as run-time folders have to be.
    std::filesystem::path PrivateFolder(const std::string& name) const;

private:
    std::filesystem::path m_path;
};

} // namespace lantern::test
