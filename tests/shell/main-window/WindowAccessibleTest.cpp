// SPDX-License-Identifier: GPL-3.0-or-later
// What assistive tools are told of the main window.
#include "WindowHand.h"

#include <QAccessible>

namespace lantern {
namespace {

class WindowAccessibleTest : public WindowHand {
protected:
    static QAccessibleInterface& KnownAs(QWidget& widget)
    {
        return *QAccessible::queryAccessibleInterface(&widget);
    }
};

TEST_F(WindowAccessibleTest, EachPartIsWhatItIs)
{
    Load(MakeBlueTrack());
    EXPECT_EQ(KnownAs(window).role(), QAccessible::Window);
    EXPECT_EQ(KnownAs(PartNamed("pic")).role(), QAccessible::Graphic);
    EXPECT_EQ(KnownAs(Message()).role(), QAccessible::Notification);
    EXPECT_EQ(KnownAs(PartNamed("ctlVolume")).role(), QAccessible::Slider);
    EXPECT_TRUE(KnownAs(PartNamed("pic")).state().focusable);
}

} // namespace
} // namespace lantern
