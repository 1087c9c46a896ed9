// SPDX-License-Identifier: GPL-3.0-or-later
#include "PulseConnection.h"

#include "Moment.h"

#include <QTemporaryDir>

#include <array>
#include <cstring>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace lantern::test {
namespace {

// A door behind which there is no sound server: whoever comes is counted and sent away.
class ClosedDoor {
public:
    ClosedDoor() : m_socket(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        const QByteArray path = m_folder.filePath(QStringLiteral("door")).toLocal8Bit();
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        std::strncpy(address.sun_path, path.constData(), sizeof(address.sun_path) - 1);
        EXPECT_EQ(bind(m_socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
        EXPECT_EQ(listen(m_socket, 10), 0);
        qputenv("PULSE_SERVER", "unix:" + path);
    }
    ~ClosedDoor()
    {
        qunsetenv("PULSE_SERVER");
        close(m_socket);
    }
    ClosedDoor(const ClosedDoor&) = delete;
    ClosedDoor& operator=(const ClosedDoor&) = delete;

    // How often somebody came within the time.
    int Count(std::chrono::milliseconds time) const
    {
        int count = 0;
        const Moment end = Clock::now() + time;
        for (Moment now = Clock::now(); now < end; now = Clock::now()) {
            pollfd waiting = {m_socket, POLLIN, 0};
            if (poll(&waiting, 1, static_cast<int>(Milliseconds(end - now)) + 1) > 0) {
                close(accept(m_socket, nullptr, nullptr));
                ++count;
            }
        }
        return count;
    }

private:
    const QTemporaryDir m_folder;
    const int m_socket;
};

// After 100, 300, 700 and 1500 milliseconds, and then every three seconds.
TEST(PulseConnection, AServerThatIsAwayIsLookedForSoonAndThenLessOften)
{
    const ClosedDoor door;
    PulseConnection connection([] {});
    connection.Start();
    const int count = door.Count(2500ms);
    EXPECT_GE(count, 4);
    EXPECT_LE(count, 5);
    EXPECT_TRUE(connection.Devices().empty());
}

} // namespace
} // namespace lantern::test
