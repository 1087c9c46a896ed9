// SPDX-License-Identifier: GPL-3.0-or-later
#include "DeviceMenu.h"

#include <gtest/gtest.h>

namespace lantern {
namespace {

TEST(DeviceMenuItems, ListTheDevicesThenASeparatorAndCancel)
{
    const std::vector<MenuEntry> expected = {{QStringLiteral("Default"), QStringLiteral("1000")},
                                             {QStringLiteral("HDMI"), QStringLiteral("1001")},
                                             {QStringLiteral("-"), QString()},
                                             {QStringLiteral("Cancel"), QStringLiteral("-1")}};
    EXPECT_EQ(DeviceMenuItems({QStringLiteral("Default"), QStringLiteral("HDMI")}), expected);
}

} // namespace
} // namespace lantern
