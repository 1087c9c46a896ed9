// SPDX-License-Identifier: GPL-3.0-or-later
#include "PcmStore.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <sys/stat.h>
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

// The room on the disk that our unlinked sound files take.
std::int64_t BlocksOfSoundFiles()
{
    std::int64_t blocks = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code error;
        const std::string name = std::filesystem::read_symlink(entry.path(), error).string();
        struct stat status = {};
        if (name.find("/lantern-sound-") != std::string::npos &&
            stat(entry.path().c_str(), &status) == 0)
            blocks += status.st_blocks;
    }
    return blocks;
}

TEST(PcmStore, SilenceTakesNoRoomOnTheDisk)
{
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
