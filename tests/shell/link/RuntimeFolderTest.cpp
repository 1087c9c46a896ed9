// SPDX-License-Identifier: GPL-3.0-or-later
#include "RuntimeFolder.h"

#include <QTemporaryDir>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace lantern {
namespace {

class RuntimeFolderTest : public ::testing::Test {
protected:
    QByteArray Path(const char* name) const { return m_temporary.path().toUtf8() + '/' + name; }
    QByteArray Own() const { return Path("lyric-lantern-") + QByteArray::number(geteuid()); }
    QByteArray Chosen(const QByteArray& userRuntimeFolder) const
    {
        return RuntimeFolder(userRuntimeFolder, m_temporary.path().toUtf8());
    }

    QTemporaryDir m_temporary;
};

TEST_F(RuntimeFolderTest, TheUsersRuntimeFolderIsTaken)
{
    mkdir(Path("run").constData(), 0700);
    EXPECT_EQ(Chosen(Path("run")), Path("run"));
}

TEST_F(RuntimeFolderTest, AFolderThatOthersMayWriteToIsNot)
{
    mkdir(Path("run").constData(), 0700);
    chmod(Path("run").constData(), 0770);
    EXPECT_EQ(Chosen(Path("run")), Own());
}

TEST_F(RuntimeFolderTest, AMissingOneIsMadeForTheUserAlone)
{
    EXPECT_EQ(Chosen(Path("run")), Path("run"));
    struct stat status = {};
    ASSERT_EQ(stat(Path("run").constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0700u);
    EXPECT_NE(access(Own().constData(), F_OK), 0) << "no other one is made";
    EXPECT_EQ(Chosen(Path("run")), Path("run")) << "the next start finds the same";
}

TEST_F(RuntimeFolderTest, WithoutOneAPrivateFolderIsMade)
{
    for (const QByteArray& unusable :
         {QByteArray(), QByteArray("run"), Path("no/ne"), Path("") + QByteArray(80, 'x')})
        EXPECT_EQ(Chosen(unusable), Own());
    struct stat status = {};
    ASSERT_EQ(stat(Own().constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0700u);
    EXPECT_EQ(Chosen({}), Own()) << "an existing one is used again";
}

// The address of a socket has no room for more.
TEST_F(RuntimeFolderTest, TheLongestOneIsTakenAndALongerOneIsNot)
{
    const QByteArray longest = Path("") + QByteArray(64 - Path("").size(), 'r');
    EXPECT_EQ(Chosen(longest), longest);
    EXPECT_EQ(Chosen(longest + 'r'), Own());
}

TEST_F(RuntimeFolderTest, AFileIsNoFolder)
{
    close(creat(Path("run").constData(), 0700));
    EXPECT_EQ(Chosen(Path("run")), Own());
}

TEST_F(RuntimeFolderTest, ALinkPlantedInItsPlaceIsNotFollowed)
{
    mkdir(Path("elsewhere").constData(), 0700);
    ASSERT_EQ(symlink(Path("elsewhere").constData(), Own().constData()), 0);
    EXPECT_EQ(Chosen({}), QByteArray());
}

TEST_F(RuntimeFolderTest, AForeignFolderInItsPlaceIsNotUsed)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can give a folder away";
    mkdir(Own().constData(), 0700);
    ASSERT_EQ(chown(Own().constData(), 65534, 65534), 0);
    EXPECT_EQ(Chosen({}), QByteArray());
}

TEST_F(RuntimeFolderTest, AFolderWhoseNameIsNoTextIsNotTaken)
{
    mkdir(Path("r\xE9n").constData(), 0700);
    EXPECT_EQ(Chosen(Path("r\xE9n")), Own());
    rmdir(Path("r\xE9n").constData());
}

} // namespace
} // namespace lantern
