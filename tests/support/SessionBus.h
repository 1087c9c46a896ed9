// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Process.h"

#include <memory>
#include <string>

namespace lantern::test {

// A bus of a user's session, with nobody on it.
class SessionBus {
public:
    SessionBus();

    const std::string& Address() const { return m_address; }
    EnvironmentChanges Environment() const { return {{"DBUS_SESSION_BUS_ADDRESS", m_address}}; }
    Process& Daemon() { return *m_daemon; }

private:
    ScratchFolder m_folder;
    std::string m_address;
    std::unique_ptr<Process> m_daemon;
};

} // namespace lantern::test
