// SPDX-License-Identifier: GPL-3.0-or-later
// The singer's screen on the second of two outputs of a compositor.
#include "WaylandJourney.h"

namespace lantern::test {
namespace {

class WaylandSinger : public WaylandJourney {
protected:
    WaylandSinger() : WaylandJourney({1, 1}) {}

    static constexpr int kHalf = kScreenSize.width() / 2;
    const Point middle = {kHalf + kHalf / 2, kScreenSize.height() / 2};
};

TEST_F(WaylandSinger, ItFillsTheOtherOutputAndKeysStayThePlayers)
{
    OpenTone();
    const QRect window = WindowArea();
    ASSERT_TRUE(QRect(0, 0, kHalf, kScreenSize.height()).contains(window));
    EXPECT_EQ(eyes.At(middle), QRgb{WaylandServer::kBackground});
    hand.Key("F2");
    ASSERT_FALSE(AwaitFrame({412, 378}).isEmpty());
    Keys("shift+Tab", 2);
    Keys("Down", 2); // from none to the player's own, and to the other
    EXPECT_TRUE(AwaitColour(middle, kPicture));
    EXPECT_TRUE(AwaitColour({kHalf + 2, 2}, kBorder));
    EXPECT_TRUE(AwaitColour({kScreenSize.width() - 3, kScreenSize.height() - 3}, kBorder));
    // Whoever has the keyboard now.
    hand.Key("m");
    EXPECT_TRUE(AwaitSilence());
    hand.Key("m");
    EXPECT_TRUE(AwaitSound());
    KeepPicture(eyes.Screen(), "wayland-singer");
}

} // namespace
} // namespace lantern::test
