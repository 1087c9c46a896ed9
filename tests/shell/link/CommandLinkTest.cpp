// SPDX-License-Identifier: GPL-3.0-or-later
#include "LinkRoom.h"

#include "ActivationToken.h"

#include <QThread>

#include <gmock/gmock.h>
#include <sys/socket.h>
#include <unistd.h>

namespace lantern::test {
namespace {

using ::testing::ElementsAre;

using CommandLinkTest = LinkRoom;

TEST_F(CommandLinkTest, ACommandBringsTheWindowForwardAndOpensTheTrack)
{
    CommandLink link(m_lock, m_host);
    Send(QStringLiteral("\"/m/漢 song.cdg\""));
    EXPECT_TRUE(WaitUntil([&] { return !m_host.opened.isEmpty(); }));
    EXPECT_EQ(m_host.focused, 1);
    EXPECT_THAT(m_host.opened, ElementsAre(QStringLiteral("\"/m/漢 song.cdg\"")));
}

TEST_F(CommandLinkTest, AnEmptyCommandOnlyBringsItForward)
{
    CommandLink link(m_lock, m_host);
    Send(QString());
    EXPECT_TRUE(WaitUntil([&] { return m_host.focused == 1; }));
    EXPECT_TRUE(m_host.opened.isEmpty());
}

TEST_F(CommandLinkTest, TheWindowComesForwardByTheTokenOfTheCommandOnce)
{
    CommandLink link(m_lock, m_host);
    LeaveActivationToken(m_lock.LinkPath(), "token");
    Send(QString());
    EXPECT_TRUE(WaitUntil([&] { return m_host.focused == 1; }));
    Send(QString());
    EXPECT_TRUE(WaitUntil([&] { return m_host.focused == 2; }));
    EXPECT_THAT(m_host.tokens, ElementsAre("token", ""));
}

TEST_F(CommandLinkTest, CommandsArriveInTheOrderOfTheirSenders)
{
    CommandLink link(m_lock, m_host);
    Send(QStringLiteral("first.cdg"));
    Send(QStringLiteral("second.cdg"));
    EXPECT_TRUE(WaitUntil([&] { return m_host.opened.size() == 2; }));
    EXPECT_THAT(m_host.opened,
                ElementsAre(QStringLiteral("first.cdg"), QStringLiteral("second.cdg")));
}

TEST_F(CommandLinkTest, ACommandThatComesWhileATrackIsBeingOpenedWaitsForItsTurn)
{
    CommandLink link(m_lock, m_host);
    m_host.whileOpening = [&] {
        Send(QStringLiteral("second.cdg"));
        WaitUntil([&] { return m_host.opened.size() == 2; }, 300);
        EXPECT_EQ(m_host.opened.size(), 1);
    };
    Send(QStringLiteral("first.cdg"));
    EXPECT_TRUE(WaitUntil([&] { return m_host.closed.size() == 2; }));
    EXPECT_THAT(m_host.closed,
                ElementsAre(QStringLiteral("first.cdg"), QStringLiteral("second.cdg")));
}

TEST_F(CommandLinkTest, TheLinkMayGoWhileItsCommandRuns)
{
    auto link = std::make_unique<CommandLink>(m_lock, m_host);
    m_host.whileOpening = [&] { link.reset(); };
    Send(QStringLiteral("first.cdg"));
    Send(QStringLiteral("second.cdg"));
    EXPECT_TRUE(WaitUntil([&] { return link == nullptr; }));
    EXPECT_EQ(m_host.opened.size(), 1);
}

TEST_F(CommandLinkTest, TheLongestCommandPassesAndALongerOneDoesNot)
{
    CommandLink link(m_lock, m_host);
    const QString longest(kLongestCommand / 4, u'x');
    SendRaw(QByteArray(kLongestCommand + 4, '0'));
    Send(longest + u'y');
    Send(longest);
    EXPECT_TRUE(WaitUntil([&] { return !m_host.opened.isEmpty(); }));
    EXPECT_THAT(m_host.opened, ElementsAre(longest));
    EXPECT_EQ(m_host.focused, 1);
}

TEST_F(CommandLinkTest, AnEndlessSenderIsCutOff)
{
    CommandLink link(m_lock, m_host);
    const int descriptor = Connected();
    ASSERT_GE(descriptor, 0);
    const QByteArray block(1 << 16, '0');
    bool isCutOff = false;
    EXPECT_TRUE(WaitUntil([&] {
        const ssize_t sent = send(descriptor, block.constData(),
                                  static_cast<std::size_t>(block.size()), MSG_NOSIGNAL);
        isCutOff = isCutOff || (sent < 0 && errno != EAGAIN);
        return isCutOff;
    }));
    close(descriptor);
    EXPECT_EQ(m_host.focused, 0);
}

TEST_F(CommandLinkTest, BytesThatAreNoCommandChangeNothing)
{
    CommandLink link(m_lock, m_host);
    SendRaw("GET / HTTP/1.0\r\n");
    SendRaw(QByteArray(100, '\xFF'));
    Send(QStringLiteral("good.cdg"));
    EXPECT_TRUE(WaitUntil([&] { return !m_host.opened.isEmpty(); }));
    EXPECT_EQ(m_host.focused, 1);
}

TEST_F(CommandLinkTest, ASilentSenderHoldsUpNobodyAndIsSentAway)
{
    CommandLink link(m_lock, m_host);
    const int silent = Connected();
    ASSERT_GE(silent, 0);
    Send(QStringLiteral("good.cdg"));
    EXPECT_TRUE(WaitUntil([&] { return !m_host.opened.isEmpty(); }, 500));
    char byte = 0;
    EXPECT_TRUE(WaitUntil([&] { return recv(silent, &byte, 1, 0) == 0; }))
        << "the silent sender's conversation is ended";
    close(silent);
    EXPECT_EQ(m_host.focused, 1) << "what never ended was no command";
}

// Its time runs while a track is being opened, and then nobody listens.
TEST_F(CommandLinkTest, WhatWasSentWhileATrackWasBeingOpenedIsNotTooLate)
{
    CommandLink link(m_lock, m_host);
    const int slow = Connected();
    ASSERT_GE(slow, 0);
    WaitUntil([] { return false; }, 50);
    m_host.whileOpening = [&] {
        SendAndClose(slow, EncodeCommand(QStringLiteral("second.cdg")));
        QThread::msleep(CommandLink::kConversationMs + 100);
    };
    Send(QStringLiteral("first.cdg"));
    EXPECT_TRUE(WaitUntil([&] { return m_host.opened.size() == 2; }));
    EXPECT_THAT(m_host.opened,
                ElementsAre(QStringLiteral("first.cdg"), QStringLiteral("second.cdg")));
}

TEST_F(CommandLinkTest, CommandsThatCameWhileATrackWasBeingOpenedKeepTheirOrder)
{
    CommandLink link(m_lock, m_host);
    QStringList sent = {QStringLiteral("0.cdg")};
    m_host.whileOpening = [&] {
        for (int i = 1; i <= 12; ++i) {
            sent.append(QStringLiteral("%1.cdg").arg(i));
            Send(sent.back());
        }
    };
    Send(sent.front());
    EXPECT_TRUE(WaitUntil([&] { return m_host.opened.size() == 13; }));
    EXPECT_EQ(m_host.opened, sent);
}

TEST_F(CommandLinkTest, AThousandConnectionsDoNotKeepACommandOut)
{
    CommandLink link(m_lock, m_host);
    std::vector<int> hogs;
    EXPECT_TRUE(WaitUntil(
        [&] {
            const int descriptor = Connected();
            if (descriptor >= 0)
                hogs.push_back(descriptor);
            return hogs.size() == 900;
        },
        20000));
    WaitUntil([] { return false; }, 50);
    Send(QStringLiteral("good.cdg"));
    EXPECT_TRUE(WaitUntil([&] { return !m_host.opened.isEmpty(); }, 1000));
    for (const int descriptor : hogs)
        close(descriptor);
    EXPECT_EQ(m_host.opened.size(), 1);
}

TEST_F(CommandLinkTest, ASenderWithoutAReceiverIsSilent)
{
    Send(QStringLiteral("a.cdg"));
    fDDE sender(m_lock.LinkPath());
    sender.ExecuteDDE(QStringLiteral("a.cdg"));
    EXPECT_FALSE(sender.IsSent());
    fDDE(QByteArray()).ExecuteDDE(QStringLiteral("a.cdg"));
    fDDE(QByteArray(300, 'x')).ExecuteDDE(QStringLiteral("a.cdg"));
    EXPECT_NE(access(m_lock.LinkPath().constData(), F_OK), 0);
}

TEST_F(CommandLinkTest, ASenderKnowsWhetherTheLastCommandWentOut)
{
    CommandLink link(m_lock, m_host);
    fDDE sender(m_lock.LinkPath());
    EXPECT_FALSE(sender.IsSent());
    sender.ExecuteDDE(QString());
    EXPECT_TRUE(sender.IsSent()) << "empty text is a command, too";
    sender.ExecuteDDE(QStringLiteral("a.cdg"));
    EXPECT_TRUE(sender.IsSent());
    sender.ExecuteDDE(QString(kLongestCommand / 4 + 1, u'x'));
    EXPECT_FALSE(sender.IsSent()) << "too long to be one";
}

} // namespace
} // namespace lantern::test
