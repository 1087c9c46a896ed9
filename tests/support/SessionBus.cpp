// SPDX-License-Identifier: GPL-3.0-or-later
#include "SessionBus.h"

#include <stdexcept>

namespace lantern::test {

SessionBus::SessionBus() : m_address("unix:path=" + (m_folder / "bus").string())
{
    // Not the system's own configuration, by which it would start services for whoever asks. But
    // with a session's patience for answers: else it refuses calls while the machine stalls.
    WriteFile(m_folder / "bus.conf",
              "<busconfig><type>session</type><listen>" + m_address +
                  "</listen><policy context=\"default\"><allow send_destination=\"*\"/>"
                  "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy>"
                  "<limit name=\"max_replies_per_connection\">50000</limit></busconfig>");
    m_daemon = std::make_unique<Process>(
        Process::Command{.arguments = {"dbus-daemon", "--nofork", "--nopidfile",
                                       "--config-file=" + (m_folder / "bus.conf").string()},
                         .log = m_folder / "bus.log"});
    if (!Eventually([&] { return std::filesystem::exists(m_folder / "bus"); }, 20s))
        throw std::runtime_error("no session bus: " + ReadFile(m_folder / "bus.log"));
}

} // namespace lantern::test
