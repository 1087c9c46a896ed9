// SPDX-License-Identifier: GPL-3.0-or-later
#include "ScreenMetrics.h"
#include "Version.h"
#include "WindowFixture.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <gmock/gmock.h>

#include <algorithm>
#include <array>

namespace lantern {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;

using f101Test = WindowFixture;

TEST_F(f101Test, WithoutADeviceTheUserIsToldAndNothingElseHappens)
{
    engine.Devices.clear();
    EXPECT_FALSE(window.Load());
    EXPECT_THAT(messages,
                ElementsAre(QStringLiteral("No audio device/speakers detected/connected.")));
    EXPECT_THAT(engine.Log, ElementsAre("GetDeviceCount"));
}

TEST_F(f101Test, WithALockedDeviceTheUserIsToldAndNothingElseHappens)
{
    engine.InitSucceeds = false;
    EXPECT_FALSE(window.Load());
    EXPECT_THAT(messages, ElementsAre(QStringLiteral(
                              "One of the audio devices may be locked by another application.")));
    EXPECT_THAT(engine.Log, ElementsAre("GetDeviceCount", "EngineInit"));
    window.close(); // as harmless as any other
}

TEST_F(f101Test, TheCaptionIsTheTitleAndTheVersion)
{
    Load();
    EXPECT_EQ(window.windowTitle(), QStringLiteral("Lyric Lantern CDG Player " LANTERN_VERSION));
    EXPECT_FALSE(window.windowIcon().isNull());
    EXPECT_FALSE(window.windowIcon().pixmap(16, 16).isNull());
}

TEST_F(f101Test, TheLoadGoesFromTheEngineOverSettingsPictureAndDeviceToTheTrack)
{
    Load(MakeBlueTrack());
    const auto at = [this](const std::string& call) {
        return std::ranges::find_if(
                   engine.Log, [&](const std::string& line) { return line.starts_with(call); }) -
               engine.Log.begin();
    };
    const std::array steps = {at("EngineInit"),     at("SetEngineVolume"), at("CloseSound"),
                              at("GetSoundStatus"), at("SelectDevice"),    at("LoadMemory"),
                              at("StartSound")};
    EXPECT_TRUE(std::ranges::is_sorted(steps));
    EXPECT_LT(steps.back(), std::ssize(engine.Log));
}

TEST_F(f101Test, ADebugRunOpensNoTrackAtTheStart)
{
    state.DebugRun = true;
    Load(MakeBlueTrack());
    EXPECT_EQ(engine.Status, SoundStatus::Empty);
}

TEST_F(f101Test, ABlankCommandLineOpensNothing)
{
    Load(QStringLiteral("  "));
    EXPECT_THAT(engine.Log, ::testing::Not(Contains("StartSound")));
    EXPECT_EQ(std::ranges::count(engine.Log, "CloseSound"), 1);
}

TEST_F(f101Test, TheWindowComesUpAtSizeTwoInTheMiddleOfTheScreen)
{
    ASSERT_TRUE(window.Load());
    EXPECT_EQ(window.size(), QSize(2 * 288 + 50, 2 * 192 + 55 + 48));
    const QRect desktop = DesktopRect();
    EXPECT_EQ(window.x(), (desktop.width() - window.width()) / 2 + desktop.x());
    EXPECT_EQ(window.minimumSize(), QSize(338, 295));
    EXPECT_EQ(window.maximumSize(), QSize(200000, 200000)) << "the screens set the limits";
    EXPECT_TRUE(window.windowFlags().testFlag(Qt::FramelessWindowHint)) << "the skin is its frame";
}

TEST_F(f101Test, ATrackPlaysAndThePictureFollowsTheSound)
{
    Load(MakeBlueTrack());
    EXPECT_EQ(engine.Status, SoundStatus::Playing);
    EXPECT_EQ(window.grab().toImage().pixel(100, 100), 0xFF000000u);
    engine.PositionMs = 100;
    window.UpdatePlayer();
    const QImage shown = window.grab().toImage();
    EXPECT_EQ(shown.pixel(shown.width() / 2, shown.height() / 2), 0xFF0000AAu);
    EXPECT_EQ(shown.pixel(10, 10), 0xFFFFAA00u) << "the border's colour all around";
    EXPECT_EQ(Message().ForeColor(), 0xFF5500u) << "the opposite of the border's";
}

TEST_F(f101Test, AMessageOnABlackBorderIsWhiteOnBlack)
{
    Load();
    Press('V');
    Settle();
    const QImage shown = window.grab().toImage();
    const QRect line = Message().geometry();
    EXPECT_EQ(shown.pixel(line.left() + 2, line.center().y()), 0xFF000000u);
    EXPECT_EQ(Message().ForeColor(), 0xFFFFFFu);
}

TEST_F(f101Test, TheTimerTicksByItself)
{
    Load(MakeBlueTrack());
    engine.PositionMs = 100;
    QElapsedTimer waited;
    waited.start();
    const auto middle = [this] {
        return window.grab().toImage().pixel(window.width() / 2, window.height() / 2);
    };
    while (middle() != 0xFF0000AAu && waited.elapsed() < 5000)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    EXPECT_EQ(middle(), 0xFF0000AAu);
}

TEST_F(f101Test, AMessageGoesAwayByItselfAfterThreeSeconds)
{
    Load();
    QElapsedTimer shown;
    shown.start();
    Press('V');
    while (!Status().isEmpty() && shown.elapsed() < 20000)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    EXPECT_GE(shown.elapsed(), 3000);
    EXPECT_LT(shown.elapsed(), 10000) << "on however busy a machine";
    EXPECT_EQ(Status(), QString());
}

TEST_F(f101Test, TheEndOfTheSoundStopsAndBlanks)
{
    Load(MakeBlueTrack());
    engine.PositionMs = 100;
    window.UpdatePlayer();
    engine.PlayToEnd();
    Settle();
    EXPECT_EQ(engine.Status, SoundStatus::Stopped);
    EXPECT_EQ(engine.PositionMs, 0);
    EXPECT_EQ(window.grab().toImage().pixel(100, 100), 0xFF000000u);
    EXPECT_EQ(window.grab().toImage().pixel(10, 10), 0xFF000000u);
}

TEST_F(f101Test, PlayWithoutATrackOpensTheLastOne)
{
    const QString path = MakeBlueTrack();
    state.Settings->SetSetting(kLastPlayedKey.toString(), path);
    Load();
    EXPECT_EQ(engine.Status, SoundStatus::Empty);
    window.MainPopup(CommandId::Play);
    EXPECT_EQ(engine.Status, SoundStatus::Playing);
}

TEST_F(f101Test, TheSettingsAreTakenAtTheStartAndKeptAtTheEnd)
{
    const auto set = [this](const char* key, const char* value) {
        state.Settings->SetSetting(QString::fromLatin1(key), QString::fromLatin1(value));
    };
    set("Zoom", "3");
    set("Volume", "62.5");
    set("Custom_Speed", "35");
    Load();
    EXPECT_EQ(window.width(), 3 * 288 + 50);
    EXPECT_EQ(engine.Volume, 62.5F);
    EXPECT_EQ(Status(), QString()) << "no message is left of it";
    Press('Q');
    EXPECT_EQ(engine.Tempo, 35);
    const QString path = MakeBlueTrack();
    window.OpenMedia(path);
    Press('1');
    window.close();

    state.Settings->LoadSettings(kPlayerSection.toString());
    const PlayerSettings kept = ReadPlayerSettings(*state.Settings);
    EXPECT_EQ(kept.Zoom, 1);
    EXPECT_EQ(kept.Volume, 62);
    EXPECT_EQ(kept.Speed, 35);
    EXPECT_EQ(kept.LastPlayed, path);
}

TEST_F(f101Test, AStoredFullScreenComesUpWithSizeTwoBehindIt)
{
    state.Settings->SetSetting(QStringLiteral("Zoom"), QStringLiteral("0"));
    Load();
    EXPECT_TRUE(window.isFullScreen());
    EXPECT_EQ(window.size(), DesktopRect().size());
    Press('F');
    Settle();
    EXPECT_EQ(window.size(), QSize(626, 487));
    Press('F');
    window.close();
    EXPECT_EQ(ReadPlayerSettings(*state.Settings).Zoom, 0);
}

TEST_F(f101Test, ALaterStartBringsTheWindowForwardAndHandsItsTrackOver)
{
    const QString path = MakeBlueTrack();
    Load();
    window.showMinimized();
    Settle();
    window.TakeFocus({});
    EXPECT_FALSE(window.isMinimized());
    window.OpenMedia(u'"' + path + u'"');
    EXPECT_EQ(engine.Status, SoundStatus::Playing);
}

TEST_F(f101Test, BehindAnOpenDialogATrackPlaysAndTheCloseEndsTheDialogToo)
{
    Load();
    const QString path = MakeBlueTrack();
    QTimer::singleShot(0, &window, [&] { window.MainPopup(CommandId::Open); });
    QTimer::singleShot(0, &window, [&] {
        window.OpenMedia(path);
        EXPECT_EQ(engine.Status, SoundStatus::Playing);
        window.close();
    });
    QCoreApplication::exec();
    EXPECT_EQ(engine.Status, SoundStatus::Stopped);
    EXPECT_FALSE(state.InstanceMutex.IsHeld());
}

TEST_F(f101Test, ATrackThatComesBeforeTheEngineRunsIsDropped)
{
    window.OpenMedia(MakeBlueTrack());
    EXPECT_TRUE(engine.Log.empty());
}

TEST_F(f101Test, TheLockIsReleasedWhenTheWindowCloses)
{
    Load();
    EXPECT_TRUE(state.InstanceMutex.IsHeld());
    window.close();
    EXPECT_FALSE(state.InstanceMutex.IsHeld());
}

TEST_F(f101Test, AFailedStartKeepsTheSettingsAsTheyWere)
{
    engine.InitSucceeds = false;
    state.Settings->SetSetting(QStringLiteral("Volume"), QStringLiteral("30"));
    EXPECT_FALSE(window.Load());
    window.close();
    EXPECT_FALSE(QFile::exists(folder.filePath(QStringLiteral("data_player.ini"))));
}

TEST_F(f101Test, AFileThatIsNoTrackLeavesABlackScreenWithoutAMessage)
{
    Load(MakeBlueTrack());
    engine.PositionMs = 100;
    window.UpdatePlayer();
    window.OpenMedia(folder.filePath(QStringLiteral("missing.cdg")));
    EXPECT_EQ(engine.Status, SoundStatus::Empty);
    EXPECT_EQ(window.grab().toImage().pixel(100, 100), 0xFF000000u);
    EXPECT_TRUE(messages.isEmpty());
    EXPECT_EQ(Status(), QString());
}

TEST_F(f101Test, ClosingStopsTheSoundOnceAndEndsTheTicks)
{
    Load(MakeBlueTrack());
    engine.Log.clear();
    window.close();
    EXPECT_EQ(std::ranges::count(engine.Log, "StopSound"), 1);
    engine.Log.clear();
    QElapsedTimer waited;
    waited.start();
    while (waited.elapsed() < 50)
        QCoreApplication::processEvents();
    EXPECT_TRUE(engine.Log.empty());
    window.close();
    EXPECT_TRUE(engine.Log.empty());
}

TEST_F(f101Test, PaintingAndResizingAfterTheCloseAreHarmless)
{
    Load(MakeBlueTrack());
    window.close();
    window.show();
    window.resize(700, 500);
    Settle();
    EXPECT_FALSE(window.grab().isNull());
}

TEST_F(f101Test, ASmallerFullScreenMarginHoldsALargerPicture)
{
    Load();
    const auto picture = [this] { return window.findChild<QWidget*>(QStringLiteral("pic")); };
    ASSERT_NE(picture(), nullptr);
    EXPECT_EQ(picture()->geometry(), QRect(25, 25, 576, 384));
    window.MainPopup(CommandId::FullScreen);
    Settle();
    const int height = DesktopRect().height() - 40;
    const int width = DesktopRect().width() - 40;
    EXPECT_EQ(picture()->width(), std::min(width, height * 3 / 2));
    EXPECT_TRUE(IsPointerBlank(*picture()));
    window.MainPopup(CommandId::FullScreen);
    Settle();
    EXPECT_EQ(picture()->geometry(), QRect(25, 25, 576, 384));
    EXPECT_FALSE(IsPointerBlank(*picture()));
}

TEST_F(f101Test, ADraggedSizeKeepsTheProportions)
{
    Load();
    window.resize(1000, 453);
    Settle();
    EXPECT_EQ(PartNamed("pic").geometry(), QRect(237, 25, 525, 350));
}

// Notes which part of a widget is painted.
class PaintedPart : public QObject {
public:
    QRegion Painted;

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::Paint)
            Painted += static_cast<QPaintEvent*>(event)->region();
        return false;
    }
};

