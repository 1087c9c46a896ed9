// SPDX-License-Identifier: GPL-3.0-or-later
// What assistive tools are told of the options window.
#include "OptionsFixture.h"

#include <QAccessible>

#include <gmock/gmock.h>

namespace lantern {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;

class OptionsAccessibleTest : public OptionsFixture {
protected:
    static QAccessibleInterface& KnownAs(QWidget& widget)
    {
        return *QAccessible::queryAccessibleInterface(&widget);
    }
    static std::string NameOf(QWidget& widget)
    {
        return KnownAs(widget).text(QAccessible::Name).toStdString();
    }
    QWidget& OptionsPanel() { return *options.lab(0).parentWidget(); }
    QWidget& AboutPanel() { return *options.cmd(3).parentWidget(); }
};

TEST_F(OptionsAccessibleTest, TheNamesTellNoKeys)
{
    const std::array<const char*, kOptionsCommands> names = {
        "Hide this window",  "About Lyric Lantern CDG Player", "Hide this window",
        "Return to Options", "Remember Audio Device",          "Custom Balance",
        "Custom Key/Pitch",  "Custom Speed/Quick Play",        "Mute/Restore Audio"};
    for (std::size_t i = 0; i < names.size(); ++i)
        EXPECT_EQ(NameOf(options.cmd(i)), names[i]);
}

TEST_F(OptionsAccessibleTest, OnlyThePanelInFrontIsThere)
{
    QAccessibleInterface& window = KnownAs(options);
    EXPECT_EQ(window.role(), QAccessible::Dialog);
    EXPECT_EQ(window.text(QAccessible::Name), QStringLiteral("Lyric Lantern CDG Player Options"));
    const auto expectPanel = [&](QWidget& front, QWidget& behind) {
        ASSERT_EQ(window.childCount(), 1);
        EXPECT_EQ(window.child(0)->object(), &front);
        EXPECT_EQ(window.child(1), nullptr);
        EXPECT_EQ(window.child(-1), nullptr);
        EXPECT_EQ(window.indexOfChild(&KnownAs(front)), 0);
        EXPECT_EQ(window.indexOfChild(&KnownAs(behind)), -1);
        EXPECT_EQ(window.indexOfChild(nullptr), -1);
        const QPoint within = options.mapToGlobal(QPoint(20, 20));
        EXPECT_EQ(window.childAt(within.x(), within.y()), &KnownAs(front));
        EXPECT_EQ(window.childAt(within.x() - 40, within.y()), nullptr);
    };
    ShowOptions();
    expectPanel(OptionsPanel(), AboutPanel());
    ShowAbout();
    expectPanel(AboutPanel(), OptionsPanel());
}

TEST_F(OptionsAccessibleTest, TheDeviceButtonsOpenAMenuAndSwitchNothing)
{
    ShowOptions();
    for (const std::size_t index : {0U, 1U}) {
        QAccessibleInterface& button = KnownAs(options.dev(index));
        EXPECT_EQ(button.role(), QAccessible::ButtonMenu);
        EXPECT_TRUE(button.state().hasPopup);
        EXPECT_FALSE(button.state().checkable);
        EXPECT_THAT(button.actionInterface()->actionNames(),
                    Contains(QAccessibleActionInterface::pressAction()));
        EXPECT_THAT(button.actionInterface()->actionNames(),
                    ::testing::Not(Contains(QAccessibleActionInterface::toggleAction())));
        player.Calls.clear();
        button.actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QCoreApplication::processEvents();
        EXPECT_THAT(player.Calls, ElementsAre("device menu"));
    }
    options.dev(0).SetValue(true);
    EXPECT_FALSE(KnownAs(options.dev(0)).state().checked);
}

TEST_F(OptionsAccessibleTest, ThePicturesAreGraphics)
{
    EXPECT_EQ(KnownAs(options.SpecPic()).role(), QAccessible::Graphic);
    int pictures = 0;
    for (QWidget* part : AboutPanel().findChildren<QWidget*>())
        pictures += KnownAs(*part).role() == QAccessible::Graphic ? 1 : 0;
    EXPECT_EQ(pictures, 1);
}

} // namespace
} // namespace lantern
