// SPDX-License-Identifier: GPL-3.0-or-later
#include "Application.h"
#include "OptionsFixture.h"

#include <QAccessible>
#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScreen>
#include <QWheelEvent>
#include <QWindow>

#include <gmock/gmock.h>

#include <algorithm>
#include <memory>

namespace lantern {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class frmOptionsTest : public OptionsFixture {
protected:
    ctlSkinner& PanelInFront()
    {
        return *dynamic_cast<ctlSkinner*>(options.childAt(options.width() / 2, 24));
    }
    bool IsOptionsInFront() { return PanelInFront().isAncestorOf(&options.lab(0)); }

    template <typename Widget>
    Widget& FindByText(const QString& text)
    {
        const QList<Widget*> all = options.findChildren<Widget*>();
        return **std::ranges::find_if(
            all, [&](const Widget* one) { return one->text().contains(text); });
    }
    QLabel& Url() { return FindByText<QLabel>(kWebSite); }
    QLabel& LabInfo() { return FindByText<QLabel>(QStringLiteral("without restriction")); }
    QWidget& AboutPic() { return *Url().parentWidget()->childAt(330, 100); }

    // All that the mouse moves the window by, apart from the panels.
    std::vector<QWidget*> Surfaces()
    {
        std::vector<QWidget*> surfaces;
        for (std::size_t i = 0; i < kOptionsLabels; ++i)
            surfaces.push_back(&options.lab(i));
        surfaces.insert(surfaces.end(), {&options.SpecPic(), &LabInfo(), &AboutPic(), &Url()});
        return surfaces;
    }

    static void Mouse(QWidget& target, QEvent::Type type, QPoint place, Qt::MouseButton button,
                      Qt::MouseButtons held)
    {
        QMouseEvent event(type, place, target.mapToGlobal(place), button, held, Qt::NoModifier);
        QApplication::sendEvent(&target, &event);
    }
    static void Press(QWidget& target, Qt::MouseButton button)
    {
        Mouse(target, QEvent::MouseButtonPress, target.rect().center(), button, button);
    }
    static void Release(QWidget& target, Qt::MouseButton button)
    {
        Mouse(target, QEvent::MouseButtonRelease, target.rect().center(), button, Qt::NoButton);
    }
    static void Click(QWidget& target, Qt::MouseButton button = Qt::LeftButton)
    {
        Press(target, button);
        Release(target, button);
    }
    // The pointer goes that far with the buttons held. A release ends it.
    QPoint Dragged(QWidget& target, QPoint distance, Qt::MouseButtons held)
    {
        const QPoint before = options.pos();
        Mouse(target, QEvent::MouseButtonPress, target.rect().center(), Qt::LeftButton, held);
        const QPoint start = target.mapToGlobal(target.rect().center());
        for (const QPoint& way : {QPoint(1, 0), distance + QPoint(1, 0)}) {
            QMouseEvent move(QEvent::MouseMove, target.mapFromGlobal(start + way), start + way,
                             Qt::NoButton, held, Qt::NoModifier);
            QApplication::sendEvent(&target, &move);
        }
        Release(target, Qt::LeftButton);
        return options.pos() - before;
    }

    static void Key(QWidget& target, QEvent::Type type, int key, bool isRepeat = false,
                    Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QKeyEvent event(type, key, modifiers, QString(), isRepeat);
        QApplication::sendEvent(&target, &event);
    }

    template <typename Predicate>
    static bool Await(Predicate isSo)
    {
        QElapsedTimer waited;
        waited.start();
        while (!isSo() && waited.elapsed() < 10000)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
        return isSo();
    }

