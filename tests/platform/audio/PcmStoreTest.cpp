// SPDX-License-Identifier: GPL-3.0-or-later
#include "PcmStore.h"

#include "SoundFiles.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstring>
#include <fstream>
#include <limits>
#include <sys/resource.h>
#include <thread>
#include <vector>

namespace lantern {
namespace {

constexpr PcmLimits kSmall = {.memorySize = 4096, .largestSize = 1 << 20};

std::vector<std::byte> Counting(int firstFrame, int frames)
{
    std::vector<std::byte> bytes(static_cast<std::size_t>(frames) * 4);
    for (int i = 0; i < frames; ++i) {
        const auto left = static_cast<std::int16_t>((firstFrame + i) % 30000);
        const auto right = static_cast<std::int16_t>(-left);
        std::memcpy(bytes.data() + 4 * static_cast<std::size_t>(i), &left, 2);
        std::memcpy(bytes.data() + 4 * static_cast<std::size_t>(i) + 2, &right, 2);
    }
    return bytes;
}

void ExpectCounting(const PcmStore& store, std::int64_t firstFrame, int frames)
{
    std::vector<float> stereo(2 * static_cast<std::size_t>(frames));
    ASSERT_EQ(store.Read(firstFrame, stereo), frames);
    for (int i = 0; i < frames; ++i) {
        const auto expected = static_cast<float>((firstFrame + i) % 30000) / 32768.0F;
        ASSERT_EQ(stereo[2 * static_cast<std::size_t>(i)], expected);
        ASSERT_EQ(stereo[2 * static_cast<std::size_t>(i) + 1], -expected);
    }
}

TEST(PcmStore, FramesComeBackFromMemoryAndFromTheFile)
{
    PcmStore store(SampleKind::Int16, 44100, kSmall);
    for (int frame = 0; frame < 50001; frame += 333)
        ASSERT_TRUE(store.Append(Counting(frame, 333)));
    EXPECT_EQ(store.PublishedFrames(), 50283);
    ExpectCounting(store, 0, 50283);
    ExpectCounting(store, 1000, 100); // across the border at frame 1024
    ExpectCounting(store, 50000, 283);
}

TEST(PcmStore, FloatsComeBackBitForBit)
{
    PcmStore store(SampleKind::Float, 44100, kSmall);
    std::vector<float> samples(9000);
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] = 1.0F / static_cast<float>(i + 3);
    ASSERT_TRUE(store.Append(std::as_bytes(std::span(samples))));
    std::vector<float> read(samples.size());
    EXPECT_EQ(store.Read(0, read), 4500);
    EXPECT_EQ(read, samples);
}

TEST(PcmStore, NothingIsReadBeyondWhatIsPublished)
{
    PcmStore store(SampleKind::Int16, 44100, kSmall);
    ASSERT_TRUE(store.Append(Counting(0, 10)));
    std::vector<float> stereo(2 * 20, 7.0F);
    EXPECT_EQ(store.Read(4, stereo), 6);
    EXPECT_EQ(stereo[12], 7.0F);
    EXPECT_EQ(store.Read(10, stereo), 0);
    EXPECT_EQ(store.Read(1000000, stereo), 0);
    EXPECT_EQ(store.Read(-1, stereo), 0);
}

TEST(PcmStore, ASoundWithoutAnEndIsCutOffAtTheLimit)
{
    PcmStore store(SampleKind::Int16, 44100, kSmall);
    int appended = 0;
    while (appended < 10000000 && store.Append(Counting(appended, 1000)))
        appended += 1000;
    EXPECT_EQ(store.PublishedFrames(), (1 << 20) / 4);
    EXPECT_EQ(store.PublishedFrames(), PcmStore::LongestSound(SampleKind::Int16, 44100, kSmall));
    ExpectCounting(store, (1 << 20) / 4 - 500, 500);
}

TEST(PcmStore, ADayIsTheLimitAtLowRates)
{
    EXPECT_EQ(PcmStore::LongestSound(SampleKind::Int16, 8000), std::int64_t{24} * 60 * 60 * 8000);
    EXPECT_LT(PcmStore::LongestSound(SampleKind::Float, 192000),
              std::int64_t{2} * 60 * 60 * 192000);
}

TEST(PcmStore, AnotherThreadReadsWhatHasBeenPublishedSoFar)
{
    PcmStore store(SampleKind::Int16, 44100, kSmall);
    constexpr int kFrames = 200000;
    std::thread writer([&] {
        for (int frame = 0; frame < kFrames; frame += 100)
            store.Append(Counting(frame, 100));
    });
    std::int64_t seen = 0;
    while (seen < kFrames) {
        seen = store.PublishedFrames();
        if (seen >= 50)
            ExpectCounting(store, seen - 50, 50);
    }
    writer.join();
    ExpectCounting(store, 0, kFrames);
}

TEST(PcmStore, WhatFitsExactlyIsTakenAndTheNextFrameIsNot)
{
    PcmStore store(SampleKind::Int16, 44100, kSmall);
    EXPECT_TRUE(store.Append(Counting(0, (1 << 20) / 4)));
    EXPECT_EQ(store.Trouble(), 0);
    EXPECT_FALSE(store.Append(Counting(0, 1)));
    EXPECT_EQ(store.Trouble(), EFBIG);
    EXPECT_EQ(store.PublishedFrames(), (1 << 20) / 4);
}

TEST(PcmStore, ReadsAcrossPiecesAndTheBorderOfTheMemoryAreWhole)
{
    // The memory ends within a frame.
    PcmStore store(SampleKind::Int16, 44100, {.memorySize = 4098, .largestSize = 1 << 20});
    for (int frame = 0; frame < 3000; frame += 7)
        ASSERT_TRUE(store.Append(Counting(frame, 7)));
    for (int first = 0; first < 3000; first += 41)
        ExpectCounting(store, first, std::min(1500, 3003 - first));
}

TEST(PcmStore, WithoutMemoryEverythingGoesToTheFile)
{
    ASSERT_TRUE(SoundFilesGo()); // those of other tests
    // More than there are addresses.
    PcmStore store(SampleKind::Int16, 44100,
                   {.memorySize = std::size_t{1} << 60, .largestSize = 1 << 20});
    ASSERT_TRUE(store.Append(Counting(0, 5000)));
    EXPECT_GT(BlocksOfSoundFiles(), 0);
    ExpectCounting(store, 0, 5000);
}

TEST(PcmStore, WithoutRoomOnTheDiskTheSoundEndsWithTheMemory)
{
    PcmStore store(SampleKind::Int16, 44100,
                   {.memorySize = 4096,
                    .largestSize = 1 << 20,
                    .bytesToLeaveFree = std::numeric_limits<std::uint64_t>::max()});
    ASSERT_TRUE(store.Append(Counting(0, 1000)));
    EXPECT_EQ(store.Trouble(), 0);
    EXPECT_FALSE(store.Append(Counting(1000, 1000)));
    EXPECT_EQ(store.Trouble(), ENOSPC);
    EXPECT_EQ(store.PublishedFrames(), 1024);
    ExpectCounting(store, 0, 1024);
    EXPECT_FALSE(store.Append(Counting(1024, 1)));
    EXPECT_EQ(store.PublishedFrames(), 1024);
}

// No file of this process may grow beyond the size meanwhile.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        getrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit = {bytes, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, SIG_DFL);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    rlimit m_before = {};
};

