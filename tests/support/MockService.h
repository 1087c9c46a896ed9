// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SessionBus.h"

namespace lantern::test {

// A service on a bus, played by python-dbusmock, which notes each call.
class MockService {
public:
    MockService(const SessionBus& bus, std::string name, std::string path, std::string interface);
    // One that a template of python-dbusmock describes, with all its methods.
    MockService(const SessionBus& bus, const std::filesystem::path& description);

    // A method with the signatures of what it takes and gives. The answer is a line of Python that
    // sets `ret`.
    void Add(const std::string& method, const std::string& takes, const std::string& gives,
             const std::string& answer) const;
    void AddTo(const std::string& interface, const std::string& method, const std::string& takes,
               const std::string& gives, const std::string& answer) const;

    std::string Log() const { return ReadFile(m_folder / "log"); }
    int Count(const std::string& call) const; // in the log

private:
    EnvironmentChanges m_environment;
    std::string m_name;
    std::string m_path;
    std::string m_interface;
    ScratchFolder m_folder;
    std::unique_ptr<Process> m_process;
};

} // namespace lantern::test
