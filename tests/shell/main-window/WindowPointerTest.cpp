// SPDX-License-Identifier: GPL-3.0-or-later
// Where the mouse's pointer can be seen.
#include "WindowHand.h"

namespace lantern {
namespace {

class WindowPointerTest : public WindowHand {
protected:
    void EnterFullScreenWithBar()
    {
        Press('F');
        Settle();
        MouseMove({window.width() / 2, window.height() - 2});
        Press('V'); // a message, too
        ASSERT_TRUE(PartNamed("TBar").isVisible());
        ASSERT_TRUE(Message().isVisible());
    }

    // Over each part of the window that can be seen, whether it stands in front of the pointer.
    void ExpectPointerIsSeenButOverThePicture()
    {
        for (const QWidget* part : window.findChildren<QWidget*>()) {
            if (part->isVisible()) {
                EXPECT_EQ(IsPointerBlank(*part), part == &PartNamed("pic"))
                    << part->objectName().toStdString();
            }
        }
    }
};

TEST_F(WindowPointerTest, AfterAMenuOverTheBarOnlyPictureAndBareWindowHideIt)
{
    Load(MakeBlueTrack());
    EnterFullScreenWithBar();
    EXPECT_TRUE(
        WithMenu([this] { Click(BarePlaceOf("TBar"), Qt::RightButton); }, [](frmMenus&) {}));
    EXPECT_TRUE(IsPointerBlank(window));
    ExpectPointerIsSeenButOverThePicture();
}

TEST_F(WindowPointerTest, AfterTheDeviceMenuToo)
{
    Load(MakeBlueTrack());
    EnterFullScreenWithBar();
    EXPECT_TRUE(WithMenu([this] { window.ShowDeviceMenu(); }, [](frmMenus&) {}));
    EXPECT_TRUE(IsPointerBlank(window));
    ExpectPointerIsSeenButOverThePicture();
}

TEST_F(WindowPointerTest, OutsideFullScreenItIsSeenEverywhere)
{
    Load(MakeBlueTrack());
    Press('F');
    Settle();
    Press('F');
    Settle();
    EXPECT_FALSE(IsPointerBlank(window));
    for (const QWidget* part : window.findChildren<QWidget*>())
        EXPECT_FALSE(IsPointerBlank(*part)) << part->objectName().toStdString();
}

} // namespace
} // namespace lantern
