// SPDX-License-Identifier: GPL-3.0-or-later
#include "CommandLink.h"
#include "ActivationToken.h"
#include "InstanceLock.h"
#include "PathText.h"
#include "fDDE.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QThread>

#include <cstring>
#include <fcntl.h>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

namespace lantern {
namespace {

using ::testing::ElementsAre;

TEST(CommandText, EachUnitIsFourUpperCaseDigits)
{
    EXPECT_EQ(EncodeCommand(QStringLiteral("ab.cdg")), QByteArray("00610062002E006300640067"));
    EXPECT_EQ(EncodeCommand(QString()), QByteArray());
    EXPECT_EQ(EncodeCommand(QStringLiteral(u"漢")), QByteArray("6F22"));
    EXPECT_EQ(EncodeCommand(QStringLiteral(u"🎤")), QByteArray("D83CDFA4"));
}

TEST(CommandText, DecodingGivesBackAnyText)
{
    std::mt19937 random(11);
    for (int round = 0; round < 2000; ++round) {
        QString text;
        for (auto length = random() % 40; length > 0; --length)
            text += QChar(static_cast<char16_t>(random()));
        ASSERT_EQ(DecodeCommand(EncodeCommand(text)), text);
    }
    const QString noText = TextFromNative("caf\xE9");
    EXPECT_EQ(DecodeCommand(EncodeCommand(noText)), noText);
}

TEST(CommandText, AShortLastGroupIsReadAsFarAsItGoes)
{
    EXPECT_EQ(DecodeCommand("006100"), QStringLiteral("a") + QChar(u'\0'));
    EXPECT_EQ(DecodeCommand("006162"), QStringLiteral("a") + QChar(u'\x62'));
    EXPECT_EQ(DecodeCommand("7"), QStringLiteral(u"\u0007"));
}

TEST(CommandText, LowerCaseDigitsAreDigitsToo)
{
    EXPECT_EQ(DecodeCommand("6f22"), QStringLiteral(u"漢"));
}

TEST(CommandText, WhatIsNoCommandIsRefused)
{
    EXPECT_EQ(ReceivedCommand("0061 062"), std::nullopt);
    EXPECT_EQ(ReceivedCommand("006G"), std::nullopt);
    EXPECT_EQ(ReceivedCommand(QByteArray(4, '\0')), std::nullopt);
    EXPECT_EQ(ReceivedCommand(QByteArray(kLongestCommand + 1, '0')), std::nullopt);
    EXPECT_TRUE(ReceivedCommand(QByteArray(kLongestCommand, '0')).has_value());
    EXPECT_EQ(ReceivedCommand(""), QString());
}

class Recorder : public CommandHost {
public:
    void TakeFocus(const QByteArray& activationToken) override
    {
        ++focused;
        tokens.append(activationToken);
    }
    void OpenMedia(const QString& commandText) override
    {
        EXPECT_EQ(QThread::currentThread(), QCoreApplication::instance()->thread());
        opened.append(commandText);
        if (const auto act = std::exchange(whileOpening, nullptr))
            act();
        closed.append(commandText);
    }

    int focused = 0;
    QByteArrayList tokens;
    QStringList opened;
    QStringList closed;
    std::function<void()> whileOpening; // once
};

class CommandLinkTest : public ::testing::Test {
protected:
    CommandLinkTest() : m_lock(m_folder.path().toUtf8())
    {
        EXPECT_EQ(m_lock.Take(), LockResult::Taken);
    }

    static bool WaitUntil(const std::function<bool()>& done, int limitMs = 5000)
    {
        const QDeadlineTimer deadline(limitMs);
        while (!deadline.hasExpired()) {
            if (done())
                return true;
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        }
        return false;
    }

    int Connected() const
    {
        const int descriptor = socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0);
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        const QByteArray path = m_lock.LinkPath();
        std::memcpy(address.sun_path, path.constData(), static_cast<std::size_t>(path.size()));
        if (connect(descriptor, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0)
            return descriptor;
        close(descriptor);
        return -1;
    }

    void SendRaw(const QByteArray& bytes) const
    {
        const int descriptor = Connected();
        ASSERT_GE(descriptor, 0);
        SendAndClose(descriptor, bytes);
    }

    static void SendAndClose(int descriptor, const QByteArray& bytes)
    {
        std::ignore = send(descriptor, bytes.constData(), static_cast<std::size_t>(bytes.size()),
                           MSG_NOSIGNAL);
        close(descriptor);
    }

    // What stands in the runtime folder besides the lock and what has this path.
    QStringList EntriesBeside(const QByteArray& path) const
    {
        QStringList names = QDir(m_folder.path()).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        names.removeAll(QFileInfo(QString::fromUtf8(path)).fileName());
        return names;
    }

    void Send(const QString& text) const { fDDE(m_lock.LinkPath()).ExecuteDDE(text); }

