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

TEST_F(Wayland, TheMenuOpensAtThePointerWhereverTheWindowIs)
{
    OpenTone();
    // To where the program would not have put it.
    const QRect start = PictureArea();
    hand.Drag({start.x() + 50, start.y() + 50}, {80, 80});
    ASSERT_TRUE(Eventually([&] { return PictureArea().topLeft() == QPoint(30, 30); }, kPatience))
        << PictureArea().x() << ", " << PictureArea().y();
    for (const Point point : {Point{100, 60}, Point{500, 300}, Point{300, 420}}) {
        hand.Click(point, 3);
        EXPECT_TRUE(AwaitMenu(point)) << point.x << ", " << point.y;
        hand.Key("Escape");
        EXPECT_TRUE(AwaitNoMenu(point));
    }
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

TEST_F(WaylandOptions, TheMenuOpensAtThePointerInFrontOfThem)
{
    ShowOptions();
    hand.Click(At(60, 190), 3);
    EXPECT_TRUE(AwaitMenu(At(60, 190)));
    hand.Key("Escape");
    EXPECT_TRUE(AwaitNoMenu(At(60, 190)));
    hand.Click(At(150, 135));
    EXPECT_TRUE(AwaitMenu(At(150, 135))) << "of the sound devices";
    hand.Key("Escape");
    EXPECT_TRUE(AwaitNoMenu(At(150, 135)));
    hand.Click(At(392, 200));
    ExpectKeyboardAtPlayer();
}

} // namespace
} // namespace lantern::test
