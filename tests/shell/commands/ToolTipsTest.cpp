// SPDX-License-Identifier: GPL-3.0-or-later
#include "ToolTips.h"

#include <gtest/gtest.h>

namespace lantern {
namespace {

TEST(ToolTips, TheKeyIsLeftOutOfTheName)
{
    EXPECT_EQ(WithoutKey(u"Open (O)"), QStringLiteral("Open"));
    EXPECT_EQ(WithoutKey(u"Track (T) - Adjust With Wheel"),
              QStringLiteral("Track - Adjust With Wheel"));
    EXPECT_EQ(WithoutKey(u"Reduce Display Size (-)"), QStringLiteral("Reduce Display Size"));
    EXPECT_EQ(WithoutKey(u"No key"), QStringLiteral("No key"));
    EXPECT_EQ(WithoutKey(u"Half (open"), QStringLiteral("Half (open"));
    EXPECT_EQ(WithoutKey(u""), QString());
}

} // namespace
} // namespace lantern