    std::vector<std::string> Done()
    {
        std::vector<std::string> actions = engine.Actions();
        engine.Log.clear();
        return actions;
    }
};

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

TEST_F(frmOptionsTest, TheButtonsLeadFromPanelToPanelAndHide)
{
    ShowOptions();
    Click(options.cmd(1));
    EXPECT_FALSE(IsOptionsInFront());
    Click(options.cmd(3));
    EXPECT_TRUE(IsOptionsInFront());
    Click(options.cmd(0));
    EXPECT_FALSE(options.isVisible());
    ShowAbout();
    Click(options.cmd(2));
    EXPECT_FALSE(options.isVisible());
    EXPECT_THAT(Done(), IsEmpty());
    EXPECT_THAT(player.Calls, IsEmpty());
}

TEST_F(frmOptionsTest, TheCustomButtonsToggleTheirValues)
{
    ShowOptions();
    audio.CustomBalance = -30;
    audio.CustomKeyPitch = 4;
    audio.CustomSpeed = 25;
    Click(options.cmd(5));
    EXPECT_EQ(engine.Balance, -30);
    EXPECT_EQ(audio.WheelType, WheelMode::Balance);
    Click(options.cmd(6));
    EXPECT_EQ(engine.Pitch, 4);
    EXPECT_EQ(audio.WheelType, WheelMode::KeyPitch);
    Click(options.cmd(7));
    EXPECT_EQ(engine.Tempo, 25);
    EXPECT_EQ(audio.WheelType, WheelMode::Speed);
    Click(options.cmd(8));
    EXPECT_EQ(engine.Volume, 0);
    EXPECT_EQ(audio.WheelType, WheelMode::Volume);
    for (const std::size_t again : {5u, 6u, 7u, 8u})
        Click(options.cmd(again));
    EXPECT_EQ(engine.Balance, 0);
    EXPECT_EQ(engine.Pitch, 0);
    EXPECT_EQ(engine.Tempo, 0);
    EXPECT_EQ(engine.Volume, 100);
}

TEST_F(frmOptionsTest, TheCheckButtonDecidesWhetherTheDeviceIsRemembered)
{
    ShowOptions();
    for (const bool isOn : {true, false}) {
        Click(options.cmd(4));
        EXPECT_EQ(options.cmd(4).Value(), isOn);
        EXPECT_EQ(audio.AudioSave, isOn);
    }
}

TEST_F(frmOptionsTest, EitherDeviceButtonOpensTheMenuOfDevicesAndGivesTheFocusBack)
{
    ShowOptions();
    for (const std::size_t index : {0u, 1u}) {
        player.Calls.clear();
        options.dev(index).setFocus();
        Click(options.dev(index));
        EXPECT_THAT(player.Calls, ElementsAre("device menu"));
        EXPECT_EQ(options.focusWidget(), &options.SpecPic());
        EXPECT_FALSE(options.dev(index).Value());
    }
}

// The window's value, then the wheel's current value once more, as the user touches it.
TEST_F(frmOptionsTest, ASliderTakesTheWheelAndThenSetsItsValue)
{
    ShowOptions();
    options.ctlBalance().ScrollTo(-20);
    EXPECT_THAT(audioHost.Statuses, ElementsAre("Balance: DEFAULT", "Balance: -20"));
    EXPECT_EQ(audio.WheelType, WheelMode::Balance);
    options.ctlKeyPitch().ScrollTo(3);
    EXPECT_EQ(audio.WheelType, WheelMode::KeyPitch);
    options.ctlSpeed().ScrollTo(12);
    EXPECT_EQ(audio.WheelType, WheelMode::Speed);
    options.ctlVolume().ScrollTo(45);
    EXPECT_EQ(audio.WheelType, WheelMode::Volume);
    EXPECT_EQ(audioHost.Statuses.back(), "Volume: 45%");
    EXPECT_EQ(engine.Balance, -20);
    EXPECT_EQ(engine.Pitch, 3);
    EXPECT_EQ(engine.Tempo, 12);
    EXPECT_EQ(engine.Volume, 45);
}

TEST_F(frmOptionsTest, ThePressOfTheMouseOnASliderIsHeard)
{
    ShowOptions();
    Mouse(options.ctlVolume(), QEvent::MouseButtonPress, {100, 6}, Qt::LeftButton, Qt::LeftButton);
    EXPECT_EQ(engine.Volume, 50);
    Mouse(options.ctlVolume(), QEvent::MouseMove, {300, 6}, Qt::NoButton, Qt::LeftButton);
    EXPECT_EQ(engine.Volume, 100);
    Mouse(options.ctlVolume(), QEvent::MouseMove, {-9, 6}, Qt::NoButton, Qt::LeftButton);
    EXPECT_EQ(engine.Volume, 0);
    EXPECT_EQ(options.size(), QSize(412, 220));
}

TEST_F(frmOptionsTest, AValueThatASliderHoldsAlreadyIsNotSetAgain)
{
    options.ctlVolume().SetValue(100);
    options.ctlBalance().SetValue(0);
    EXPECT_THAT(Done(), IsEmpty());
    EXPECT_EQ(audio.WheelType, WheelMode::Volume);
}

TEST_F(frmOptionsTest, TheSlidersHaveTheRangesOfTheirValues)
{
    const auto rangeOf = [](const ctlSlide& slider) {
        return std::vector<std::int32_t>{slider.Min(), slider.Max(), slider.Value()};
    };
    EXPECT_THAT(rangeOf(options.ctlBalance()), ElementsAre(-50, 50, 0));
    EXPECT_THAT(rangeOf(options.ctlKeyPitch()), ElementsAre(-10, 10, 0));
    EXPECT_THAT(rangeOf(options.ctlSpeed()), ElementsAre(-90, 90, 0));
    EXPECT_THAT(rangeOf(options.ctlVolume()), ElementsAre(0, 100, 100));
    EXPECT_EQ(options.ctlVolume().SliderBack(), 4210752u);
    EXPECT_EQ(options.ctlBalance().SliderBack(), 568319u);
}

TEST_F(frmOptionsTest, KeysGoToThePlayerWhateverHasTheFocus)
{
    ShowOptions();
    QWidget* const targets[] = {&options, &PanelInFront(), &options.SpecPic(), &options.ctlSpeed(),
                                &options.dev(1)};
    for (QWidget* target : targets) {
        player.Calls.clear();
        Key(*target, QEvent::KeyPress, Qt::Key_M, false, Qt::ControlModifier);
        Key(*target, QEvent::KeyRelease, Qt::Key_M);
        EXPECT_THAT(player.Calls, ElementsAre("down 77 2", "up 77 0"));
    }
}

TEST_F(frmOptionsTest, AHeldKeyActsOnceUnlessItIsOneThatRepeats)
{
    ShowOptions();
    for (const int key : {Qt::Key_Escape, Qt::Key_Up}) {
        Key(options, QEvent::KeyPress, key);
        for (int i = 0; i < 2; ++i) {
            Key(options, QEvent::KeyRelease, key, true);
            Key(options, QEvent::KeyPress, key, true);
        }
        Key(options, QEvent::KeyRelease, key);
    }
    EXPECT_THAT(player.Calls, ElementsAre("down 27 0", "up 27 0", "down 38 0", "down 38 0",
                                          "down 38 0", "up 38 0"));
}

TEST_F(frmOptionsTest, RepeatsWithoutTheirMarkAreKnownByTheirMoment)
{
    ShowOptions();
    QKeyEvent down(QEvent::KeyPress, Qt::Key_M, Qt::NoModifier);
    down.setTimestamp(1000);
    QApplication::sendEvent(&options.SpecPic(), &down);
    for (quint64 moment = 1300; moment < 1400; moment += 40) {
        QKeyEvent release(QEvent::KeyRelease, Qt::Key_M, Qt::NoModifier);
        release.setTimestamp(moment);
        QApplication::sendEvent(&options.SpecPic(), &release);
        QKeyEvent press(QEvent::KeyPress, Qt::Key_M, Qt::NoModifier);
        press.setTimestamp(moment);
        QApplication::sendEvent(&options.SpecPic(), &press);
    }
    EXPECT_EQ(std::ranges::count(player.Calls, "down 77 0"), 1);
}

TEST_F(frmOptionsTest, TheWheelGoesToThePlayerNotchByNotch)
{
    ShowOptions();
    for (const int angle : {120, -120, 60, 60, 240}) {
        QWheelEvent turn(QPointF(5, 5), options.mapToGlobal(QPointF(5, 5)), {}, {0, angle},
                         Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&options, &turn);
    }
    EXPECT_THAT(player.Calls, ElementsAre("wheel 1", "wheel -1", "wheel 1", "wheel 1"));
}

TEST_F(frmOptionsTest, TheRightButtonOpensThePlayersMenuAnywhereButOnControls)
{
    ShowOptions();
    std::vector<QWidget*> surfaces = Surfaces();
    surfaces.push_back(options.cmd(0).parentWidget());
    surfaces.push_back(options.cmd(2).parentWidget());
    for (QWidget* surface : surfaces) {
        player.Calls.clear();
        Press(*surface, Qt::RightButton);
        EXPECT_THAT(player.Calls, IsEmpty()) << "it is the release that opens it";
        Release(*surface, Qt::RightButton);
        EXPECT_THAT(player.Calls, ElementsAre("menu"));
    }
    player.Calls.clear();
    for (QWidget* control :
         {static_cast<QWidget*>(&options.ctlSpeed()), static_cast<QWidget*>(&options.cmd(5)),
          static_cast<QWidget*>(&options.dev(0))})
        Click(*control, Qt::RightButton);
    EXPECT_THAT(player.Calls, IsEmpty());
}

TEST_F(frmOptionsTest, TheAddressOpensTheWebSiteAndOtherButtonsTheMenu)
{
    ShowAbout();
    Click(Url());
    EXPECT_THAT(player.Calls, ElementsAre("web site"));
    Click(Url(), Qt::MiddleButton);
    EXPECT_THAT(player.Calls, ElementsAre("web site", "menu"));
    Click(options.lab(0), Qt::MiddleButton);
    Click(LabInfo());
    Click(Url(), Qt::BackButton); // which has no number
    EXPECT_THAT(player.Calls, ElementsAre("web site", "menu"));
}

TEST_F(frmOptionsTest, AnySurfaceMovesTheWindowWithTheLeftButtonAlone)
{
    ShowOptions();
    std::vector<QWidget*> surfaces = Surfaces();
    surfaces.push_back(options.cmd(0).parentWidget());
    for (QWidget* surface : surfaces) {
        const std::string name = surface->accessibleName().toStdString();
        EXPECT_EQ(Dragged(*surface, {30, 20}, Qt::LeftButton), QPoint(30, 20)) << name;
        EXPECT_EQ(Dragged(*surface, {-30, -20}, Qt::LeftButton), QPoint(-30, -20)) << name;
        EXPECT_EQ(Dragged(*surface, {30, 20}, Qt::LeftButton | Qt::RightButton), QPoint()) << name;
        EXPECT_EQ(Dragged(*surface, {30, 20}, Qt::RightButton), QPoint()) << name;
    }
    EXPECT_EQ(std::ranges::count(player.Calls, "web site"), 2)
        << "a drag of the address doesn't open it, what is no drag does";
}

TEST_F(frmOptionsTest, NoEdgeOfItSizesIt)
{
    for (const char* word : {"OPTIONS", "ABOUT"}) {
        Show(word);
        const QSize size = options.size();
        QWidget& panel = PanelInFront();
        const QPoint corner = panel.rect().bottomRight();
        const QPoint start = panel.mapToGlobal(corner);
        Mouse(panel, QEvent::MouseButtonPress, corner, Qt::LeftButton, Qt::LeftButton);
        for (const QPoint& way : {QPoint(1, 1), QPoint(40, 30)})
            Mouse(panel, QEvent::MouseMove, panel.mapFromGlobal(start + way), Qt::NoButton,
                  Qt::LeftButton);
        Mouse(panel, QEvent::MouseButtonRelease, corner, Qt::LeftButton, Qt::NoButton);
        EXPECT_EQ(options.size(), size) << word;
    }
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

TEST_F(frmOptionsTest, ControlsDoNotMoveTheWindow)
{
    ShowOptions();
    for (QWidget* control :
         {static_cast<QWidget*>(&options.ctlSpeed()), static_cast<QWidget*>(&options.dev(1))})
        EXPECT_EQ(Dragged(*control, {30, 20}, Qt::LeftButton), QPoint());
}

TEST_F(frmOptionsTest, TheFocusRestsOnTheSpectrum)
{
    ShowOptions();
    EXPECT_EQ(options.focusWidget(), &options.SpecPic());
    for (std::size_t i = 0; i < kOptionsCommands; ++i) {
        options.ctlSpeed().setFocus();
        options.cmd(i).setFocus();
        EXPECT_EQ(options.focusWidget(), &options.SpecPic());
    }
    options.ctlSpeed().setFocus();
    QEvent activation(QEvent::WindowActivate);
    QApplication::sendEvent(&options, &activation);
    EXPECT_EQ(options.focusWidget(), &options.SpecPic());
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
