// SPDX-License-Identifier: GPL-3.0-or-later
#include "SoundTimeline.h"

#include <gtest/gtest.h>

namespace lantern {
namespace {

TEST(SoundTimeline, OneStretchIsALine)
{
    SoundTimeline timeline;
    timeline.Restart(1000, 0.5);
    EXPECT_EQ(timeline.MediaAt(0), 1000);
    EXPECT_EQ(timeline.MediaAt(1.5), 1000.75);
    EXPECT_EQ(timeline.MediaAt(-20), 1000);
}

TEST(SoundTimeline, EachStretchBeginsAtItsFrame)
{
    SoundTimeline timeline;
    timeline.Restart(0, 1.0);
    timeline.Change(100, 100, 0.5);
    timeline.Change(300, 200, 2.0);
    EXPECT_EQ(timeline.MediaAt(99), 99);
    EXPECT_EQ(timeline.MediaAt(100), 100);
    EXPECT_EQ(timeline.MediaAt(299), 199.5);
    EXPECT_EQ(timeline.MediaAt(310), 220);
}

TEST(SoundTimeline, AChangeReplacesWhatWasToComeThere)
{
    SoundTimeline timeline;
    timeline.Restart(0, 1.0);
    timeline.Change(100, 100, 0.5);
    timeline.Change(200, 150, 2.0);
    timeline.SetEnd(300);
    timeline.Change(150, 125, 1.0);
    EXPECT_EQ(timeline.End(), std::nullopt);
    EXPECT_EQ(timeline.MediaAt(140), 120);
    EXPECT_EQ(timeline.MediaAt(250), 225);
    timeline.Change(0, 7, 1.0);
    EXPECT_EQ(timeline.MediaAt(250), 257);
    timeline.SetEnd(300);
    timeline.Change(300, 500, 1.0);
    EXPECT_EQ(timeline.End(), std::nullopt);
    EXPECT_EQ(timeline.MediaAt(350), 550);
}

TEST(SoundTimeline, TheSilenceAfterTheEndDoesNotCount)
{
    SoundTimeline timeline;
    timeline.Restart(0, 2.0);
    EXPECT_EQ(timeline.End(), std::nullopt);
    timeline.SetEnd(50);
    EXPECT_EQ(timeline.MediaAt(49), 98);
    EXPECT_EQ(timeline.MediaAt(1000), 100);
    timeline.Restart(7, 1.0);
    EXPECT_EQ(timeline.End(), std::nullopt);
    EXPECT_EQ(timeline.MediaAt(1000), 1007);
}

TEST(SoundTimeline, WhatIsForgottenWasHeard)
{
    SoundTimeline timeline;
    timeline.Restart(0, 1.0);
    timeline.Change(100, 500, 1.0);
    timeline.Change(200, 900, 1.0);
    timeline.Forget(99.5);
    EXPECT_EQ(timeline.MediaAt(50), 50);
    timeline.Forget(150);
    EXPECT_EQ(timeline.MediaAt(150), 550);
    EXPECT_EQ(timeline.MediaAt(250), 950);
    timeline.Forget(5000);
    EXPECT_EQ(timeline.MediaAt(250), 950);
    timeline.Change(300, 2000, 1.0);
    EXPECT_EQ(timeline.MediaAt(250), 950) << "the last one is never forgotten";
    timeline.Restart(70, 1.0);
    timeline.Forget(5000);
    timeline.Change(300, 2000, 1.0);
    EXPECT_EQ(timeline.MediaAt(250), 320);
}

} // namespace
} // namespace lantern
