// SPDX-License-Identifier: GPL-3.0-or-later
// The stage window, as the player opens it and acts on it.
#include "WindowHand.h"
#include "frmStage.h"

#include <QFile>
#include <QImage>

#include <utility>

namespace lantern {
namespace {

class WindowStageTest : public WindowHand {
protected:
    static void StageKey(QWidget& target, QEvent::Type type, int key, bool isRepeat = false)
    {
        QKeyEvent event(type, key, Qt::NoModifier, {}, isRepeat);
        QApplication::sendEvent(&target, &event);
    }
    static void PressF2(QWidget& target)
    {
        StageKey(target, QEvent::KeyPress, Qt::Key_F2);
        StageKey(target, QEvent::KeyRelease, Qt::Key_F2);
    }
    static frmStage* Stage()
    {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* stage = dynamic_cast<frmStage*>(widget))
                return stage;
        }
        return nullptr;
    }
    QString StageFile() const { return folder.filePath(QStringLiteral("data_stage.ini")); }
};

TEST_F(WindowStageTest, WhoNeverAsksForItHasNone)
{
    Load(MakeBlueTrack());
    EXPECT_EQ(Stage(), nullptr);
    window.close();
    EXPECT_FALSE(QFile::exists(StageFile()));
}

TEST_F(WindowStageTest, F2OpensItFromEachWindowAndClosesIt)
{
    Load(MakeBlueTrack());
    PressF2(window);
    ASSERT_NE(Stage(), nullptr);
    EXPECT_TRUE(Stage()->isVisible());
    PressF2(*Stage());
    EXPECT_FALSE(Stage()->isVisible());
    window.ToggleOptions(true);
    PressF2(Options());
    EXPECT_TRUE(Stage()->isVisible());
    EXPECT_TRUE(Options().isVisible());
    PressF2(window);
    EXPECT_FALSE(Stage()->isVisible());
}

TEST_F(WindowStageTest, F2HeldDownActsOnceAndHoldsNoOtherKeyUp)
{
    Load(MakeBlueTrack());
    StageKey(window, QEvent::KeyPress, Qt::Key_F2);
    for (int i = 0; i < 3; ++i)
        StageKey(window, QEvent::KeyPress, Qt::Key_F2, true);
    EXPECT_TRUE(Stage()->isVisible());
    StageKey(window, QEvent::KeyPress, Qt::Key_P);
    EXPECT_EQ(engine.Status, SoundStatus::Paused);
}

TEST_F(WindowStageTest, EscapeClosesItAndLeavesTheOptions)
{
    Load(MakeBlueTrack());
    PressF2(window);
    StageKey(*Stage(), QEvent::KeyPress, Qt::Key_Escape);
    EXPECT_FALSE(Stage()->isVisible());
    EXPECT_FALSE(Options().isVisible());
    StageKey(window, QEvent::KeyPress, Qt::Key_Escape, true); // still held
    EXPECT_FALSE(Options().isVisible());
}

