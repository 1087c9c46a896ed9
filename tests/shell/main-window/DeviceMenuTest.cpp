// SPDX-License-Identifier: GPL-3.0-or-later
#include "DeviceMenu.h"

#include <gtest/gtest.h>

namespace lantern {
namespace {

TEST(DeviceMenuItems, ListTheDevicesThenASeparatorAndCancel)
{
    const std::vector<MenuEntry> expected = {
        {QStringLiteral("Default"), QStringLiteral("1000"), false},
        {QStringLiteral("HDMI"), QStringLiteral("1001"), true},
        {QStringLiteral("-"), QString()},
        {QStringLiteral("Cancel"), QStringLiteral("-1")}};
    EXPECT_EQ(DeviceMenuItems({QStringLiteral("Default"), QStringLiteral("HDMI")}, 1), expected);
}

} // namespace
} // namespace lantern
