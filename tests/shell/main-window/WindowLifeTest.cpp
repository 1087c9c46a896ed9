// SPDX-License-Identifier: GPL-3.0-or-later
// How the main window comes, comes forward, and goes, whoever sees to it.
#include "PopMenu.h"
#include "WindowHand.h"

#include <memory>

namespace lantern {
namespace {

using WindowLifeTest = WindowHand;

// What is written to the terminal meanwhile.
std::string ComplaintOf(const std::function<void()>& act)
{
    testing::internal::CaptureStderr();
    act();
    return testing::internal::GetCapturedStderr();
}

TEST_F(WindowLifeTest, AStartWithATrackThatPlaysSaysNothing)
{
    const QString track = MakeBlueTrack();
    EXPECT_EQ(ComplaintOf([&] { Load(track); }), "");
}

TEST_F(WindowLifeTest, AStartWithATrackThatIsNoneTellsTheTerminalOnce)
{
    const QString track = folder.filePath(QStringLiteral("missing.cdg"));
    EXPECT_EQ(ComplaintOf([&] { Load(track); }),
              "lyric-lantern: File not found: " + track.toStdString() + '\n');
}

TEST_F(WindowLifeTest, AStartWithoutATrackSaysNothing)
{
    EXPECT_EQ(ComplaintOf([&] { Load(); }), "");
}

TEST_F(WindowLifeTest, AWindowThatIsEndedWithoutACloseLeavesNothingOpen)
{
    Load(MakeBlueTrack());
    Press('1');
    Settle();
    owner.reset();
    EXPECT_FALSE(state.InstanceMutex.IsHeld());
    state.Settings->LoadSettings(kPlayerSection.toString());
    EXPECT_EQ(ReadPlayerSettings(*state.Settings).Zoom, 1);
}

TEST_F(WindowLifeTest, AWindowMayGoWhileAMenuOfItsOwnIsOpen)
{
    Load(MakeBlueTrack());
    EXPECT_TRUE(WithMenu([this] { window.ShowPopMenu(); }, [this](frmMenus&) { owner.reset(); }));
    EXPECT_FALSE(state.InstanceMutex.IsHeld());
}

TEST_F(WindowLifeTest, AMenuTellsWhetherItOutlivedItsWindow)
{
    auto place = std::make_unique<QWidget>();
    auto menu = std::make_unique<PopMenu>(*place);
    const auto open = [&] { return menu->ShowCommands({{QStringLiteral("Play"), {}}}); };
    EXPECT_TRUE(WithMenu([&] { EXPECT_TRUE(open()); }, [](frmMenus&) {}));
    EXPECT_FALSE(menu->IsOpen());
    EXPECT_TRUE(WithMenu([&] { EXPECT_FALSE(open()); },
                         [&](frmMenus&) {
                             menu.reset();
                             place.reset();
                         }));
}

// Notes what becomes of a window among the others.
class RaiseWatch : public QObject {
public:
    bool wasRaised = false;

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        wasRaised = wasRaised || event->type() == QEvent::ZOrderChange;
        return false;
    }
};

TEST_F(WindowLifeTest, AWindowThatIsAskedForComesToTheFrontWithTheKeyboard)
{
    Load();
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    RaiseWatch watch;
    window.installEventFilter(&watch);
    window.TakeFocus({});
    EXPECT_TRUE(watch.wasRaised);
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
}

TEST_F(WindowLifeTest, OptionsThatAreAskedForFromTheMenuGetTheKeyboard)
{
    Load();
    window.MainPopup(CommandId::Options);
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    EXPECT_TRUE(Choose([this] { window.ShowPopMenu(); }, QStringLiteral("Options")));
    EXPECT_TRUE(QTest::qWaitForWindowActive(&Options()));
}

// No key stays on a control, and this one is none of the player's: while it is held, others wait.
TEST_F(WindowLifeTest, TheTabKeyIsOneLikeAnyOther)
{
    Load(MakeBlueTrack());
    QApplication::setActiveWindow(&window);
    QTest::keyPress(window.windowHandle(), Qt::Key_Tab);
    QTest::keyClick(window.windowHandle(), Qt::Key_P);
    EXPECT_EQ(engine.Status, SoundStatus::Playing);
    QTest::keyClick(window.windowHandle(), Qt::Key_Space);
    EXPECT_EQ(engine.Status, SoundStatus::Paused) << "a release has come";
}

TEST_F(WindowLifeTest, OptionsOutOfSightAreLeftAloneAndShownOnesLetEventsRun)
{
    Load();
    bool ran = false;
    QTimer::singleShot(0, &window, [&ran] { ran = true; });
    window.SetOptionsOnTop(false);
    EXPECT_FALSE(ran);
    window.MainPopup(CommandId::Options);
    EXPECT_TRUE(Options().windowHandle()->flags().testFlag(Qt::WindowStaysOnTopHint));
    ran = false;
    QTimer::singleShot(0, &window, [&ran] { ran = true; });
    window.SetOptionsOnTop(false);
    EXPECT_TRUE(ran);
    EXPECT_FALSE(Options().windowHandle()->flags().testFlag(Qt::WindowStaysOnTopHint));
}

// An engine that a test watches at work.
class PausedEngine : public FakeAudioEngine {
public:
    std::function<void()> WhilePausing;

    void PauseSound() override
    {
        FakeAudioEngine::PauseSound();
        if (WhilePausing)
            WhilePausing();
    }
};

class WindowChoiceTest : public WindowHand {
protected:
    WindowChoiceTest() : WindowChoiceTest(std::make_unique<PausedEngine>()) {}

    PausedEngine& paused;

private:
    explicit WindowChoiceTest(std::unique_ptr<PausedEngine> made)
        : WindowHand(std::move(made)), paused(dynamic_cast<PausedEngine&>(engine))
    {
    }
};

TEST_F(WindowChoiceTest, TheOptionsAreOnTopAgainWhenTheChoiceRuns)
{
    Load(MakeBlueTrack());
    window.MainPopup(CommandId::Options);
    window.UpdatePlayer();
    bool wasPaused = false;
    paused.WhilePausing = [&] {
        wasPaused = true;
        EXPECT_TRUE(Options().windowHandle()->flags().testFlag(Qt::WindowStaysOnTopHint));
    };
    EXPECT_TRUE(Choose([this] { window.ShowPopMenu(); }, QStringLiteral("Pause")));
    EXPECT_TRUE(wasPaused);
}

} // namespace
} // namespace lantern
