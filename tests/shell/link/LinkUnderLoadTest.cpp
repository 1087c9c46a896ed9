// SPDX-License-Identifier: GPL-3.0-or-later
// Commands that come at a bad moment: while a track is being opened, as the link goes, or more of
// them than anybody waits for.
#include "LinkRoom.h"

#include <QThread>

#include <atomic>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

namespace lantern::test {
namespace {

using LinkUnderLoadTest = LinkRoom;

QString Track(int number)
{
    return QStringLiteral("%1.cdg").arg(number);
}

TEST_F(LinkUnderLoadTest, OfTooManyCommandsTheLastOnesAreKept)
{
    CommandLink link(m_lock, m_host);
    m_host.whileOpening = [&] {
        for (int i = 1; i <= 20; ++i) {
            Send(Track(i));
            WaitUntil([] { return false; }, 10);
        }
    };
    Send(Track(0));
    EXPECT_TRUE(WaitUntil([&] { return m_host.closed.contains(Track(20)); }));
    QStringList expected = {Track(0)};
    for (int i = 5; i <= 20; ++i)
        expected.append(Track(i));
    EXPECT_EQ(m_host.opened, expected);
}

TEST_F(LinkUnderLoadTest, WhatWaitsAsTheLinkIsClosedIsNotOpened)
{
    CommandLink link(m_lock, m_host);
    m_host.whileOpening = [&] {
        Send(Track(1));
        WaitUntil([] { return false; }, 50);
        link.Close();
    };
    Send(Track(0));
    EXPECT_TRUE(WaitUntil([&] { return !m_host.closed.isEmpty(); }));
    WaitUntil([] { return false; }, 50);
    EXPECT_EQ(m_host.opened, QStringList{Track(0)});
}

// All of it has to be there in the one moment that is left.
TEST_F(LinkUnderLoadTest, TheLongestCommandIsNotTooLateEither)
{
    CommandLink link(m_lock, m_host);
    const int slow = Connected();
    ASSERT_GE(slow, 0);
    WaitUntil([] { return false; }, 50);
    const QString longest(kLongestCommand / 4, u'x');
    m_host.whileOpening = [&] {
        SendAndClose(slow, EncodeCommand(longest));
        QThread::msleep(CommandLink::kConversationMs + 100);
    };
    Send(Track(0));
    EXPECT_TRUE(WaitUntil([&] { return m_host.opened.size() == 2; }));
    EXPECT_EQ(m_host.opened.back(), longest);
}

TEST_F(LinkUnderLoadTest, ALockThatOutlivesItsLinkIsReleasedAsBefore)
{
    {
        CommandLink link(m_lock, m_host);
        EXPECT_TRUE(m_lock.BeforeRelease);
    }
    EXPECT_FALSE(m_lock.BeforeRelease);
    m_lock.Release();
    EXPECT_EQ(InstanceLock(m_folder.path().toUtf8()).Take(), LockResult::Taken);
}

// The other end hangs up as soon as it is reached; now and then that comes before the bytes do.
TEST_F(LinkUnderLoadTest, ASenderThatIsHungUpOnKnowsIt)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    const QByteArray path = m_lock.LinkPath();
    std::copy(path.begin(), path.end(), std::begin(address.sun_path));
    const int server = socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    ASSERT_EQ(bind(server, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(listen(server, 10), 0);
    std::atomic<bool> ends = false;
    std::thread rude([&] {
        while (!ends) {
            const int caller = accept4(server, nullptr, nullptr, SOCK_CLOEXEC);
            if (caller >= 0)
                close(caller);
        }
    });
    fDDE sender(path);
    const bool isTold = WaitUntil([&] {
        sender.ExecuteDDE(Track(1));
        return !sender.IsSent();
    });
    ends = true;
    rude.join();
    close(server);
    EXPECT_TRUE(isTold);
}

} // namespace
} // namespace lantern::test
