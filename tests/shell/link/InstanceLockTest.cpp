// SPDX-License-Identifier: GPL-3.0-or-later
#include "InstanceLock.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

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
    mkdir((Folder() + "/Lyric Lantern CDG Player").constData(), 0700);
    EXPECT_EQ(InstanceLock(Folder()).Take(), LockResult::Unavailable);
}

TEST_F(InstanceLockTest, TheLinkIsNamedAfterTheProgramAndItsTopic)
{
    EXPECT_EQ(InstanceLock("/run/user/1").LinkPath(),
              QByteArray("/run/user/1/Lyric Lantern CDG Player|SendCommand"));
}

} // namespace
} // namespace lantern
