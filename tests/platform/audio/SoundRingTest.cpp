// SPDX-License-Identifier: GPL-3.0-or-later
#include "SoundRing.h"

#include <gtest/gtest.h>

#include <array>
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
