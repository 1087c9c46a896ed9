// SPDX-License-Identifier: GPL-3.0-or-later
#include "SoundTap.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <thread>
#include <utility>
#include <vector>

namespace lantern {
namespace {

// The left sample of each frame is its number, the right one its negative, so that every frame can
// be told. Floats tell whole numbers apart up to 2^24.
std::vector<float> Numbered(std::int64_t first, std::int64_t count)
{
    std::vector<float> stereo;
    for (std::int64_t frame = first; frame < first + count; ++frame) {
        stereo.push_back(static_cast<float>(frame));
        stereo.push_back(-static_cast<float>(frame));
    }
    return stereo;
}

// The left samples; a frame whose sides do not belong together is -1.
std::vector<float> Copied(const SoundTap& tap, std::int64_t first, int count)
{
    std::vector<float> stereo(static_cast<std::size_t>(count) * 2, 99.0F);
    tap.CopyOut(first, stereo);
    std::vector<float> left;
    for (std::size_t i = 0; i < stereo.size(); i += 2) {
        left.push_back(stereo[i] == -stereo[i + 1] ? stereo[i] : -1.0F);
    }
    return left;
}

TEST(SoundTap, FramesAreFoundByTheirNumber)
{
    SoundTap tap;
    tap.Listen(true);
    tap.Note(Numbered(0, 100));
    tap.Note(Numbered(100, 50));
    EXPECT_EQ(tap.PassedFrames(), 150);
    EXPECT_EQ(Copied(tap, 98, 4), (std::vector<float>{98, 99, 100, 101}));
}

TEST(SoundTap, WhatIsNotAtHandIsSilence)
{
    SoundTap tap;
    EXPECT_EQ(Copied(tap, 0, 2), (std::vector<float>{0, 0}));
    tap.Listen(true);
    tap.Note(Numbered(0, 10));
    EXPECT_EQ(Copied(tap, 8, 4), (std::vector<float>{8, 9, 0, 0}));
    EXPECT_EQ(Copied(tap, -2, 4), (std::vector<float>{0, 0, 0, 1}));
    EXPECT_EQ(Copied(tap, 1000, 2), (std::vector<float>{0, 0}));
    EXPECT_EQ(Copied(tap, -1000, 2), (std::vector<float>{0, 0}));
    EXPECT_TRUE(Copied(tap, 5, 0).empty());
}

TEST(SoundTap, WhileNobodyListensFramesAreOnlyCounted)
{
    SoundTap tap;
    tap.Note(Numbered(0, 10));
    EXPECT_EQ(tap.PassedFrames(), 10);
    tap.Listen(true);
    tap.Note(Numbered(10, 10));
    EXPECT_EQ(Copied(tap, 8, 4), (std::vector<float>{0, 0, 10, 11}));
    tap.Listen(false);
    tap.Note(Numbered(20, 10));
    tap.Listen(true);
    tap.Note(Numbered(30, 10));
    EXPECT_EQ(Copied(tap, 18, 14),
              (std::vector<float>{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 30, 31}));
}

TEST(SoundTap, OldFramesGiveWayToNewOnes)
{
    SoundTap tap;
    tap.Listen(true);
    for (std::int64_t frame = 0; frame < SoundTap::kDepthFrames + 700; frame += 350) {
        tap.Note(Numbered(frame, 350));
    }
    const std::int64_t oldest = tap.PassedFrames() - SoundTap::kDepthFrames;
    const auto number = static_cast<float>(oldest);
    EXPECT_EQ(Copied(tap, oldest - 2, 4), (std::vector<float>{0, 0, number, number + 1}));
}

TEST(SoundTap, AfterARestartTheCountBeginsAnew)
{
    SoundTap tap;
    tap.Listen(true);
    tap.Note(Numbered(1000, 100));
    tap.Restart();
    EXPECT_EQ(tap.PassedFrames(), 0);
    EXPECT_EQ(Copied(tap, 0, 3), (std::vector<float>{0, 0, 0}));
    tap.Note(Numbered(7, 2));
    EXPECT_EQ(Copied(tap, 0, 3), (std::vector<float>{7, 8, 0}));
}

TEST(SoundTap, WhatWasNotKeptBeforeARestartHidesNothingAfterIt)
{
    SoundTap tap;
    tap.Note(Numbered(0, 100));
    tap.Listen(true);
    tap.Restart();
    tap.Note(Numbered(7, 3));
    EXPECT_EQ(Copied(tap, 0, 4), (std::vector<float>{7, 8, 9, 0}));
}

// The reader never meets a frame under another one's number, however far the writer has gone on.
TEST(SoundTap, AFrameIsTheRightOneOrSilenceWhileOthersPass)
{
    constexpr std::int64_t kNumbers = 64 * SoundTap::kDepthFrames;
    SoundTap tap;
    tap.Listen(true);
    std::atomic<bool> done = false;
    std::thread noting([&] {
        for (std::int64_t frame = 0; !done; frame += 512) {
            tap.Note(Numbered(frame % kNumbers, 512));
        }
    });
    int found = 0;
    int wrong = 0;
    std::int64_t last = 0;
    for (int round = 0; round < 300 || found < 20000;) {
        const std::int64_t passed = tap.PassedFrames();
        if (passed == std::exchange(last, passed)) {
            std::this_thread::yield();
            continue;
        }
        // About to be overwritten, or about to come.
        const std::int64_t back = ++round % 2 == 0 ? SoundTap::kDepthFrames : 300;
        std::int64_t frame = std::max<std::int64_t>(passed - back, 0);
        for (const float left : Copied(tap, frame, 600)) {
            const auto number = static_cast<float>(frame++ % kNumbers);
            found += left == number && left != 0.0F;
            wrong += left != number && left != 0.0F;
        }
        tap.Listen(round % 100 < 80);
    }
    done = true;
    noting.join();
    EXPECT_EQ(wrong, 0);
}

} // namespace
} // namespace lantern
