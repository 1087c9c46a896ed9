// SPDX-License-Identifier: GPL-3.0-or-later
#include "StartNotice.h"

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace lantern {
namespace {

using namespace std::chrono_literals;

// Something that takes connections as a display does, and never says a word.
class SilentDisplay {
public:
    SilentDisplay()
    {
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        // A leading zero: a name that is no file, and goes with the process.
        const std::string path = std::string(1, '\0') + "/tmp/.X11-unix/X" + m_number;
        std::memcpy(address.sun_path, path.data(), path.size());
        const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + path.size());
        EXPECT_EQ(bind(m_socket, reinterpret_cast<const sockaddr*>(&address), size), 0);
        EXPECT_EQ(listen(m_socket, 1), 0);
    }
    ~SilentDisplay() { close(m_socket); }

    std::string Name() const { return ":" + m_number; }
    bool WasAsked() const { return accept4(m_socket, nullptr, nullptr, SOCK_NONBLOCK) >= 0; }

private:
    const std::string m_number = std::to_string(20'000 + getpid() % 20'000);
    const int m_socket = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
};

TEST(StartNotice, ADisplayThatDoesNotAnswerIsNotWaitedForLong)
{
    const SilentDisplay display;
    setenv("DISPLAY", display.Name().c_str(), 1);
    setenv("DESKTOP_STARTUP_ID", "start", 1);
    const auto began = std::chrono::steady_clock::now();
    EndStartNotice();
    EXPECT_LT(std::chrono::steady_clock::now() - began, 5s);
    EXPECT_TRUE(display.WasAsked());
}

TEST(StartNotice, NoDisplayIsAskedForAStartThatNobodyWaitsFor)
{
    const SilentDisplay display;
    setenv("DISPLAY", display.Name().c_str(), 1);
    unsetenv("DESKTOP_STARTUP_ID");
    EndStartNotice();
    setenv("DESKTOP_STARTUP_ID", std::string(100'000, 'a').c_str(), 1);
    EndStartNotice();
    EXPECT_FALSE(display.WasAsked());
}

} // namespace
} // namespace lantern
