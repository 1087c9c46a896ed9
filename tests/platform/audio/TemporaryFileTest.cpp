// SPDX-License-Identifier: GPL-3.0-or-later
#include "TemporaryFile.h"

#include "SoundFiles.h"
#include "TestSounds.h"

#include <gtest/gtest.h>

#include <QDir>

#include <array>
#include <fcntl.h>
#include <linux/magic.h>
#include <sys/statfs.h>
#include <sys/statvfs.h>
#include <thread>
#include <unistd.h>

namespace lantern {
namespace {

constexpr std::uint64_t kPlenty = std::uint64_t{1} << 60;

std::vector<std::byte> BytesOf(std::size_t size, int value)
{
    return std::vector<std::byte>(size, static_cast<std::byte>(value));
}

bool LiesInMemory(const char* folder)
{
    struct statfs status = {};
    return statfs(folder, &status) == 0 && status.f_type == TMPFS_MAGIC;
}

// The variable that tells where temporary files go, for as long as one test.
class TemporaryFileIn : public testing::Test {
protected:
    ~TemporaryFileIn() override
    {
        if (m_before.isNull())
            qunsetenv("TMPDIR");
        else
            qputenv("TMPDIR", m_before);
    }
    // The name of a file made now, with the variable set so.
    static std::string NameIn(const QByteArray& folder)
    {
        qputenv("TMPDIR", folder);
        return NameNow();
    }
    static std::string NameNow()
    {
        EXPECT_TRUE(SoundFilesGo()); // those of other tests
        const int descriptor = OpenTemporaryFile();
        EXPECT_GE(descriptor, 0);
        const std::vector<SoundFile> files = SoundFiles();
        EXPECT_EQ(files.size(), 1U);
        EXPECT_NE(fcntl(descriptor, F_GETFD) & FD_CLOEXEC, 0);
        close(descriptor);
        return files.empty() ? std::string() : files.front().name;
    }

    SoundFolder m_folder;
    QByteArray m_before = qgetenv("TMPDIR");
};

TEST_F(TemporaryFileIn, ItIsMadeInTheChosenFolderAndHasNoName)
{
    const QByteArray folder = m_folder.Path(QString()).toUtf8();
    if (LiesInMemory(folder.constData()))
        GTEST_SKIP() << "Temporary files lie in memory here.";
    const std::string name = NameIn(folder);
    EXPECT_EQ(name.find(folder.toStdString() + "/lantern-sound-"), 0U) << name;
    EXPECT_NE(name.find(" (deleted)"), std::string::npos) << name;
    EXPECT_TRUE(QDir(m_folder.Path(QString())).isEmpty());
}

TEST_F(TemporaryFileIn, AFolderThatIsNotThereIsPassedOver)
{
    const QByteArray none = m_folder.Path(QStringLiteral("none")).toUtf8();
    const std::string name = NameIn(none);
    EXPECT_NE(name.find("tmp/lantern-sound-"), std::string::npos) << name;
}

TEST_F(TemporaryFileIn, WithoutAChoiceItIsMadeAmongTheOthers)
{
    qunsetenv("TMPDIR");
    const std::string name = NameNow();
    const char* const usual = LiesInMemory("/tmp") && !LiesInMemory("/var/tmp")
                                  ? "/var/tmp/lantern-sound-"
                                  : "/tmp/lantern-sound-";
    EXPECT_EQ(name.find(usual), 0U) << name;
}

TEST_F(TemporaryFileIn, AFolderInMemoryComesLast)
{
    if (!LiesInMemory("/dev/shm") || LiesInMemory("/var/tmp"))
        GTEST_SKIP() << "No choice between memory and disk here.";
    const std::string name = NameIn("/dev/shm");
    EXPECT_NE(name.find("tmp/lantern-sound-"), std::string::npos) << name;
}

TEST(TemporaryFile, WhatIsWrittenIsRead)
{
    const int file = OpenTemporaryFile();
    EXPECT_EQ(WriteTemporaryFile(file, 0, BytesOf(100, 7)), 100U);
    EXPECT_EQ(WriteTemporaryFile(file, 100, BytesOf(50, 0)), 50U);
    EXPECT_EQ(WriteTemporaryFile(file, 150, BytesOf(50, 9)), 50U);
    EXPECT_EQ(WriteTemporaryFile(file, 200, {}), 0U);
    std::vector<std::byte> read(200);
    EXPECT_EQ(ReadTemporaryFile(file, 0, read), 200U);
    EXPECT_EQ(read[99], std::byte{7});
    EXPECT_EQ(read[100], std::byte{0});
    EXPECT_EQ(read[149], std::byte{0});
    EXPECT_EQ(read[150], std::byte{9});
    // Across the end, and beyond it.
    EXPECT_EQ(ReadTemporaryFile(file, 190, read), 10U);
    EXPECT_EQ(ReadTemporaryFile(file, 500, read), 0U);
    close(file);
}

TEST(TemporaryFile, SilenceAtTheEndCountsForTheSize)
{
    const int file = OpenTemporaryFile();
    EXPECT_EQ(WriteTemporaryFile(file, 0, BytesOf(5000, 0)), 5000U);
    EXPECT_EQ(lseek(file, 0, SEEK_END), 5000);
    struct stat status = {};
    EXPECT_EQ(fstat(file, &status), 0);
    EXPECT_EQ(status.st_blocks, 0);
    close(file);
}

TEST(TemporaryFile, WithoutAFileNothingIsWrittenOrRead)
{
    std::array<std::byte, 10> out = {};
    EXPECT_EQ(WriteTemporaryFile(-1, 0, BytesOf(10, 1)), 0U);
    EXPECT_EQ(WriteTemporaryFile(-1, 0, BytesOf(10, 0)), 0U);
    EXPECT_EQ(ReadTemporaryFile(-1, 0, out), 0U);
    EXPECT_FALSE(HasRoom(-1, 0));
}

TEST(TemporaryFile, RoomIsWhatTheDiskHasFree)
{
    const int file = OpenTemporaryFile();
    struct statvfs status = {};
    ASSERT_EQ(fstatvfs(file, &status), 0);
    const std::uint64_t free = std::uint64_t{status.f_bavail} * status.f_frsize;
    EXPECT_TRUE(HasRoom(file, 0));
    EXPECT_TRUE(HasRoom(file, free / 2));
    EXPECT_FALSE(HasRoom(file, free * 2));
    EXPECT_FALSE(HasRoom(file, kPlenty));
    close(file);
    const int full = open("/proc/self/status", O_RDONLY | O_CLOEXEC); // nothing is free there
    EXPECT_FALSE(HasRoom(full, 0));
    close(full);
}

TEST(TemporaryFile, ClosedItIsGoneSoon)
{
    CloseTemporaryFile(OpenTemporaryFile());
    EXPECT_TRUE(SoundFilesGo());
}

} // namespace
} // namespace lantern