TEST_F(WindowStageTest, ItStandsBeforeThePlayerInFullScreenToo)
{
    Load(MakeBlueTrack());
    window.MainPopup(CommandId::FullScreen);
    PressF2(window);
    EXPECT_TRUE(Stage()->windowHandle()->flags().testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_EQ(Stage()->windowHandle()->transientParent(), window.windowHandle());
    WithMenu([this] { window.ShowPopMenu(); },
             [](frmMenus&) {
                 EXPECT_FALSE(Stage()->windowHandle()->flags().testFlag(Qt::WindowStaysOnTopHint));
             });
    EXPECT_TRUE(Stage()->windowHandle()->flags().testFlag(Qt::WindowStaysOnTopHint));
}

TEST_F(WindowStageTest, ItGoesWithThePlayer)
{
    Load(MakeBlueTrack());
    PressF2(window);
    window.showMinimized();
    Settle();
    EXPECT_FALSE(Stage()->isVisible());
    window.showNormal();
    PressF2(window);
    window.close();
    EXPECT_FALSE(Stage()->isVisible());
}

// The device of the fake is "built-in".
TEST_F(WindowStageTest, TheDelayIsThatOfTheDeviceThatComesIntoUse)
{
    QFile file(StageFile());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("delay.hdmi\t180\r\n");
    file.close();
    Load(MakeBlueTrack());
    EXPECT_EQ(engine.DelayMs, 0);
    engine.Device.id = QStringLiteral("hdmi");
    for (int tick = 0; tick < 20; ++tick)
        window.UpdatePlayer();
    EXPECT_EQ(engine.DelayMs, 180);
}

class WindowDelayTest : public WindowStageTest {
protected:
    // As it was before the test, to the last value.
    struct TrackState {
        SoundStatus status;
        std::int32_t positionMs;
        QString loaded;
        std::int32_t slider;
        std::int32_t sliderMax;
        QImage picture;

        bool operator==(const TrackState&) const = default;
    };
    TrackState Now()
    {
        window.UpdatePlayer();
        Settle();
        auto& slider = PartNamed<ctlSlide>("ctlSlider");
        return {engine.Status,  engine.PositionMs, engine.LoadedPath,
                slider.Value(), slider.Max(),      PartNamed("pic").grab().toImage()};
    }
    void StartTest()
    {
        if (!Stage() || !Stage()->isVisible())
            PressF2(window);
        Stage()->TestSwitch().Press();
        ASSERT_TRUE(Stage()->TestSwitch().Value());
        ASSERT_EQ(engine.Status, SoundStatus::Playing);
        ASSERT_GT(engine.LoadedImage.size(), 1'000'000U);
    }
    bool IsTesting() { return Stage()->TestSwitch().Value(); }
    QColor PictureColour()
    {
        window.UpdatePlayer();
        Settle();
        const QWidget& pic = PartNamed("pic");
        return const_cast<QWidget&>(pic).grab().toImage().pixelColor(pic.rect().center());
    }
};

TEST_F(WindowDelayTest, ThePictureFlashesWithTheClicks)
{
    Load(MakeBlueTrack());
    StartTest();
    for (const auto& [positionMs, isBright] : {std::pair(500, false),
                                               {999, false},
                                               {1000, true},
                                               {1090, true},
                                               {1110, false},
                                               {1999, false},
                                               {2001, true},
                                               {30'050, true},
                                               {30'500, false}}) {
        engine.PositionMs = positionMs;
        EXPECT_EQ(PictureColour().lightness() > 200, isBright) << positionMs;
    }
}

TEST_F(WindowDelayTest, AfterwardsTheTrackIsAsItWas)
{
    Load(MakeBlueTrack());
    PressF2(window);
    for (const SoundStatus status :
         {SoundStatus::Playing, SoundStatus::Paused, SoundStatus::Stopped}) {
        if (status == SoundStatus::Paused)
            window.MainPopup(CommandId::Pause);
        else if (status == SoundStatus::Stopped)
            window.MainPopup(CommandId::Stop);
        else
            window.MainPopup(CommandId::Forward10Seconds), engine.PositionMs = 4321;
        const TrackState before = Now();
        ASSERT_EQ(before.status, status);
        ASSERT_NO_FATAL_FAILURE(StartTest());
        engine.PositionMs = 5050;
        EXPECT_FALSE(Now() == before);
        StageKey(*Stage(), QEvent::KeyPress, Qt::Key_Escape);
        EXPECT_FALSE(IsTesting());
        EXPECT_TRUE(Stage()->isVisible());
        EXPECT_TRUE(Now() == before) << static_cast<int>(status);
    }
}

TEST_F(WindowDelayTest, WithoutATrackItClicksToo)
{
    Load();
    const TrackState before = Now();
    StartTest();
    StageKey(*Stage(), QEvent::KeyPress, Qt::Key_Escape);
    EXPECT_EQ(engine.Status, SoundStatus::Empty);
    EXPECT_TRUE(Now() == before);
}

TEST_F(WindowDelayTest, TheClicksGoOnUntilTheyAreEnded)
{
    Load(MakeBlueTrack());
    StartTest();
    for (int round = 0; round < 3; ++round) {
        engine.PlayToEnd();
        EXPECT_EQ(engine.Status, SoundStatus::Playing);
        EXPECT_EQ(engine.PositionMs, 0);
        EXPECT_TRUE(IsTesting());
    }
}

TEST_F(WindowDelayTest, WhatIsMeantForTheTrackEndsItAndActsOnTheTrack)
{
    Load(MakeBlueTrack());
    StartTest();
    Press('P');
    EXPECT_FALSE(IsTesting());
    EXPECT_EQ(engine.Status, SoundStatus::Paused);
    Press('P');
    StartTest();
    window.MainPopup(CommandId::Stop);
    EXPECT_FALSE(IsTesting());
    EXPECT_EQ(engine.Status, SoundStatus::Stopped);
    Press('P');
    StartTest();
    const QString other = MakeBlueTrack();
    window.OpenMedia(other);
    EXPECT_FALSE(IsTesting());
    EXPECT_EQ(engine.Status, SoundStatus::Playing);
    EXPECT_EQ(state.Settings->GetSetting(kLastPlayedKey.toString(), {}), other);
    StartTest();
    engine.Status = SoundStatus::Paused; // by the desktop's panel
    window.UpdatePlayer();
    EXPECT_FALSE(IsTesting());
    EXPECT_EQ(engine.Status, SoundStatus::Paused) << "and it plays no more";
    Press(KeyCode::Shift);
    StartTest();
    Press(KeyCode::Shift);
    EXPECT_TRUE(IsTesting()) << "shift alone means nothing";
}

TEST_F(WindowDelayTest, ItIsASecondFromClickToClickAtAnySpeed)
{
    Load(MakeBlueTrack());
    engine.Tempo = 50;
    StartTest();
    engine.PositionMs = 1000;
    EXPECT_LT(PictureColour().lightness(), 50);
    engine.PositionMs = 1500;
    EXPECT_GT(PictureColour().lightness(), 200);
}

TEST_F(WindowDelayTest, ThePlayerEndsInTheMiddleOfIt)
{
    const QString track = MakeBlueTrack();
    Load(track);
    StartTest();
    window.close();
    EXPECT_EQ(engine.Status, SoundStatus::Stopped);
    EXPECT_EQ(state.Settings->GetSetting(kLastPlayedKey.toString(), {}), track);
}

TEST_F(WindowStageTest, WhatWasChosenHoldsFromTheStartOn)
{
    QFile file(StageFile());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("voiceguide\tright\r\n");
    file.close();
    Load(MakeBlueTrack());
    EXPECT_EQ(engine.Guide, VoiceGuide::Right);
    PressF2(window);
    Stage()->Choice(1).Press();
    EXPECT_EQ(engine.Guide, VoiceGuide::Left);
    window.close();
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "voiceguide\tleft\r\n");
}

} // namespace
} // namespace lantern
