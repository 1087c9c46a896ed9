// SPDX-License-Identifier: GPL-3.0-or-later
#include "ScreenMetrics.h"

#include <QGuiApplication>
#include <QScreen>

#include <gtest/gtest.h>

namespace lantern {
namespace {

TEST(ScreenMetrics, AScreenOfNinetySixDotsPerInchHasFifteenTwipsPerPixel)
{
    ASSERT_EQ(QGuiApplication::primaryScreen()->logicalDotsPerInchX(), 96);
    EXPECT_EQ(ScreenTwips().x, 15);
    EXPECT_EQ(ScreenTwips().y, 15);
}

TEST(ScreenMetrics, TheDesktopIsThePrimaryScreen)
{
    EXPECT_EQ(DesktopRect(), QGuiApplication::primaryScreen()->geometry());
    EXPECT_FALSE(DesktopRect().isEmpty());
}

} // namespace
} // namespace lantern