    QTemporaryDir m_folder;
    InstanceLock m_lock;
    Recorder m_host;
};

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

TEST_F(CommandLinkTest, OnlyTheUserCanReachIt)
{
    CommandLink link(m_lock, m_host);
    struct stat status = {};
    ASSERT_EQ(stat(m_lock.LinkPath().constData(), &status), 0);
    EXPECT_TRUE(S_ISSOCK(status.st_mode));
    EXPECT_EQ(status.st_mode & 0077, 0u);
}

TEST_F(CommandLinkTest, AnotherUserIsTurnedAway)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can be another user";
    CommandLink link(m_lock, m_host);
    // A way through all folders, so that the socket itself has to refuse.
    ASSERT_EQ(chmod(m_folder.path().toUtf8().constData(), 0755), 0);
    const pid_t stranger = fork();
    if (stranger == 0)
        _exit(setgid(65534) == 0 && setuid(65534) == 0 && Connected() < 0 ? errno : 0);
    int status = 0;
    ASSERT_EQ(waitpid(stranger, &status, 0), stranger);
    EXPECT_EQ(WEXITSTATUS(status), EACCES);
    EXPECT_GE(Connected(), 0) << "its own user reaches it";
}

TEST_F(CommandLinkTest, ASocketLeftBehindIsReplaced)
{
    const int stale = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    const QByteArray path = m_lock.LinkPath();
    std::memcpy(address.sun_path, path.constData(), static_cast<std::size_t>(path.size()));
    ASSERT_EQ(bind(stale, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    close(stale);

    CommandLink link(m_lock, m_host);
    EXPECT_TRUE(link.IsListening());
    Send(QStringLiteral("a.cdg"));
    EXPECT_TRUE(WaitUntil([&] { return m_host.opened.size() == 1; }));
}

TEST_F(CommandLinkTest, AFolderInTheSocketsPlaceMakesRoom)
{
    const QByteArray place = m_lock.LinkPath();
    ASSERT_EQ(mkdir(place.constData(), 0700), 0);
    {
        CommandLink link(m_lock, m_host);
        EXPECT_TRUE(link.IsListening()) << "an empty one goes";
    }
    EXPECT_TRUE(EntriesBeside(place).isEmpty());
    ASSERT_EQ(mkdir(place.constData(), 0700), 0);
    ASSERT_EQ(mkdir((place + "/kept").constData(), 0700), 0);

    CommandLink link(m_lock, m_host);
    EXPECT_TRUE(link.IsListening());
    Send(QStringLiteral("a.cdg"));
    EXPECT_TRUE(WaitUntil([&] { return m_host.opened.size() == 1; }));
    const QStringList aside = EntriesBeside(place);
    ASSERT_EQ(aside.size(), 1) << "one that holds something is moved aside";
    EXPECT_TRUE(QFile::exists(m_folder.filePath(aside.first() + QStringLiteral("/kept"))));
}

TEST_F(CommandLinkTest, AnyOtherFileInTheSocketsPlaceIsReplaced)
{
    const QByteArray place = m_lock.LinkPath();
    const auto plant = [&](int kind) {
        if (kind == 0)
            return close(open(place.constData(), O_CREAT | O_WRONLY | O_CLOEXEC, 0400));
        return kind == 1 ? symlink("/no/where", place.constData())
                         : mkfifo(place.constData(), 0600);
    };
    for (const int kind : {0, 1, 2}) {
        ASSERT_EQ(plant(kind), 0);
        CommandLink link(m_lock, m_host);
        EXPECT_TRUE(link.IsListening());
        Send(QStringLiteral("a.cdg"));
        EXPECT_TRUE(WaitUntil([&] { return m_host.opened.size() == kind + 1; }));
    }
}

// Later starts would hand their tracks to nobody.
TEST_F(CommandLinkTest, WhereThereCanBeNoLinkTheLockIsLetGo)
{
    QByteArray folder = m_folder.path().toUtf8() + '/';
    folder += QByteArray(100 - folder.size(), 'r');
    ASSERT_EQ(mkdir(folder.constData(), 0700), 0);
    InstanceLock lock(folder);
    ASSERT_EQ(lock.Take(), LockResult::Taken);
    const CommandLink link(lock, m_host);
    EXPECT_FALSE(link.IsListening());
    EXPECT_FALSE(lock.IsHeld());
    EXPECT_EQ(InstanceLock(folder).Take(), LockResult::Taken);
}

TEST_F(CommandLinkTest, TheLinkGoesBeforeTheLockDoesAndLeavesTheNextHoldersLinkAlone)
{
    CommandLink link(m_lock, m_host);
    m_lock.Release();
    EXPECT_FALSE(link.IsListening());

    InstanceLock nextLock(m_folder.path().toUtf8());
    ASSERT_EQ(nextLock.Take(), LockResult::Taken);
    Recorder nextHost;
    CommandLink nextLink(nextLock, nextHost);
    link.Close();
    Send(QStringLiteral("a.cdg"));
    EXPECT_TRUE(WaitUntil([&] { return nextHost.opened.size() == 1; }));
}

TEST_F(CommandLinkTest, WithoutTheLockItIsDeaf)
{
    m_lock.Release();
    CommandLink link(m_lock, m_host);
    EXPECT_FALSE(link.IsListening());
    EXPECT_NE(access(m_lock.LinkPath().constData(), F_OK), 0);
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

TEST_F(CommandLinkTest, TheLongestRuntimeFolderStillHoldsALink)
{
    QByteArray folder = m_folder.path().toUtf8() + '/';
    folder += QByteArray(64 - folder.size(), 'r');
    ASSERT_EQ(mkdir(folder.constData(), 0700), 0);
    InstanceLock lock(folder);
    ASSERT_EQ(lock.Take(), LockResult::Taken);
    EXPECT_TRUE(CommandLink(lock, m_host).IsListening());
}

} // namespace
} // namespace lantern
