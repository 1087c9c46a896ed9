// SPDX-License-Identifier: GPL-3.0-or-later
#include "SoundRing.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <thread>
#include <vector>

namespace lantern {
namespace {

TEST(SoundRing, AnEmptyRingGivesNothingAndAFullOneHasNoRoom)
{
    SoundRing ring;
    ring.Reset(4);
    std::array<float, 8> frames = {1, 2, 3, 4, 5, 6, 7, 8};
    EXPECT_EQ(ring.RoomFrames(), 4);
    EXPECT_EQ(ring.Read(frames), 0);
    ring.Write(frames);
    EXPECT_EQ(ring.RoomFrames(), 0);
    std::array<float, 12> heard = {};
    EXPECT_EQ(ring.Read(heard), 4);
    EXPECT_EQ(heard, (std::array<float, 12>{1, 2, 3, 4, 5, 6, 7, 8}));
}

TEST(SoundRing, FramesKeepTheirOrderAcrossTheSeam)
{
    SoundRing ring;
    ring.Reset(3);
    std::array<float, 4> heard = {};
    for (float value = 0; value < 20; value += 4) {
        ring.Write(std::array<float, 4>{value, value + 1, value + 2, value + 3});
        EXPECT_EQ(ring.Read(heard), 2);
        EXPECT_EQ(heard, (std::array<float, 4>{value, value + 1, value + 2, value + 3}));
    }
}

TEST(SoundRing, ResetForgetsWhatItHeld)
{
    SoundRing ring;
    ring.Reset(4);
    ring.Write(std::array<float, 4>{1, 2, 3, 4});
    ring.Reset(8);
    std::array<float, 4> heard = {};
    EXPECT_EQ(ring.RoomFrames(), 8);
    EXPECT_EQ(ring.Read(heard), 0);
}

TEST(SoundRing, ResetForgetsWhatWasRead)
{
    SoundRing ring;
    ring.Reset(4);
    ring.Write(std::array<float, 6>{1, 2, 3, 4, 5, 6});
    std::array<float, 4> heard = {};
    EXPECT_EQ(ring.Read(heard), 2);
    ring.Reset(4);
    EXPECT_EQ(ring.RoomFrames(), 4);
    EXPECT_EQ(ring.HeldFrames(), 0);
}

TEST(SoundRing, WhatIsTakenBackCanBeWrittenAnew)
{
    SoundRing ring;
    ring.Reset(6);
    std::array<float, 12> frames = {1, 1, 2, 2, 3, 3, 4, 4, 5, 5, 6, 6};
    ring.Write(frames);
    std::array<float, 2> one = {};
    EXPECT_EQ(ring.Read(one), 1);
    std::array<float, 4> first = {};
    EXPECT_EQ(ring.TakeBack(2, first), 3);
    EXPECT_EQ(first, (std::array<float, 4>{4, 4, 5, 5}));
    EXPECT_EQ(ring.HeldFrames(), 2);
    EXPECT_EQ(ring.RoomFrames(), 4);
    ring.Write(std::array<float, 4>{7, 7, 8, 8});
    std::array<float, 12> heard = {};
    EXPECT_EQ(ring.Read(heard), 4);
    EXPECT_EQ(heard, (std::array<float, 12>{2, 2, 3, 3, 7, 7, 8, 8}));
    EXPECT_EQ(ring.TakeBack(0, first), 0);
}

TEST(SoundRing, NoFrameIsTakenBackThatIsBeingRead)
{
    SoundRing ring;
    ring.Reset(64);
    std::atomic<bool> ends = false;
    int wrong = 0;
    std::thread reader([&] {
        std::array<float, 2 * 7> heard = {};
        for (float next = 0; !ends;) {
            const int got = ring.Read(heard);
            for (std::size_t i = 0; i < static_cast<std::size_t>(got); ++i, ++next) {
                wrong += heard[2 * i] != next || heard[2 * i + 1] != -next ? 1 : 0;
            }
            if (got == 0) {
                std::this_thread::yield();
            }
        }
    });
    // The frame count is what each frame holds, so taking back means writing the same again.
    int frame = 0;
    std::array<float, 4> first = {};
    while (frame < 20'000) {
        for (int i = 0; i < 40 && ring.RoomFrames() > 0; ++i) {
            const auto value = static_cast<float>(frame++);
            ring.Write(std::array<float, 2>{value, -value});
        }
        const int taken = ring.TakeBack(20, first);
        frame -= taken;
        if (taken > 0) {
            EXPECT_EQ(first[0], static_cast<float>(frame));
        }
        std::this_thread::yield();
    }
    ends = true;
    reader.join();
    EXPECT_EQ(wrong, 0);
}

TEST(SoundRing, NoFrameIsLostBetweenTwoThreads)
{
    SoundRing ring;
    ring.Reset(61);
    constexpr int kFrames = 100'000;
    std::thread writer([&ring] {
        for (int frame = 0; frame < kFrames;) {
            if (ring.RoomFrames() > 0) {
                const auto value = static_cast<float>(frame++);
                ring.Write(std::array<float, 2>{value, -value});
            } else {
                std::this_thread::yield();
            }
        }
    });
    int wrong = 0;
    std::array<float, 2 * 17> heard = {};
    for (int frame = 0; frame < kFrames;) {
        const int got = ring.Read(heard);
        for (std::size_t i = 0; i < static_cast<std::size_t>(got); ++i, ++frame) {
            const auto value = static_cast<float>(frame);
            wrong += heard[2 * i] != value || heard[2 * i + 1] != -value ? 1 : 0;
        }
        if (got == 0) {
            std::this_thread::yield();
        }
    }
    writer.join();
    EXPECT_EQ(wrong, 0);
}

} // namespace
} // namespace lantern
