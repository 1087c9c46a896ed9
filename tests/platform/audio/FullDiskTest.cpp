// SPDX-License-Identifier: GPL-3.0-or-later
// A long sound, and no room on the disk for what does not fit into memory.
#include "DecodedSound.h"
#include "TestSounds.h"

#include <cerrno>
#include <sched.h>
#include <sys/mount.h>
#include <thread>

namespace lantern {
namespace {

constexpr std::int64_t kFramesInMemory = (std::int64_t{64} << 20) / 4;
constexpr std::int64_t kCutFrames = kFramesInMemory + 44100 * 60;

// For this thread and those that it starts, all folders for temporary files lie on a small disk.
bool LiveOnASmallDisk()
{
    if (unshare(CLONE_NEWNS) != 0 || mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
        return false;
    const char* const chosen = std::getenv("TMPDIR");
    for (const char* const folder : {"/tmp", "/var/tmp", chosen ? chosen : "/tmp"})
        if (mount("tmpfs", folder, "tmpfs", 0, "size=8m") != 0)
            return false;
    return true;
}

TEST(FullDisk, WhatHasBeenDecodedPlaysAndTheCauseIsTold)
{
    const Bytes image = WavImage(MakeTicks(44100, 2, kCutFrames));
    bool mayMount = false;
    std::thread([&] {
        mayMount = LiveOnASmallDisk();
        if (!mayMount)
            return;
        const auto decoder = SoundDecoder::OpenMemory(image);
        ASSERT_TRUE(decoder);
        EXPECT_EQ(decoder->FrameCount(), kCutFrames);
        WaitForEnd(*decoder);
        EXPECT_EQ(decoder->CutBy(), ENOSPC);
        EXPECT_EQ(decoder->FrameCount(), kFramesInMemory);
        std::vector<float> last(2 * 441);
        const SoundDecoder::Chunk chunk = decoder->Read(kFramesInMemory - 400, last);
        EXPECT_EQ(chunk.frames, 400);
        EXPECT_TRUE(chunk.atEnd);
    }).join();
    if (!mayMount)
        GTEST_SKIP() << "No disk may be mounted here.";
}

TEST(FullDisk, WithRoomNothingIsTold)
{
    const Bytes image = WavImage(MakeTicks(44100, 2, 44100));
    const auto decoder = SoundDecoder::OpenMemory(image);
    ASSERT_TRUE(decoder);
    WaitForEnd(*decoder);
    EXPECT_EQ(decoder->CutBy(), 0);
}

} // namespace
} // namespace lantern
