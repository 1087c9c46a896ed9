// SPDX-License-Identifier: GPL-3.0-or-later
// The socket's place in the runtime folder: who may reach it, what else may stand there, and whose
// it is.
#include "LinkRoom.h"

#include <QFile>

#include <cstring>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

namespace lantern::test {
namespace {

using LinkPlaceTest = LinkRoom;

TEST_F(LinkPlaceTest, OnlyTheUserCanReachIt)
{
    CommandLink link(m_lock, m_host);
    struct stat status = {};
    ASSERT_EQ(stat(m_lock.LinkPath().constData(), &status), 0);
    EXPECT_TRUE(S_ISSOCK(status.st_mode));
    EXPECT_EQ(status.st_mode & 0077, 0u);
}

TEST_F(LinkPlaceTest, AnotherUserIsTurnedAway)
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

TEST_F(LinkPlaceTest, AStartLeavesNothingButItsLink)
{
    for (int start = 0; start < 2; ++start) {
        CommandLink link(m_lock, m_host);
        EXPECT_TRUE(link.IsListening());
    }
    EXPECT_TRUE(EntriesBeside(m_lock.LinkPath()).isEmpty());
}

TEST_F(LinkPlaceTest, ASocketLeftBehindIsReplaced)
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
    EXPECT_TRUE(EntriesBeside(path).isEmpty());
}

TEST_F(LinkPlaceTest, AFolderInTheSocketsPlaceMakesRoom)
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

TEST_F(LinkPlaceTest, AnyOtherFileInTheSocketsPlaceIsReplaced)
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
TEST_F(LinkPlaceTest, WhereThereCanBeNoLinkTheLockIsLetGo)
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

TEST_F(LinkPlaceTest, TheLinkGoesBeforeTheLockDoesAndLeavesTheNextHoldersLinkAlone)
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

TEST_F(LinkPlaceTest, WithoutTheLockItIsDeaf)
{
    m_lock.Release();
    CommandLink link(m_lock, m_host);
    EXPECT_FALSE(link.IsListening());
    EXPECT_NE(access(m_lock.LinkPath().constData(), F_OK), 0);
}

TEST_F(LinkPlaceTest, TheLongestRuntimeFolderStillHoldsALink)
{
    QByteArray folder = m_folder.path().toUtf8() + '/';
    folder += QByteArray(64 - folder.size(), 'r');
    ASSERT_EQ(mkdir(folder.constData(), 0700), 0);
    InstanceLock lock(folder);
    ASSERT_EQ(lock.Take(), LockResult::Taken);
    EXPECT_TRUE(CommandLink(lock, m_host).IsListening());
}

} // namespace
} // namespace lantern::test
