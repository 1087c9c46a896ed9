// SPDX-License-Identifier: GPL-3.0-or-later
#include "InstanceLock.h"

#include <QDir>
#include <QTemporaryDir>

#include <cstdio>
#include <cstring>
#include <functional>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace lantern {
namespace {

class InstanceLockTest : public ::testing::Test {
protected:
    QByteArray Folder() const { return m_folder.path().toUtf8(); }

    QTemporaryDir m_folder;
};

TEST_F(InstanceLockTest, TheFirstTakesItAndALaterOneFindsItHeld)
{
    InstanceLock first(Folder());
    InstanceLock later(Folder());
    EXPECT_EQ(first.Take(), LockResult::Taken);
    EXPECT_EQ(later.Take(), LockResult::HeldByAnother);
    EXPECT_TRUE(first.IsHeld());
    EXPECT_FALSE(later.IsHeld());
}

TEST_F(InstanceLockTest, AfterTheReleaseTheNextTakesIt)
{
    InstanceLock first(Folder());
    ASSERT_EQ(first.Take(), LockResult::Taken);
    first.Release();
    InstanceLock later(Folder());
    EXPECT_EQ(later.Take(), LockResult::Taken);
    EXPECT_FALSE(first.IsHeld());
}

TEST_F(InstanceLockTest, WhatItProtectsGoesFirst)
{
    InstanceLock lock(Folder());
    ASSERT_EQ(lock.Take(), LockResult::Taken);
    bool wasHeld = false;
    lock.BeforeRelease = [&] { wasHeld = lock.IsHeld(); };
    lock.Release();
    EXPECT_TRUE(wasHeld);
}

TEST_F(InstanceLockTest, WhoDoesNotHoldItReleasesNothing)
{
    InstanceLock lock(Folder());
    int calls = 0;
    lock.BeforeRelease = [&] { ++calls; };
    lock.Release();
    EXPECT_EQ(calls, 0);
    ASSERT_EQ(lock.Take(), LockResult::Taken);
    lock.Release();
    lock.Release();
    EXPECT_EQ(calls, 1);
}

TEST_F(InstanceLockTest, WhoFindsItHeldKeepsNothingOpen)
{
    const auto countOpen = [] { return QDir(QStringLiteral("/proc/self/fd")).count(); };
    InstanceLock first(Folder());
    ASSERT_EQ(first.Take(), LockResult::Taken);
    InstanceLock later(Folder());
    const auto before = countOpen();
    EXPECT_EQ(later.Take(), LockResult::HeldByAnother);
    EXPECT_EQ(countOpen(), before);
    first.Release();
    EXPECT_EQ(countOpen(), before - 1);
}

TEST_F(InstanceLockTest, AChildProcessDoesNotKeepIt)
{
    const pid_t child = [&] {
        InstanceLock lock(Folder());
        EXPECT_EQ(lock.Take(), LockResult::Taken);
        const pid_t pid = fork();
        if (pid == 0)
            execlp("sleep", "sleep", "60", nullptr);
        usleep(200'000);
        return pid;
    }();
    ASSERT_GT(child, 0);
    InstanceLock later(Folder());
    EXPECT_EQ(later.Take(), LockResult::Taken);
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
}

TEST_F(InstanceLockTest, WithoutAUsableFileThereIsNoLock)
{
    EXPECT_EQ(InstanceLock(QByteArray()).Take(), LockResult::Unavailable);
    EXPECT_EQ(InstanceLock(Folder() + "/none").Take(), LockResult::Unavailable);
}

// A folder, a link that leads nowhere, a socket and a pipe.
TEST_F(InstanceLockTest, WhateverStandsInTheFilesPlaceOneStartIsTheFirst)
{
    const QByteArray place = Folder() + "/Lyric Lantern CDG Player";
    const auto plantSocket = [&] {
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        std::memcpy(address.sun_path, place.constData(), static_cast<std::size_t>(place.size()));
        const int descriptor = socket(AF_UNIX, SOCK_STREAM, 0);
        const int result =
            bind(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address);
        close(descriptor);
        return result;
    };
    const std::vector<std::function<int()>> plants = {
        [&] { return mkdir(place.constData(), 0700); },
        [&] { return symlink("/no/where", place.constData()); },
        plantSocket,
        [&] { return mkfifo(place.constData(), 0600); },
    };
    for (const auto& plant : plants) {
        ASSERT_EQ(plant(), 0);
        InstanceLock first(Folder());
        InstanceLock later(Folder());
        EXPECT_EQ(first.Take(), LockResult::Taken);
        EXPECT_EQ(later.Take(), LockResult::HeldByAnother);
        first.Release();
        EXPECT_EQ(later.Take(), LockResult::Taken);
        ASSERT_EQ(remove(place.constData()), 0) << "it is left where it was";
    }
}

TEST_F(InstanceLockTest, TheLinkIsNamedAfterTheProgramAndItsTopic)
{
    EXPECT_EQ(InstanceLock("/run/user/1").LinkPath(),
              QByteArray("/run/user/1/Lyric Lantern CDG Player|SendCommand"));
}

} // namespace
} // namespace lantern
