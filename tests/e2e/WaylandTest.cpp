// SPDX-License-Identifier: GPL-3.0-or-later
#include "WaylandJourney.h"

#include <numbers>

namespace lantern::test {
namespace {

class Wayland : public WaylandJourney {};

TEST_F(Wayland, ATrackIsSeenAndHeard)
{
    OpenTone();
    EXPECT_TRUE(AwaitTone(440.0));
    KeepPicture(eyes.Screen(), "wayland");
    // By this the desktop finds the entry with the name and the icon of a window.
    EXPECT_TRUE(AwaitRequest("set_app_id(\"io.github.lyric_lantern.player\")"));
    EXPECT_TRUE(AwaitRequest(std::string("set_title(\"") + kMainTitle + "\")"));
    hand.Click(PicturePoint());
    hand.Key("ctrl+q");
    EXPECT_EQ(program->WaitForExit(kPatience), 0);
}

// However the options are closed, the keys are the player's again, without a click.
class WaylandOptions : public WaylandJourney {
protected:
    void ShowOptions()
    {
        OpenTone();
        hand.Key("Escape");
        m_area = AwaitFrame(kOptions);
        ASSERT_FALSE(m_area.isEmpty());
    }
    Point At(int x, int y) const { return {m_area.x() + x * scale, m_area.y() + y * scale}; }
    void ExpectKeyboardAtPlayer()
    {
        ASSERT_TRUE(AwaitNoFrame(kOptions));
        hand.Key("p");
        EXPECT_TRUE(AwaitSilence());
    }

private:
    QRect m_area;
};

TEST_F(WaylandOptions, GiveTheKeyboardBackByAKey)
{
    ShowOptions();
    for (int i = 0; i < 3; ++i) {
        hand.Key("Escape");
        ASSERT_TRUE(AwaitNoFrame(kOptions));
        hand.Key("Escape");
        ASSERT_FALSE(AwaitFrame(kOptions).isEmpty());
    }
    hand.Key("Escape");
    ExpectKeyboardAtPlayer();
}

TEST_F(WaylandOptions, GiveTheKeyboardBackByTheirButton)
{
    ShowOptions();
    hand.Click(At(218, 109)); // the volume
    EXPECT_TRUE(AwaitLevel(Side::Left, kLoudness / 2 / std::numbers::sqrt2, 0.01));
    hand.Click(At(392, 200));
    ExpectKeyboardAtPlayer();
}

} // namespace
} // namespace lantern::test
