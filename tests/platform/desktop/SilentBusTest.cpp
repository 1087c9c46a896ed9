// SPDX-License-Identifier: GPL-3.0-or-later
#include "SilentBus.h"

#include "OwnedDescriptor.h"
#include "SessionBus.h"

#include <QElapsedTimer>

#include <csignal>
#include <gtest/gtest.h>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <vector>

namespace lantern {
namespace {

using namespace std::chrono_literals;

// A socket where a bus should be, which says these words in turn, each after it has heard
// something, and then nothing more.
class WouldBeBus {
public:
    explicit WouldBeBus(std::vector<std::string> words, bool isClosedAtLast = false)
        : m_socket(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_un name = {};
        name.sun_family = AF_UNIX;
        Path().copy(name.sun_path, sizeof(name.sun_path) - 1);
        EXPECT_EQ(bind(m_socket.Number(), reinterpret_cast<sockaddr*>(&name), sizeof(name)), 0);
        EXPECT_EQ(listen(m_socket.Number(), 4), 0);
        m_thread = std::thread([this, words = std::move(words), isClosedAtLast] {
            const OwnedDescriptor taken(accept(m_socket.Number(), nullptr, nullptr));
            char heard[512];
            for (const std::string& word : words) {
                if (recv(taken.Number(), heard, sizeof(heard), 0) <= 0)
                    return;
                send(taken.Number(), word.data(), word.size(), MSG_NOSIGNAL);
            }
            while (!isClosedAtLast && recv(taken.Number(), heard, sizeof(heard), 0) > 0) {
            }
        });
    }
    ~WouldBeBus()
    {
        shutdown(m_socket.Number(), SHUT_RDWR);
        m_thread.join();
    }

    QByteArray Address() const { return QByteArray::fromStdString("unix:path=" + Path()); }

private:
    std::string Path() const { return (m_folder / "bus").string(); }

    test::ScratchFolder m_folder;
    OwnedDescriptor m_socket;
    std::thread m_thread;
};

constexpr auto kAtMost = 300ms;

TEST(SilentBus, ARealBusIsNotSilent)
{
    test::SessionBus bus;
    EXPECT_FALSE(IsBusSilent(QByteArray::fromStdString(bus.Address()), 5s));
    bus.Daemon().Signal(SIGSTOP);
    EXPECT_TRUE(IsBusSilent(QByteArray::fromStdString(bus.Address()), kAtMost));
    bus.Daemon().Signal(SIGCONT);
    EXPECT_FALSE(IsBusSilent(QByteArray::fromStdString(bus.Address()), 5s));
    bus.Daemon().End();
    EXPECT_FALSE(IsBusSilent(QByteArray::fromStdString(bus.Address()), 5s));
}

TEST(SilentBus, OneThatDoesNotAnswerIsSilentWhateverItSays)
{
    const std::string flood(10'000, 'x');
    for (const std::vector<std::string>& words : std::vector<std::vector<std::string>>{
             {}, {"OK 1234\r\n"}, {"OK"}, {"junk\r\n"}, {flood}, {"OK 1\r\n", "junk"}}) {
        const WouldBeBus bus(words);
        QElapsedTimer took;
        took.start();
        EXPECT_TRUE(IsBusSilent(bus.Address(), kAtMost)) << words.size();
        EXPECT_LT(took.elapsed(), 5000);
    }
}

TEST(SilentBus, OneThatTakesNobodyIsSilent)
{
    const test::ScratchFolder folder;
    const std::string path = (folder / "bus").string();
    sockaddr_un name = {};
    name.sun_family = AF_UNIX;
    path.copy(name.sun_path, sizeof(name.sun_path) - 1);
    const OwnedDescriptor listener(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    ASSERT_EQ(bind(listener.Number(), reinterpret_cast<sockaddr*>(&name), sizeof(name)), 0);
    ASSERT_EQ(listen(listener.Number(), 0), 0);
    const QByteArray address = QByteArray::fromStdString("unix:path=" + path);
    for (int caller = 1; caller <= 3; ++caller) // until nobody more may wait
        EXPECT_TRUE(IsBusSilent(address, kAtMost)) << caller;
}

TEST(SilentBus, WhatTheToolkitSeesAtOnceIsNoSilence)
{
    const WouldBeBus closes({}, true);
    EXPECT_FALSE(IsBusSilent(closes.Address(), 5s));
    const WouldBeBus closesLater({"OK 1\r\n"}, true);
    EXPECT_FALSE(IsBusSilent(closesLater.Address(), 5s));
    const WouldBeBus rejects({"REJECTED EXTERNAL\r\n"});
    EXPECT_FALSE(IsBusSilent(rejects.Address(), 5s));
    for (const char* address : {"", "unix:path=/no/such/bus", "unix:abstract=nobody-is-there",
                                "disabled:", "tcp:host=localhost", "unix:", "unix:path="})
        EXPECT_FALSE(IsBusSilent(address, 5s)) << address;
    EXPECT_FALSE(IsBusSilent("unix:path=/" + QByteArray(200, 'x'), 5s));
}

TEST(SilentBus, OnlyASilentBusIsLeftOut)
{
    constexpr const char* kVariable = "DBUS_SESSION_BUS_ADDRESS";
    const QByteArray before = qgetenv(kVariable);
    test::SessionBus bus;
    const QByteArray address = QByteArray::fromStdString(bus.Address());
    qputenv(kVariable, address);
    LeaveSilentBusOut();
    EXPECT_EQ(qgetenv(kVariable), address);
    bus.Daemon().Signal(SIGSTOP);
    LeaveSilentBusOut();
    EXPECT_EQ(qgetenv(kVariable), "disabled:");
    qputenv(kVariable, before);
}

} // namespace
} // namespace lantern
