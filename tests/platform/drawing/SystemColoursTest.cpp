// SPDX-License-Identifier: GPL-3.0-or-later
#include "SystemColours.h"

#include <gtest/gtest.h>

namespace lantern {
namespace {

TEST(SystemColours, ADirectColourHasRedInItsLowByte)
{
    EXPECT_EQ(ResolveColour(0x0008ABFF), 0xFFFFAB08);
    EXPECT_EQ(ResolveColour(DirectColour(255, 171, 8)), 0xFFFFAB08);
    EXPECT_EQ(ResolveColour(255), 0xFFFF0000);
}

TEST(SystemColours, TheTopBitMakesAReference)
{
    EXPECT_EQ(ResolveColour(0x8000000F), ResolveColour(SystemColour::ButtonFace));
    EXPECT_EQ(ResolveColour(0x80000014), 0xFFFFFFFF);
    EXPECT_EQ(ResolveColour(0x80000010), 0xFF808080);
    EXPECT_EQ(SystemReference(SystemColour::ButtonText), 0x80000012);
}

TEST(SystemColours, ANumberOfNoSystemColourIsBlack)
{
    EXPECT_EQ(ResolveColour(0x8000001F), 0xFF000000);
    EXPECT_EQ(ResolveColour(0x800000FF), 0xFF000000);
    EXPECT_EQ(ResolveColour(0xFFFFFFFF), 0xFF000000);
}

} // namespace
} // namespace lantern
