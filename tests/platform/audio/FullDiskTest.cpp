// SPDX-License-Identifier: GPL-3.0-or-later
// A long sound, and no room on the disk for what does not fit into memory.
#include "DecodedSound.h"
#include "SoundFiles.h"
#include "TestSounds.h"

#include <cerrno>
#include <sched.h>
#include <sys/mount.h>
#include <thread>

namespace lantern {
namespace {

constexpr std::int64_t kFramesInMemory = (std::int64_t{64} << 20) / 4;
constexpr std::int64_t kBlockFrames = 1012; // of the coding below
constexpr std::int64_t kCutFrames = (kFramesInMemory / kBlockFrames + 3000) * kBlockFrames;

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
    // Such a sound can't be taken up anywhere, so all of it is kept.
    const Bytes image = Encoded(MakeTicks(44100, 2, kCutFrames),
                                "ffmpeg -y -v error -i in.wav -c:a adpcm_ms", "a.wav");
    bool mayMount = false;
    std::thread([&] {
        mayMount = LiveOnASmallDisk();
        if (!mayMount)
            return;
        const auto decoder = SoundDecoder::OpenMemory(image);
        ASSERT_TRUE(decoder);
        // On a slow machine the length is an estimate until all has been decoded.
        EXPECT_NEAR(static_cast<double>(decoder->FrameCount()), kCutFrames, 0.02 * kCutFrames);
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

TEST(FullDisk, WhatCanBeTakenUpAnywhereNeedsNone)
{
    const Bytes image = WavImage(MakeTicks(44100, 2, kCutFrames));
    const auto decoder = SoundDecoder::OpenMemory(image);
    ASSERT_TRUE(decoder);
    WaitForEnd(*decoder);
    EXPECT_EQ(CountSoundFiles(), 0);
    EXPECT_EQ(decoder->CutBy(), 0);
    EXPECT_EQ(decoder->FrameCount(), kCutFrames);
    ReadInPieces(*decoder, kCutFrames - 44100, 44100);
    EXPECT_EQ(CountSoundFiles(), 0);
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
