// SPDX-License-Identifier: GPL-3.0-or-later
#include "KnownScreens.h"

#include <gtest/gtest.h>

namespace lantern {
namespace {

ScreenIdentity Known(const char* name, const char* maker = "", const char* model = "",
                     const char* serial = "")
{
    return {QLatin1String(name), QLatin1String(maker), QLatin1String(model), QLatin1String(serial)};
}

TEST(KnownScreensTest, AScreenIsKnownOnAnyPlug)
{
    const ScreenIdentities screens = {Known("eDP-1"), Known("HDMI-1", "Acme", "TV", "7"),
                                      Known("HDMI-2", "Acme", "TV", "8")};
    EXPECT_EQ(FindScreen(Known("DP-3", "Acme", "TV", "8"), screens), 2U);
    EXPECT_EQ(FindScreen(Known("HDMI-1", "Acme", "TV", "9"), screens), std::nullopt)
        << "another one on the plug is not meant";
    EXPECT_EQ(FindScreen(Known("HDMI-1", "Other", "TV", "7"), screens), std::nullopt);
    EXPECT_EQ(FindScreen(Known("HDMI-1", "Acme", "Projector", "7"), screens), std::nullopt);
}

TEST(KnownScreensTest, OfSeveralThatTellTheSameItIsTheOneOnThePlug)
{
    const ScreenIdentities screens = {Known("HDMI-1", "Acme", "TV"), Known("HDMI-2", "Acme", "TV")};
    EXPECT_EQ(FindScreen(Known("HDMI-2", "Acme", "TV"), screens), 1U);
    EXPECT_EQ(FindScreen(Known("HDMI-1", "Acme", "TV"), screens), 0U);
    EXPECT_EQ(FindScreen(Known("HDMI-3", "Acme", "TV"), screens), 0U);
}

TEST(KnownScreensTest, OneThatTellsNothingIsKnownByItsPlug)
{
    const ScreenIdentities screens = {Known("VGA-1", "Acme", "TV"), Known("VGA-2")};
    EXPECT_EQ(FindScreen(Known("VGA-2"), screens), 1U);
    EXPECT_EQ(FindScreen(Known("VGA-1"), screens), 0U);
    EXPECT_EQ(FindScreen(Known("VGA-3"), screens), std::nullopt);
    EXPECT_EQ(FindScreen(Known("VGA-2", "Acme", "TV"), screens), 0U);
    EXPECT_EQ(FindScreen(Known(""), screens), std::nullopt);
    EXPECT_EQ(FindScreen(Known(""), {Known("")}), std::nullopt) << "none is no screen";
}

TEST(KnownScreensTest, OfScreensThatNothingTellsApartItIsAFreeOne)
{
    const ScreenIdentities screens = {Known("screen"), Known("screen"), Known("other")};
    const auto isFree = [](std::size_t screen) { return screen != 0; };
    EXPECT_EQ(FindFreeScreen(Known("screen"), screens, isFree), 1U);
    EXPECT_EQ(FindFreeScreen(Known("screen"), {Known("screen"), Known("other")}, isFree), 0U);
    EXPECT_EQ(FindFreeScreen(Known("other"), screens, isFree), 2U);
    EXPECT_EQ(FindFreeScreen(Known("another"), screens, isFree), std::nullopt);
}

TEST(KnownScreensTest, ScreensAreCalledByWhatTellsThemApart)
{
    EXPECT_EQ(ScreenCaptions({Known("eDP-1"), Known("HDMI-1", "Acme", "TV", "7")}),
              (QStringList{QStringLiteral("eDP-1"), QStringLiteral("Acme TV")}));
    EXPECT_EQ(ScreenCaptions({Known("HDMI-1", "Acme", "TV", "7"),
                              Known("HDMI-2", "Acme", "TV", "8"), Known("HDMI-3", "Acme", "TV")}),
              (QStringList{QStringLiteral("Acme TV (7)"), QStringLiteral("Acme TV (8)"),
                           QStringLiteral("Acme TV (HDMI-3)")}));
    EXPECT_EQ(
        ScreenCaptions({Known("HDMI-1", "Acme", "TV", "1"), Known("HDMI-2", "Acme", "TV", "1")}),
        (QStringList{QStringLiteral("Acme TV (HDMI-1)"), QStringLiteral("Acme TV (HDMI-2)")}));
    EXPECT_EQ(ScreenCaption(Known("HDMI-1", "Acme", "ACME TV")), QStringLiteral("ACME TV"));
    EXPECT_EQ(ScreenCaption(Known("HDMI-1", "", "TV")), QStringLiteral("TV"));
    EXPECT_EQ(ScreenCaption(Known("", "Acme", "", "7")), QStringLiteral("7"));
}

} // namespace
} // namespace lantern
