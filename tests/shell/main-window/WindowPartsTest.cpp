// SPDX-License-Identifier: GPL-3.0-or-later
// What stands on the main window is, and does what the members of the window ask of it.
#include "ProgramFont.h"
#include "WindowHand.h"
#include "ctlSkinner.h"
#include "ctlSlide.h"

namespace lantern {
namespace {

using WindowPartsTest = WindowHand;

TEST_F(WindowPartsTest, TheMessageLineIsAPlainTextInTheMiddle)
{
    Load();
    EXPECT_EQ(Message().FrameFont(), ProgramFont(QStringLiteral("Tahoma"), 11));
    EXPECT_FALSE(Message().FrameFont().bold());
    EXPECT_EQ(Message().FrameBorder(), 0);
    EXPECT_EQ(Message().frameAlign(), AlignCaptionCentre);
}

TEST_F(WindowPartsTest, ADragToTheEndOfAPlayingTrackLetsGoOfTheSlider)
{
    Load(MakeBlueTrack());
    auto& slider = PartNamed<ctlSlide>("ctlSlider");
    const QPoint middle = MiddleOf(slider);
    const QPoint end = slider.mapTo(&window, QPoint(slider.width() - 1, slider.height() / 2));
    MouseDown(middle);
    MouseMove(end);
    ASSERT_EQ(slider.Value(), slider.Max());
    MouseMove(middle); // by a hand that is slow to let go
    EXPECT_EQ(slider.Value(), slider.Max());
    MouseUp(middle);
    Click(middle);
    EXPECT_LT(slider.Value(), slider.Max());
}

TEST_F(WindowPartsTest, AMinimisedWindowPlacesNothingWhateverItsSize)
{
    Load();
    const QRect picture = PartNamed("pic").geometry();
    window.showMinimized();
    Settle();
    window.resize(900, 700);
    Settle();
    EXPECT_EQ(PartNamed("pic").geometry(), picture);
    EXPECT_EQ(PartNamed("Skinner").size(), QSize(626, 487));
    window.showNormal();
    Settle();
    EXPECT_EQ(PartNamed("Skinner").size(), window.size());
}

TEST_F(WindowPartsTest, SkinAndToolbarFollowAStateThatTheWindowSystemSets)
{
    Load();
    const auto& skinner = PartNamed<ctlSkinner>("Skinner");
    const auto& bar = PartNamed<ctlFrame>("TBar");
    EXPECT_TRUE(skinner.isVisible());
    window.setWindowState(Qt::WindowFullScreen);
    Settle();
    EXPECT_FALSE(skinner.isVisible());
    EXPECT_FALSE(bar.isVisible());
    window.setWindowState(Qt::WindowNoState);
    Settle();
    EXPECT_TRUE(skinner.isVisible());
    EXPECT_TRUE(bar.isVisible());
}

} // namespace
} // namespace lantern
