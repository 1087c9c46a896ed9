// SPDX-License-Identifier: GPL-3.0-or-later
// Files, packets, silence and memory at their limits.
#include "MediaLoaderFixture.h"
#include "SoundDecoder.h"

#include <fstream>
#include <gmock/gmock.h>
#include <limits>
#include <new>

namespace lantern {
namespace {

using ::testing::IsEmpty;

class MediaLoaderLimits : public MediaLoaderFixture {};

// The system's own files say a size that they don't deliver.
TEST_F(MediaLoaderLimits, AReadThatStopsBeforeTheSizeEndsAtWhatCame)
{
    const std::filesystem::path shorter = "/sys/kernel/mm/transparent_hugepage/shmem_enabled";
    std::error_code error;
    const std::string contents = test::ReadFile(shorter);
    if (contents.size() < kPacketSize ||
        std::filesystem::file_size(shorter, error) <= contents.size())
        GTEST_SKIP() << "no file here says more than it delivers";
    std::filesystem::create_symlink(shorter, m_folder / "a.cdg");
    EXPECT_EQ(m_loader.ReadBinaryFile(In("a.cdg")), contents.size());
    m_loader.AddMedia(In("a.cdg"));
    EXPECT_EQ(m_track.PacketCount(), static_cast<int>(contents.size() / kPacketSize));
}

TEST_F(MediaLoaderLimits, AFileBeyondTheLimitCountsAsUnreadable)
{
    const QString path = Make("a.cdg");
    std::filesystem::resize_file(m_folder / "a.cdg",
                                 static_cast<std::uintmax_t>(MediaLimits().fileBytes) + 1);
    EXPECT_EQ(m_loader.ReadBinaryFile(path), 0U);
    EXPECT_EQ(m_loader.AddMedia(path), QString());
    EXPECT_EQ(m_track.PacketCount(), 0);
    EXPECT_EQ(m_track.ClipCount(), 0);
}

TEST_F(MediaLoaderLimits, AFileAtTheLimitLoadsWhole)
{
    const QString path = MakePackets("a.cdg", 10);
    EXPECT_EQ(LoaderWith({.fileBytes = 10 * kPacketSize}).ReadBinaryFile(path), 10U * kPacketSize);
    EXPECT_EQ(LoaderWith({.fileBytes = 10 * kPacketSize - 1}).ReadBinaryFile(path), 0U);
}

TEST_F(MediaLoaderLimits, AudioBeyondThePacketLimitKeepsItsLength)
{
    constexpr std::int32_t kLongest = std::numeric_limits<std::int32_t>::max();
    MediaLoader loader = LoaderWith({.packets = 500});
    loader.AddMedia(MakeAudio("a.mp3", kLongest));
    EXPECT_EQ(m_track.TotalLengthMs, kLongest);
    EXPECT_EQ(m_track.PacketCount(), 500);

    loader.AddMedia(MakeAudio("b.mp3", kLongest));
    EXPECT_EQ(m_track.TotalLengthMs, kLongest);
    EXPECT_EQ(m_track.ClipList[2].StartMs, kLongest);
    EXPECT_EQ(m_track.PacketCount(), 500);
}

TEST_F(MediaLoaderLimits, PacketsBeyondTheLimitAreNotStored)
{
    MediaLoader loader = LoaderWith({.packets = 500});
    loader.AddMedia(MakePackets("a.cdg", 300));
    loader.AddMedia(MakePackets("b.cdg", 300));
    loader.AddMedia(MakePackets("c.cdg", 300));
    EXPECT_EQ(m_track.PacketCount(), 500);
    EXPECT_EQ(m_track.PacketStore[500].PacketData[0], 200);
    EXPECT_EQ(m_track.TotalLengthMs, 1667);
}

TEST_F(MediaLoaderLimits, AddSilenceMakesAWholeSoundImage)
{
    m_loader.AddSilence(1000);
    m_loader.AddSilence(1);
    ASSERT_EQ(m_track.ClipCount(), 2);
    EXPECT_EQ(m_track.ClipList[1].Data.Bytes().size(), 176446U);
    ExpectSilence(m_track.ClipList[1], 1000, 176400);
    ExpectSilence(m_track.ClipList[2], 1, 176);
    EXPECT_EQ(m_track.ClipList[2].Data.Bytes()[4], 214);
}

TEST_F(MediaLoaderLimits, SilenceEndsAtItsLimit)
{
    MediaLoader loader = LoaderWith({.silenceMs = 2000});
    loader.AddSilence(2001);
    ExpectSilence(m_track.ClipList[1], 2000, 352800);
    loader.AddSilence(-1);
    ExpectSilence(m_track.ClipList[2], 0, 0);
    loader.ClearMedia();
    loader.AddMedia(MakePackets("a.cdg", 900));
    EXPECT_EQ(m_track.TotalLengthMs, 2000);
    EXPECT_EQ(m_track.PacketCount(), 900);
}

#ifndef __SANITIZE_THREAD__ // It writes to each zero itself.
TEST_F(MediaLoaderLimits, SilenceCostsNoMemory)
{
    const auto residentKb = [] {
        std::ifstream status("/proc/self/status");
        for (std::string line; std::getline(status, line);) {
            if (line.starts_with("VmRSS:"))
                return std::stoll(line.substr(6));
        }
        return 0LL;
    };
    const long long before = residentKb();
    m_loader.AddSilence(MediaLimits().silenceMs);
    EXPECT_EQ(m_track.ClipList[1].LengthMs, MediaLimits().silenceMs);
    EXPECT_GT(before, 0);
    EXPECT_LT(residentKb() - before, 16 * 1024);
}

TEST_F(MediaLoaderLimits, TheLongestSilenceIsASoundOfItsLength)
{
    m_loader.AddSilence(MediaLimits().silenceMs);
    const auto sound = SoundDecoder::OpenMemory(m_track.ClipList[1].Data.Bytes());
    ASSERT_TRUE(sound);
    EXPECT_EQ(sound->FrameCount(), std::int64_t{MediaLimits().silenceMs} * 44100 / 1000);
}
#endif

TEST_F(MediaLoaderLimits, TheLimitsHoldTheLongestDisc)
{
    constexpr std::int32_t kLongestDiscSeconds = 99 * 60 + 59;
    EXPECT_GE(MediaLimits().silenceMs, kLongestDiscSeconds * 1000);
    EXPECT_GE(MediaLimits().packets, kLongestDiscSeconds * kPacketsPerSecond);
}

// An engine for which there is not enough memory, as often as a test says.
struct GreedyEngine : FakeAudioEngine {
    std::int32_t GetFileDuration(const QString& path) override
    {
        if (Failures-- > 0)
            throw std::bad_alloc();
        return FakeAudioEngine::GetFileDuration(path);
    }
    int Failures = 1;
};

TEST_F(MediaLoaderLimits, WithoutMemoryNothingOfTheTrackIsLeft)
{
    GreedyEngine engine;
    MediaLoader loader(m_track, engine, m_host, m_zip);
    loader.AddSilence(1000);
    m_track.TotalLengthMs = 1000;
    MakeAudio("a.mp3", 1000);
    EXPECT_EQ(loader.AddMedia(MakePackets("a.cdg", 300)), QStringLiteral("Out of memory"));
    EXPECT_EQ(m_track.PacketCount(), 0);
    EXPECT_EQ(m_track.ClipCount(), 0);
    EXPECT_EQ(m_track.TotalLengthMs, 0);
    EXPECT_THAT(loader.FileBuffer(), IsEmpty());

    engine.FileDurations[In("a.mp3")] = 1000;
    EXPECT_EQ(loader.AddMedia(In("a.cdg")), QString());
    EXPECT_EQ(m_track.PacketCount(), 300);
    EXPECT_EQ(m_track.ClipCount(), 1);
}

} // namespace
} // namespace lantern
