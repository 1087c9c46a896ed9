// SPDX-License-Identifier: GPL-3.0-or-later
#include "ByteSource.h"

#include "TestSounds.h"

#include <gtest/gtest.h>

#include <QFile>

#include <array>
#include <fcntl.h>
#include <filesystem>
#include <numeric>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

namespace lantern {
namespace {

Bytes Counting(std::size_t size)
{
    Bytes bytes(size);
    std::iota(bytes.begin(), bytes.end(), std::uint8_t{1});
    return bytes;
}

// What a read of so many bytes delivers.
Bytes Read(const ByteSource& source, std::int64_t offset, std::size_t size)
{
    Bytes out(size, 0xEE);
    const std::size_t got = source.ReadAt(offset, out);
    EXPECT_LE(got, size);
    for (std::size_t i = got; i < size; ++i)
        EXPECT_EQ(out[i], 0xEE) << "written beyond what was read";
    out.resize(std::min(got, size));
    return out;
}

int OpenDescriptors()
{
    int count = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator("/proc/self/fd"))
        ++count;
    return count;
}

TEST(ByteSource, AFileAndAMemoryImageDeliverTheSame)
{
    const SoundFolder folder;
    const Bytes bytes = Counting(200);
    const auto file = OpenFileBytes(folder.Write(QStringLiteral("a"), bytes));
    const auto memory = OpenMemoryBytes(bytes);
    for (const ByteSource* source : {file.get(), memory.get()}) {
        ASSERT_NE(source, nullptr);
        EXPECT_EQ(source->Size(), 200);
        EXPECT_EQ(Read(*source, 0, 200), bytes);
        EXPECT_EQ(Read(*source, 150, 20), Bytes(bytes.begin() + 150, bytes.begin() + 170));
        EXPECT_EQ(Read(*source, 150, 100), Bytes(bytes.begin() + 150, bytes.end()));
        EXPECT_EQ(Read(*source, 199, 1), Bytes{200});
        EXPECT_TRUE(Read(*source, 200, 1).empty());
        EXPECT_TRUE(Read(*source, 5000, 100).empty());
        EXPECT_TRUE(Read(*source, -1, 1).empty());
        EXPECT_TRUE(Read(*source, 10, 0).empty());
    }
}

TEST(ByteSource, ReleasedAMemoryImageIsEmptyAndAFileGoesOn)
{
    const SoundFolder folder;
    const Bytes bytes = Counting(200);
    const auto file = OpenFileBytes(folder.Write(QStringLiteral("a"), bytes));
    const auto memory = OpenMemoryBytes(bytes);
    ASSERT_TRUE(file && memory);
    file->Release();
    memory->Release();
    EXPECT_EQ(Read(*file, 10, 5).size(), 5U);
    EXPECT_TRUE(Read(*memory, 10, 5).empty());
    EXPECT_EQ(memory->Size(), 200);
}

// As in a program that was started without a standard input.
TEST(ByteSource, AFileMayGetTheNumberZero)
{
    const SoundFolder folder;
    const Bytes bytes = Counting(200);
    const QString path = folder.Write(QStringLiteral("a"), bytes);
    const int input = dup(STDIN_FILENO);
    close(STDIN_FILENO);
    auto file = OpenFileBytes(path);
    const Bytes read = file ? Read(*file, 0, 200) : Bytes();
    file.reset();
    EXPECT_EQ(fcntl(STDIN_FILENO, F_GETFD), -1) << "closed again";
    dup2(input, STDIN_FILENO);
    close(input);
    EXPECT_EQ(read, bytes);
}

TEST(ByteSource, NoBytesAreNoSource)
{
    const SoundFolder folder;
    EXPECT_EQ(OpenMemoryBytes({}), nullptr);
    EXPECT_EQ(OpenFileBytes(folder.Write(QStringLiteral("empty"), {})), nullptr);
    EXPECT_EQ(OpenFileBytes(QString()), nullptr);
    EXPECT_EQ(OpenFileBytes(folder.Path(QStringLiteral("none"))), nullptr);
    EXPECT_EQ(OpenFileBytes(folder.Path(QString())), nullptr); // the folder itself
}

TEST(ByteSource, AFileThatShrinksDeliversWhatIsLeft)
{
    const SoundFolder folder;
    const QString path = folder.Write(QStringLiteral("a"), Counting(200));
    const auto file = OpenFileBytes(path);
    ASSERT_TRUE(file);
    ASSERT_TRUE(QFile::resize(path, 60));
    EXPECT_EQ(file->Size(), 200);
    EXPECT_EQ(Read(*file, 50, 100).size(), 10U);
    EXPECT_TRUE(Read(*file, 100, 10).empty());
}

TEST(ByteSource, WhatIsNoRegularFileIsNotEvenOpened)
{
    const SoundFolder folder;
    const QByteArray fifo = folder.Path(QStringLiteral("fifo")).toUtf8();
    ASSERT_EQ(mkfifo(fifo.constData(), 0600), 0);
    const int watch = inotify_init1(IN_NONBLOCK);
    ASSERT_GE(inotify_add_watch(watch, fifo.constData(), IN_OPEN), 0);
    EXPECT_EQ(OpenFileBytes(QString::fromUtf8(fifo)), nullptr);
    std::array<char, 4096> events = {};
    EXPECT_LT(read(watch, events.data(), events.size()), 0) << "it was opened";
    close(watch);
    EXPECT_EQ(OpenFileBytes(QStringLiteral("/dev/zero")), nullptr);
}

TEST(ByteSource, NoDescriptorIsLeftOpenOrGivenToAnotherProgram)
{
    const SoundFolder folder;
    const QString path = folder.Write(QStringLiteral("a"), Counting(10));
    const QString empty = folder.Write(QStringLiteral("empty"), {});
    const int before = OpenDescriptors();
    auto file = OpenFileBytes(path);
    ASSERT_TRUE(file);
    EXPECT_EQ(OpenDescriptors(), before + 1);
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code error;
        if (std::filesystem::read_symlink(entry.path(), error).string() == path.toStdString()) {
            EXPECT_NE(fcntl(std::stoi(entry.path().filename()), F_GETFD) & FD_CLOEXEC, 0);
        }
    }
    file.reset();
    EXPECT_EQ(OpenFileBytes(empty), nullptr);
    EXPECT_EQ(OpenDescriptors(), before);
}

} // namespace
} // namespace lantern
