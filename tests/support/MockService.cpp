// SPDX-License-Identifier: GPL-3.0-or-later
#include "MockService.h"

#include <stdexcept>

namespace lantern::test {

MockService::MockService(const SessionBus& bus, std::string name, std::string path,
                         std::string interface)
    : m_environment(bus.Environment()), m_name(std::move(name)), m_path(std::move(path)),
      m_interface(std::move(interface))
{
    m_process = std::make_unique<Process>(
        Process::Command{.arguments = {"/usr/bin/python3", "-m", "dbusmock", "--session", m_name,
                                       m_path, m_interface},
                         .environment = m_environment,
                         .log = m_folder / "log"});
}

MockService::MockService(const SessionBus& bus, const std::filesystem::path& description)
    : m_environment(bus.Environment())
{
    m_process = std::make_unique<Process>(
        Process::Command{.arguments = {"/usr/bin/python3", "-B", "-m", "dbusmock", "--session",
                                       "--template", description.string()},
                         .environment = m_environment,
                         .log = m_folder / "log"});
}

void MockService::Add(const std::string& method, const std::string& takes, const std::string& gives,
                      const std::string& answer) const
{
    AddTo(m_interface, method, takes, gives, answer);
}

void MockService::AddTo(const std::string& interface, const std::string& method,
                        const std::string& takes, const std::string& gives,
                        const std::string& answer) const
{
    const auto isAdded = [&] {
        Process add({.arguments = {"gdbus", "call", "--session", "--dest", m_name, "--object-path",
                                   m_path, "--method", "org.freedesktop.DBus.Mock.AddMethod",
                                   interface, method, takes, gives, answer},
                     .environment = m_environment});
        return add.WaitForExit(10s) == 0;
    };
    if (!Eventually(isAdded, 20s, 50ms))
        throw std::runtime_error(m_name + " could not be played: " + Log());
}

int MockService::Count(const std::string& call) const
{
    const std::string log = Log();
    int count = 0;
    for (std::size_t at = 0; (at = log.find(call, at)) != std::string::npos; ++at)
        ++count;
    return count;
}

} // namespace lantern::test
