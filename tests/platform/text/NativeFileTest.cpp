// SPDX-License-Identifier: GPL-3.0-or-later
#include "NativeFile.h"

#include "PathText.h"
#include "Process.h"

#include <array>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <numeric>
#include <sys/stat.h>
#include <vector>

namespace lantern {
namespace {

class NativeFileTest : public ::testing::Test {
protected:
    QString In(const char* name) const
    {
        return TextFromNative((m_folder / name).native().c_str());
    }
    void Make(const char* name, const char* bytes) { test::WriteFile(m_folder / name, bytes); }

    test::ScratchFolder m_folder;
};

TEST_F(NativeFileTest, ReadsOnFromWhereTheLastReadEnded)
{
    Make("a", "abcde");
    auto file = NativeFile::OpenForReading(In("a"));
    ASSERT_TRUE(file);
    EXPECT_EQ(file->Size(), 5);
    std::array<std::uint8_t, 3> bytes = {};
    EXPECT_EQ(file->Read(bytes), 3U);
    EXPECT_EQ(bytes[0], 'a');
    EXPECT_EQ(file->Read(bytes), 2U);
    EXPECT_EQ(bytes[0], 'd');
    EXPECT_EQ(file->Read(bytes), 0U);
}

TEST_F(NativeFileTest, ReadsFromAnyPlaceAsFarAsTheFileGoes)
{
    Make("a", "abcde");
    auto file = NativeFile::OpenForReading(In("a"));
    ASSERT_TRUE(file);
    std::array<std::uint8_t, 3> bytes = {};
    EXPECT_EQ(file->ReadAt(1, bytes), 3U);
    EXPECT_EQ(bytes, (std::array<std::uint8_t, 3>{'b', 'c', 'd'}));
    EXPECT_EQ(file->ReadAt(4, bytes), 1U);
    EXPECT_EQ(bytes[0], 'e');
    EXPECT_EQ(file->ReadAt(5, bytes), 0U);
    EXPECT_EQ(file->ReadAt(-1, bytes), 0U);
    EXPECT_EQ(file->Read(bytes), 3U); // its place is its own
    EXPECT_EQ(bytes[0], 'a');
}

TEST_F(NativeFileTest, TheNameIsFoundWhateverItsLetterCase)
{
    Make("Song.Mp3", "x");
    EXPECT_TRUE(NativeFile::OpenForReading(In("song.MP3")));
}

TEST_F(NativeFileTest, FoldersFifosAndDevicesDontOpen)
{
    ASSERT_EQ(mkfifo((m_folder / "fifo").c_str(), 0600), 0);
    EXPECT_FALSE(NativeFile::OpenForReading(In("fifo")));
    EXPECT_FALSE(NativeFile::OpenForReading(In("")));
    EXPECT_FALSE(NativeFile::OpenForReading(QStringLiteral("/dev/zero")));
    EXPECT_FALSE(NativeFile::OpenForReading(In("none")));
    EXPECT_FALSE(NativeFile::OpenForReading(QString()));
}

TEST_F(NativeFileTest, TheDescriptorIsClosedForProgramsThatAreStartedAndWhenTheFileGoes)
{
    Make("a", "x");
    const int descriptor = dup(STDIN_FILENO); // the lowest that is free
    close(descriptor);
    {
        auto opened = NativeFile::OpenForReading(In("a"));
        ASSERT_TRUE(opened);
        const NativeFile moved = std::move(*opened);
        EXPECT_EQ(fcntl(descriptor, F_GETFD), FD_CLOEXEC);
    }
    EXPECT_EQ(fcntl(descriptor, F_GETFD), -1);
}

// Delivers the bytes 0, 1, 2... in the sizes given, then nothing.
struct ScriptedSource {
    std::vector<std::size_t> sizes;
    std::vector<std::size_t> asked = {};
    std::uint8_t next = 0;

    std::size_t Read(std::span<std::uint8_t> bytes)
    {
        const std::size_t call = asked.size();
        asked.push_back(bytes.size());
        const std::size_t count = call < sizes.size() ? std::min(sizes[call], bytes.size()) : 0;
        for (std::uint8_t& byte : bytes.first(count))
            byte = next++;
        return count;
    }
};

TEST(ReadInPieces, AsksForNoMoreThanAPieceAndForNoMoreThanIsLeft)
{
    ScriptedSource source{.sizes = {4, 4, 2}};
    std::array<std::uint8_t, 10> bytes = {};
    EXPECT_EQ(ReadInPieces(source, bytes, 4), 10U);
    EXPECT_EQ(source.asked, (std::vector<std::size_t>{4, 4, 2}));
    std::array<std::uint8_t, 10> expected = {};
    std::iota(expected.begin(), expected.end(), std::uint8_t{0});
    EXPECT_EQ(bytes, expected);
}

TEST(ReadInPieces, AShortReadGoesOnAtTheOffsetReached)
{
    ScriptedSource source{.sizes = {1, 3, 6}};
    std::array<std::uint8_t, 10> bytes = {};
    EXPECT_EQ(ReadInPieces(source, bytes, 8), 10U);
    EXPECT_EQ(source.asked, (std::vector<std::size_t>{8, 8, 6}));
    EXPECT_EQ(bytes[9], 9);
}

TEST(ReadInPieces, AReadThatDeliversNothingEndsItAtWhatCame)
{
    ScriptedSource source{.sizes = {4, 3}};
    std::array<std::uint8_t, 10> bytes = {};
    EXPECT_EQ(ReadInPieces(source, bytes, 4), 7U);
    EXPECT_EQ(source.asked.size(), 3U);
}

} // namespace
} // namespace lantern