TEST_F(f101Test, AWindowThatComesToTheFrontIsPaintedWhole)
{
    Load(MakeBlueTrack());
    const auto paintedOf = [this](const char* part) {
        PaintedPart watch;
        PartNamed(part).installEventFilter(&watch);
        QEvent activation(QEvent::WindowActivate);
        QCoreApplication::sendEvent(&window, &activation);
        Settle();
        return watch.Painted;
    };
    EXPECT_EQ(paintedOf("pic"), QRegion(PartNamed("pic").rect()));
    const QRegion painted = paintedOf("Skinner");
    EXPECT_TRUE(painted.contains(window.rect().topLeft()));
    EXPECT_TRUE(painted.contains(window.rect().bottomRight()));
}

TEST_F(f101Test, AFullScreenThatComesToTheFrontIsPaintedWhole)
{
    Load(MakeBlueTrack());
    Press('F');
    Settle();
    PaintedPart watch;
    window.installEventFilter(&watch);
    QEvent activation(QEvent::WindowActivate);
    QCoreApplication::sendEvent(&window, &activation);
    Settle();
    EXPECT_EQ(watch.Painted, QRegion(window.rect()));
}

TEST_F(f101Test, AFullScreenThatTheWindowSystemEndsGivesThePointerBack)
{
    Load();
    const auto& picture = *window.findChild<QWidget*>(QStringLiteral("pic"));
    window.MainPopup(CommandId::FullScreen);
    ASSERT_TRUE(IsPointerBlank(picture));
    window.setWindowState(Qt::WindowNoState);
    Settle();
    EXPECT_FALSE(IsPointerBlank(picture));
    window.setWindowState(Qt::WindowFullScreen);
    Settle();
    EXPECT_TRUE(IsPointerBlank(picture));
}

} // namespace
} // namespace lantern
