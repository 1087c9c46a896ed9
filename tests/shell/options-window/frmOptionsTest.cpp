// SPDX-License-Identifier: GPL-3.0-or-later
#include "OptionsWindowFixture.h"

#include <QAccessible>

#include <gmock/gmock.h>

namespace lantern {
namespace {

using ::testing::IsEmpty;

using frmOptionsTest = OptionsWindowFixture;

TEST_F(frmOptionsTest, ItComesIntoBeingHiddenAndInTheMiddleOfTheScreen)
{
    EXPECT_FALSE(options.isVisible());
    EXPECT_EQ(options.size(), QSize(412, 220));
    const QRect screen = QGuiApplication::primaryScreen()->geometry();
    ASSERT_NE(screen.topLeft(), QPoint(0, 0)) << "which would hide where it is counted from";
    EXPECT_EQ(options.x(), screen.x() + (screen.width() - 412) / 2);
    EXPECT_EQ(options.y(), screen.y() + (screen.height() - 220) / 2);
    EXPECT_TRUE(options.windowFlags().testFlag(Qt::FramelessWindowHint));
    EXPECT_THAT(Done(), IsEmpty()) << "the sliders take their first values without a word";
}

TEST_F(frmOptionsTest, ItsWordDecidesWhatIsSeen)
{
    Show("OPTIONS");
    EXPECT_TRUE(options.isVisible());
    EXPECT_TRUE(IsOptionsInFront());
    Show("ABOUT");
    EXPECT_TRUE(options.isVisible());
    EXPECT_FALSE(IsOptionsInFront());
    Show("OPTIONS");
    EXPECT_TRUE(IsOptionsInFront());
    Show("NONE");
    EXPECT_FALSE(options.isVisible());
    EXPECT_FALSE(IsOptionsInFront());
}

TEST_F(frmOptionsTest, HiddenItComesUpWithThePanelThatIsAskedFor)
{
    Show("ABOUT");
    EXPECT_TRUE(options.isVisible());
    EXPECT_FALSE(IsOptionsInFront());
    Show("NONE");
    Show("OPTIONS");
    EXPECT_TRUE(options.isVisible());
    EXPECT_TRUE(IsOptionsInFront());
}

TEST_F(frmOptionsTest, AnyOtherWordShowsTheAboutPanel)
{
    for (const char* word : {"", "options", "NONE ", "HELP"}) {
        Show("NONE");
        Show(word);
        EXPECT_TRUE(options.isVisible()) << word;
        EXPECT_FALSE(IsOptionsInFront()) << word;
    }
}

TEST_F(frmOptionsTest, ItStaysInFrontOfThePlayer)
{
    ShowOptions();
    EXPECT_TRUE(options.windowHandle()->flags().testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_EQ(options.windowHandle()->transientParent(), mainWindow.windowHandle());
}

TEST_F(frmOptionsTest, ItComesUpBeforeThereIsAMainWindowOnTheScreen)
{
    QWidget notYetShown;
    frmOptions early(notYetShown, player, audio, nullptr, {15, 15});
    early.ShowForm(QStringLiteral("OPTIONS"));
    EXPECT_TRUE(early.isVisible());
    EXPECT_EQ(early.windowHandle()->transientParent(), nullptr);
}

TEST_F(frmOptionsTest, EachControlHasItsPlace)
{
    EXPECT_EQ(options.cmd(5).geometry(), QRect(92, 42, 18, 14));
    EXPECT_EQ(options.cmd(8).geometry(), QRect(92, 102, 18, 13));
    EXPECT_EQ(options.ctlBalance().geometry(), QRect(118, 43, 200, 12));
    EXPECT_EQ(options.ctlVolume().geometry(), QRect(118, 103, 200, 12));
    EXPECT_EQ(options.lab(4).geometry(), QRect(331, 41, 60, 14));
    EXPECT_EQ(options.dev(1).geometry(), QRect(90, 128, 311, 14));
    EXPECT_EQ(options.cmd(4).geometry(), QRect(90, 146, 149, 16));
    EXPECT_EQ(options.SpecPic().geometry(), QRect(79, 167, 275, 36));
    EXPECT_EQ(options.cmd(0).geometry(), QRect(380, 188, 24, 24));
    EXPECT_EQ(Url().geometry(), QRect(10, 188, 392, 15));
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_EQ(options.lab(i).geometry().right() + 1, 83);
}

TEST_F(frmOptionsTest, NoTextIsCutOff)
{
    for (std::size_t i = 0; i < kOptionsLabels; ++i) {
        EXPECT_GE(options.lab(i).width(), options.lab(i).sizeHint().width()) << i;
        EXPECT_GE(options.lab(i).height(), options.lab(i).sizeHint().height()) << i;
    }
    for (const char* longest : {"DEFAULT", "MUTE", "+12.5%", "-90%", "+10"}) {
        QLabel text(QString::fromLatin1(longest));
        text.setFont(options.lab(4).font());
        EXPECT_GE(options.lab(4).width(), text.sizeHint().width()) << longest;
    }
    EXPECT_GE(LabInfo().height(), LabInfo().heightForWidth(LabInfo().width()));
    EXPECT_GE(Url().width(), Url().sizeHint().width());
    EXPECT_GE(Url().height(), Url().sizeHint().height());
}

TEST_F(frmOptionsTest, NothingLiesOnAnythingElseBesideTheAddressUnderItsButtons)
{
    ShowOptions();
    for (QWidget* panel : {options.cmd(0).parentWidget(), options.cmd(2).parentWidget()}) {
        const QList<QWidget*> all = panel->findChildren<QWidget*>(Qt::FindDirectChildrenOnly);
        for (const QWidget* one : all) {
            EXPECT_TRUE(panel->rect().adjusted(5, 5, -5, -5).contains(one->geometry()));
            for (const QWidget* other : all) {
                const bool mayMeet = one == other || one == &Url() || other == &Url();
                EXPECT_TRUE(mayMeet || !one->geometry().intersects(other->geometry()))
                    << one->toolTip().toStdString() << ", " << other->toolTip().toStdString();
            }
        }
    }
}

TEST_F(frmOptionsTest, CaptionsAndToolTipsTellWhatThingsAre)
{
    ShowOptions();
    EXPECT_EQ(PanelInFront().Caption(), QStringLiteral("Lyric Lantern CDG Player "));
    ShowAbout();
    EXPECT_EQ(PanelInFront().Caption(), QStringLiteral("Lyric Lantern CDG Player "));
    const std::array<const char*, kOptionsCommands> toolTips = {
        "Hide this window (ESC)",
        "About Lyric Lantern CDG Player (A)",
        "Hide this window (ESC)",
        "Return to Options",
        "Remember this Audio Device when you next use the Player",
        "Custom Balance",
        "Custom Key/Pitch",
        "Custom Speed/Quick Play (Q)",
        "Mute/Restore Audio (M)"};
    for (std::size_t i = 0; i < kOptionsCommands; ++i)
        EXPECT_EQ(options.cmd(i).toolTip(), QString::fromLatin1(toolTips[i]));
    for (const QString& toolTip :
         {options.dev(0).toolTip(), options.dev(1).toolTip(), options.lab(3).toolTip()})
        EXPECT_EQ(toolTip, QStringLiteral("Select the device for audio playback"));
    EXPECT_EQ(options.dev(0).Caption(), QStringLiteral("Audio "));
    EXPECT_EQ(options.cmd(4).Caption(), QStringLiteral("Remember Audio Device"));
}

TEST_F(frmOptionsTest, TheAboutTextHasItsLines)
{
    const QStringList lines = LabInfo().text().split(QStringLiteral("\r\n"));
    ASSERT_EQ(lines.size(), 6);
    EXPECT_TRUE(lines[0].contains(u"GPL-3.0-or-later"));
    EXPECT_EQ(lines[1], QString());
    EXPECT_EQ(lines[2], QStringLiteral("You may use and distribute this player without charge and "
                                       "without restriction."));
    EXPECT_EQ(lines[3], QString());
    EXPECT_TRUE(lines[4].contains(u"web site"));
    EXPECT_EQ(lines[5], QStringLiteral("Lyric Lantern Studio, our award-winning software for "
                                       "making your own CDG karaoke tracks."));
    EXPECT_EQ(Url().text(), kWebSite);
    EXPECT_EQ(Url().cursor().shape(), Qt::PointingHandCursor);
}

TEST_F(frmOptionsTest, ItMayGoWhileItsMenuOfDevicesIsOpen)
{
    auto other =
        std::make_unique<frmOptions>(mainWindow, player, audio, nullptr, TwipsPerPixel{15, 15});
    other->ShowForm(QStringLiteral("OPTIONS"));
    player.WhileDeviceMenu = [&other] { other.reset(); };
    other->dev(1).Click();
    EXPECT_EQ(other, nullptr);
}

TEST_F(frmOptionsTest, TheSpectrumLivesWhileItIsSeen)
{
    engine.Status = SoundStatus::Playing;
    engine.Analyser.Strengths = std::vector<float>(200, 0.8F);
    const auto listens = [this] { return engine.Analyser.Listening; };
    const auto goesOn = [this] {
        const int before = engine.Analyser.Measured;
        return Await([&] { return engine.Analyser.Measured > before + 1; });
    };
    EXPECT_FALSE(listens());
    ShowOptions();
    EXPECT_TRUE(goesOn());
    ShowAbout();
    EXPECT_TRUE(Await([&] { return !listens(); }));
    ShowOptions();
    EXPECT_TRUE(goesOn());
    Show("NONE");
    EXPECT_FALSE(listens());
}

TEST_F(frmOptionsTest, TheSpectrumHasTheTwoColours)
{
    engine.Status = SoundStatus::Playing;
    engine.Analyser.Strengths = std::vector<float>(200, 0.8F);
    ShowOptions();
    const auto shows = [this](QRgb colour) {
        const QImage field = options.SpecPic().grab().toImage();
        for (int y = 0; y < field.height(); ++y) {
            for (int x = 0; x < field.width(); ++x) {
                if (field.pixel(x, y) == colour)
                    return true;
            }
        }
        return false;
    };
    EXPECT_TRUE(Await([&] { return shows(ResolveColour(568319u)); }));
    EXPECT_TRUE(Await([&] { return shows(ResolveColour(3303039u)); }));
}

TEST_F(frmOptionsTest, TheTabKeyWalksOverWhatIsSeen)
{
    ShowOptions();
    Key(options.SpecPic(), QEvent::KeyPress, Qt::Key_Tab);
    EXPECT_EQ(options.focusWidget(), &options.ctlBalance());
    options.SpecPic().setFocus();
    ShowAbout();
    Key(options.SpecPic(), QEvent::KeyPress, Qt::Key_Tab);
    EXPECT_EQ(options.focusWidget(), &options.SpecPic());
}

TEST_F(frmOptionsTest, ClosingItOnlyHidesIt)
{
    int ends = 0;
    const QMetaObject::Connection counting =
        QObject::connect(qGuiApp, &QGuiApplication::lastWindowClosed, [&] { ++ends; });
    mainWindow.hide();
    ShowOptions();
    EXPECT_TRUE(options.close());
    QCoreApplication::processEvents();
    EXPECT_FALSE(options.isVisible());
    EXPECT_EQ(ends, 0);
    ShowOptions();
    EXPECT_TRUE(options.isVisible());
    EXPECT_TRUE(options.windowHandle()->flags().testFlag(Qt::WindowStaysOnTopHint));
    QObject::disconnect(counting);
}

TEST_F(frmOptionsTest, HidingItGivesTheKeyboardBackToThePlayer)
{
    ShowOptions();
    options.activateWindow();
    ASSERT_TRUE(Await([this] { return options.isActiveWindow(); }));
    Show("NONE");
    EXPECT_TRUE(Await([this] { return mainWindow.isActiveWindow(); }));
}

TEST_F(frmOptionsTest, HidingItLeavesAMinimisedPlayerAlone)
{
    ShowOptions();
    options.activateWindow();
    ASSERT_TRUE(Await([this] { return options.isActiveWindow(); }));
    mainWindow.setWindowState(Qt::WindowMinimized);
    Show("NONE");
    EXPECT_TRUE(mainWindow.isMinimized());
}

TEST_F(frmOptionsTest, MinimisedAlongWithThePlayerItDoesNotComeUpMinimised)
{
    ShowOptions();
    options.setWindowState(Qt::WindowMinimized);
    Show("NONE");
    ShowOptions();
    EXPECT_TRUE(options.isVisible());
    EXPECT_FALSE(options.isMinimized());
}

TEST_F(frmOptionsTest, ItKeepsThePlaceThatTheUserGaveIt)
{
    ShowOptions();
    Dragged(options.lab(0), {-70, 40}, Qt::LeftButton);
    const QPoint place = options.pos();
    Show("NONE");
    ShowOptions();
    EXPECT_EQ(options.pos(), place);
}

TEST_F(frmOptionsTest, ThePanelsFillTheWindow)
{
    ShowOptions();
    options.resize(500, 300);
    for (QWidget* panel : {options.cmd(0).parentWidget(), options.cmd(2).parentWidget()})
        EXPECT_EQ(panel->geometry(), QRect(0, 0, 500, 300));
}

TEST_F(frmOptionsTest, AScreenOfOtherTwipsHasTheSameWindowInItsPixels)
{
    frmOptions fine(mainWindow, player, audio, nullptr, {12, 12});
    EXPECT_EQ(fine.size(), QSize(515, 275));
    EXPECT_EQ(fine.ctlSpeed().geometry(), QRect(148, 104, 250, 15));
}

TEST_F(frmOptionsTest, AssistiveToolsKnowEveryControlByAName)
{
    const auto nameOf = [](QWidget& widget) {
        QAccessibleInterface* known = QAccessible::queryAccessibleInterface(&widget);
        return known->text(QAccessible::Name).toStdString();
    };
    EXPECT_EQ(nameOf(options.ctlBalance()), "Balance");
    EXPECT_EQ(nameOf(options.ctlKeyPitch()), "Key / Pitch");
    EXPECT_EQ(nameOf(options.ctlSpeed()), "Speed");
    EXPECT_EQ(nameOf(options.ctlVolume()), "Volume");
    EXPECT_EQ(nameOf(options.SpecPic()), "Spectrum");
    EXPECT_EQ(nameOf(options.cmd(5)), "Custom Balance");
    for (QWidget* control : options.findChildren<QWidget*>())
        EXPECT_NE(nameOf(*control), "") << control->metaObject()->className();
    EXPECT_EQ(options.lab(7).accessibleDescription(), QStringLiteral("Volume"));
}

} // namespace
} // namespace lantern