TEST(PcmStore, AFileThatCannotGrowEndsTheSoundAfterItsLastWholeFrame)
{
    PcmStore store(SampleKind::Int16, 44100, kSmall);
    ASSERT_TRUE(store.Append(Counting(0, 1024)));
    const FileSizeLimit limit(4 * 500 + 3);
    ASSERT_TRUE(store.Append(Counting(1024, 400)));
    EXPECT_FALSE(store.Append(Counting(1424, 400)));
    EXPECT_EQ(store.Trouble(), ENOSPC);
    EXPECT_EQ(store.PublishedFrames(), 1524);
    ExpectCounting(store, 0, 1524);
    // Nor can silence make it grow.
    EXPECT_FALSE(store.Append(std::vector<std::byte>(4000)));
    EXPECT_EQ(store.PublishedFrames(), 1524);
}

TEST(PcmStore, NothingOfASoundIsLeftBehind)
{
    const auto reservedPages = [] {
        long pages = 0;
        std::ifstream("/proc/self/statm") >> pages;
        return pages;
    };
    ASSERT_TRUE(SoundFilesGo()); // those of other tests
    const std::size_t memorySize = std::size_t{1} << 30;
    const long before = reservedPages();
    {
        PcmStore store(SampleKind::Int16, 44100, {.memorySize = memorySize});
        ASSERT_TRUE(store.Append(Counting(0, 100)));
        EXPECT_GT(reservedPages(), before + 200000);
        EXPECT_EQ(CountSoundFiles(), 0);
        PcmStore inFile(SampleKind::Int16, 44100, kSmall);
        ASSERT_TRUE(inFile.Append(Counting(0, 2000)));
        EXPECT_EQ(CountSoundFiles(), 1);
    }
    EXPECT_LT(reservedPages(), before + 100000);
    EXPECT_TRUE(SoundFilesGo());
}

TEST(PcmStore, SilenceTakesNoRoomOnTheDisk)
{
    ASSERT_TRUE(SoundFilesGo()); // those of other tests
    PcmStore store(SampleKind::Int16, 44100, {.memorySize = 4096});
    const std::vector<std::byte> silence(std::size_t{1} << 20);
    for (int i = 0; i < 8; ++i)
        EXPECT_TRUE(store.Append(silence));
    EXPECT_EQ(store.PublishedFrames(), 8 << 18);
    EXPECT_LT(BlocksOfSoundFiles(), 64);

    // What follows it stands in its place.
    const std::vector<std::byte> loud(4096, std::byte{0x40});
    EXPECT_TRUE(store.Append(loud));
    EXPECT_GT(BlocksOfSoundFiles(), 0);
    std::vector<float> stereo(4, -1.0F);
    EXPECT_EQ(store.Read((8 << 18) - 1, stereo), 2);
    EXPECT_EQ(stereo[1], 0.0F);
    EXPECT_EQ(stereo[2], 0x4040 / 32768.0F);
}

} // namespace
} // namespace lantern
