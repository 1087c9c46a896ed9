// SPDX-License-Identifier: GPL-3.0-or-later
#include "ControlRefresh.h"

#include "AudioControl.h"
#include "FakeAudioEngine.h"
#include "OptionsFixture.h"
#include "PaintCount.h"
#include "RecordingAudioHost.h"
#include "ToolbarFixture.h"
#include "Track.h"

#include <QLineEdit>

#include <cmath>
#include <limits>
#include <random>

namespace lantern {
namespace {

class ControlRefreshTest : public ToolbarFixture {
protected:
    ControlRefreshTest()
    {
        for (const ToolbarButton& row : kToolbarButtons)
            LogWrites(toolbar.tBtn(row.command), "tBtn " + std::to_string(NumberOf(row.command)));
        LogWrites(toolbar.ctlVolume(), "ctlVolume");
        for (std::size_t index = 4; index <= 8; ++index)
            LogWrites(options.cmd(index), "cmd " + std::to_string(index));
        LogWrites(options.ctlBalance(), "options balance");
        LogWrites(options.ctlKeyPitch(), "options key");
        LogWrites(options.ctlSpeed(), "options speed");
        LogWrites(options.ctlVolume(), "options volume");
        refresh.SetOptions(&options);
    }

    void LogWrites(Control& control, const std::string& name)
    {
        control.PropertyChanged = [this, name](const QString& key) {
            log.push_back(name + ' ' + key.toStdString());
        };
    }
    std::vector<std::string> Writes()
    {
        log.clear();
        Refresh();
        return log;
    }
    void Refresh() { refresh.Refresh(positionMs, isPlaying, isMaximised); }
    // As if a track played for a while.
    void PlayTrack()
    {
        track.CurrentMedia = QStringLiteral("song.cdg");
        track.ClipList.Add({});
        positionMs = 5000;
        isPlaying = true;
    }
    void Become(std::mt19937& random)
    {
        const auto upTo = [&random](int last) {
            return std::uniform_int_distribution<int>(0, last)(random);
        };
        engine.Balance = static_cast<float>(upTo(2) - 1);
        engine.Pitch = upTo(2) - 1;
        engine.Tempo = static_cast<float>(upTo(2) - 1);
        engine.Volume = static_cast<float>(upTo(1) * 60);
        track.TempoHeld = upTo(3) == 0;
        track.CurrentMedia = upTo(1) == 0 ? QString() : QStringLiteral("song.cdg");
        track.ClipList.Erase();
        for (int clips = upTo(2); clips > 0; --clips)
            track.ClipList.Add({});
        audio.AudioSave = upTo(1) == 0;
        options.setVisible(upTo(1) == 0);
        positionMs = upTo(1) * 1000;
        isPlaying = upTo(1) == 0;
        isMaximised = upTo(1) == 0;
    }
    void ExpectTheControlsToTell()
    {
        for (std::int16_t n = 1; n <= 5; ++n) {
            const WheelMode mode{n};
            EXPECT_EQ(toolbar.tBtn(WheelCommand(mode)).Value(), audio.WheelType == mode);
        }
        EXPECT_EQ(toolbar.tBtn(CommandId::Mute).Value(), engine.Volume == 0.0F);
        EXPECT_EQ(options.cmd(8).Value(), engine.Volume == 0.0F);
        EXPECT_EQ(options.cmd(5).Value(), engine.Balance != 0.0F);
        EXPECT_EQ(options.cmd(6).Value(), engine.Pitch != 0);
        if (!track.TempoHeld) {
            EXPECT_EQ(toolbar.tBtn(CommandId::QuickPlay).Value(), engine.Tempo != 0.0F);
            EXPECT_EQ(options.cmd(7).Value(), engine.Tempo != 0.0F);
            EXPECT_EQ(options.ctlSpeed().Value(), std::lround(engine.Tempo));
        }
        EXPECT_EQ(toolbar.tBtn(CommandId::Play).Value(), audio.AudioSave);
        EXPECT_EQ(options.cmd(4).Value(), audio.AudioSave);
        EXPECT_EQ(toolbar.tBtn(CommandId::Options).Value(), options.isVisible());
        EXPECT_EQ(toolbar.ctlVolume().Value(), std::lround(engine.Volume));
        EXPECT_EQ(options.ctlVolume().Value(), std::lround(engine.Volume));
        EXPECT_EQ(options.ctlBalance().Value(), std::lround(engine.Balance));
        EXPECT_EQ(options.ctlKeyPitch().Value(), engine.Pitch);

        EXPECT_EQ(toolbar.tBtn(CommandId::Play).Enabled(),
                  !track.CurrentMedia.isEmpty() && !isPlaying);
        EXPECT_EQ(toolbar.tBtn(CommandId::Play).isHidden(), isPlaying);
        EXPECT_EQ(toolbar.tBtn(CommandId::Pause).Enabled(), isPlaying);
        EXPECT_EQ(toolbar.tBtn(CommandId::Pause).isHidden(), !isPlaying);
        EXPECT_EQ(toolbar.tBtn(CommandId::Stop).Enabled(), positionMs > 0 || isPlaying);
        EXPECT_EQ(toolbar.tBtn(CommandId::QuickPlay).Enabled(), isPlaying);
        for (const CommandId command : {CommandId::Forward10Seconds, CommandId::Forward60Seconds,
                                        CommandId::Back10Seconds, CommandId::Back60Seconds})
            EXPECT_EQ(toolbar.tBtn(command).Enabled(), track.ClipCount() > 0);
        EXPECT_EQ(toolbar.tBtn(CommandId::FullScreen).isHidden(), isMaximised);
        EXPECT_EQ(toolbar.tBtn(CommandId::RestoreScreen).isHidden(), !isMaximised);
        EXPECT_TRUE(toolbar.tBtn(CommandId::FullScreen).Enabled());
        EXPECT_TRUE(toolbar.tBtn(CommandId::RestoreScreen).Enabled());
    }

    FakeAudioEngine engine;
    RecordingAudioHost audioHost;
    AudioControl audio{engine, audioHost};
    Track track;
    RecordingOptionsHost player;
    frmOptions options{window, player, audio, nullptr, TwipsPerPixel{15, 15}};
    ControlRefresh refresh{toolbar, engine, audio, track};
    std::int32_t positionMs = 0;
    bool isPlaying = false;
    bool isMaximised = false;
};

TEST_F(ControlRefreshTest, AnyStateAfterAnyOtherIsShownWhole)
{
    Show();
    std::mt19937 random(7);
    for (int i = 0; i < 1000 && !HasFailure(); ++i) {
        Become(random);
        Refresh();
        ExpectTheControlsToTell();
    }
}

TEST_F(ControlRefreshTest, WhatIsShownAlreadyIsNotTouched)
{
    Show();
    options.show();
    PlayTrack();
    Refresh();
    QTest::qWait(50);
    PaintCount paints;
    QCoreApplication::instance()->installEventFilter(&paints);
    for (int i = 0; i < 100; ++i)
        EXPECT_TRUE(Writes().empty());
    QCoreApplication::processEvents();
    EXPECT_EQ(paints.painted, 0);
    toolbar.tBtn(CommandId::Stop).update();
    QTest::qWait(50);
    EXPECT_GT(paints.painted, 0); // the count does count
}

TEST_F(ControlRefreshTest, OnlyWhatDiffersIsWritten)
{
    PlayTrack();
    Refresh();
    isPlaying = false;
    EXPECT_EQ(Writes(),
              (std::vector<std::string>{"tBtn 1 Enabled", "tBtn 2 Enabled", "tBtn 6 Enabled"}));
    audio.WheelType = WheelMode::TrackPosition;
    EXPECT_EQ(Writes(), (std::vector<std::string>{"tBtn 33 Value", "tBtn 34 Value"}));
    isMaximised = true;
    EXPECT_TRUE(Writes().empty()); // only the visibility of two buttons
    EXPECT_TRUE(toolbar.tBtn(CommandId::FullScreen).isHidden());
    EXPECT_FALSE(toolbar.tBtn(CommandId::RestoreScreen).isHidden());
}

TEST_F(ControlRefreshTest, TheWritesKeepTheirOrder)
{
    PlayTrack();
    Refresh();
    engine.Balance = -10;
    engine.Pitch = 2;
    engine.Tempo = 5;
    engine.Volume = 0;
    audio.AudioSave = true;
    options.show();
    track.ClipList.Erase();
    track.CurrentMedia.clear();
    isPlaying = false;
    positionMs = 0;
    EXPECT_EQ(Writes(),
              (std::vector<std::string>{
                  "options balance VALUE", "cmd 5 Value",    "options key VALUE", "cmd 6 Value",
                  "options speed VALUE",   "tBtn 6 Value",   "cmd 7 Value",       "ctlVolume VALUE",
                  "options volume VALUE",  "tBtn 26 Value",  "cmd 8 Value",       "tBtn 1 Value",
                  "cmd 4 Value",           "tBtn 14 Value",  "tBtn 2 Enabled",    "tBtn 3 Enabled",
                  "tBtn 4 Enabled",        "tBtn 5 Enabled", "tBtn 6 Enabled",    "tBtn 24 Enabled",
                  "tBtn 25 Enabled"}));
}

TEST_F(ControlRefreshTest, AHeldTempoLeavesTheSpeedAsItWasShown)
{
    engine.Tempo = 20;
    Refresh();
    track.TempoHeld = true;
    engine.Tempo = 0;
    EXPECT_TRUE(Writes().empty());
    EXPECT_EQ(options.ctlSpeed().Value(), 20);
    EXPECT_TRUE(toolbar.tBtn(CommandId::QuickPlay).Value());
    track.TempoHeld = false;
    Refresh();
    EXPECT_EQ(options.ctlSpeed().Value(), 0);
    EXPECT_FALSE(toolbar.tBtn(CommandId::QuickPlay).Value());
}

TEST_F(ControlRefreshTest, ValuesBetweenWholeNumbersAreRoundedToTheEvenOne)
{
    engine.Volume = 62.5F;
    engine.Balance = -0.5F;
    Refresh();
    EXPECT_EQ(toolbar.ctlVolume().Value(), 62);
    EXPECT_EQ(options.ctlBalance().Value(), 0);
    EXPECT_FALSE(options.cmd(5).Value());
}

TEST_F(ControlRefreshTest, AValueBeyondTheSlidersRangeIsWrittenOnce)
{
    engine.Volume = 250;
    EXPECT_FALSE(Writes().empty());
    EXPECT_EQ(toolbar.ctlVolume().Value(), 100);
    EXPECT_TRUE(Writes().empty());
    engine.Volume = std::numeric_limits<float>::quiet_NaN();
    Refresh();
    EXPECT_EQ(toolbar.ctlVolume().Value(), 0);
    engine.Volume = std::numeric_limits<float>::infinity();
    Refresh();
    EXPECT_EQ(toolbar.ctlVolume().Value(), 100);
}

TEST_F(ControlRefreshTest, TheToolbarsVolumeFollowsWithoutBeingTakenForTheUsers)
{
    Refresh();
    engine.Volume = 30;
    Refresh();
    EXPECT_EQ(toolbar.ctlVolume().Value(), 30);
    EXPECT_EQ(std::ranges::count(log, "volume"), 0);
}

TEST_F(ControlRefreshTest, WithoutOptionsTheToolbarIsRefreshedAllTheSame)
{
    refresh.SetOptions(nullptr);
    engine.Volume = 0;
    engine.Balance = 5;
    PlayTrack();
    Refresh();
    EXPECT_TRUE(toolbar.tBtn(CommandId::Mute).Value());
    EXPECT_FALSE(toolbar.tBtn(CommandId::Options).Value());
    EXPECT_TRUE(toolbar.tBtn(CommandId::Pause).Enabled());
    EXPECT_FALSE(options.cmd(8).Value());
}

TEST_F(ControlRefreshTest, NewOptionsTakeTheValuesWithoutChangingTheWheel)
{
    refresh.SetOptions(nullptr);
    engine.Balance = 5;
    engine.Pitch = -3;
    engine.Tempo = 40;
    engine.Volume = 70;
    Refresh();
    audio.WheelType = WheelMode::TrackPosition;
    refresh.SetOptions(&options);
    EXPECT_EQ(options.ctlBalance().Value(), 5);
    EXPECT_EQ(options.ctlKeyPitch().Value(), -3);
    EXPECT_EQ(options.ctlSpeed().Value(), 40);
    EXPECT_EQ(options.ctlVolume().Value(), 70);
    Refresh();
    EXPECT_EQ(audio.WheelType, WheelMode::TrackPosition);
    EXPECT_TRUE(audioHost.Statuses.empty());
}

TEST_F(ControlRefreshTest, EachTickBringsTheFocusBackToThePicture)
{
    Show();
    for (std::int16_t mode = 1; mode <= 5; ++mode) {
        audio.WheelType = WheelMode{mode};
        window.setFocus();
        ASSERT_FALSE(pic.hasFocus());
        Refresh();
        EXPECT_TRUE(pic.hasFocus()) << mode;
    }
}

TEST_F(ControlRefreshTest, TheFocusComesBackWhileTheBarIsHidden)
{
    Show();
    toolbar.SetVisible(false);
    window.setFocus();
    Refresh();
    EXPECT_TRUE(pic.hasFocus());
}

TEST_F(ControlRefreshTest, AnotherWindowKeepsTheFocus)
{
    Show();
    QWidget other;
    QLineEdit edit(&other);
    other.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&other));
    QApplication::setActiveWindow(&other);
    edit.setFocus();
    ASSERT_TRUE(edit.hasFocus());
    Refresh();
    EXPECT_TRUE(edit.hasFocus());
}

TEST_F(ControlRefreshTest, AWheelTypeWithoutButtonChecksNone)
{
    Show();
    for (const std::int16_t type : std::initializer_list<std::int16_t>{0, 6, -31, 11, 32767}) {
        audio.WheelType = WheelMode{type};
        Refresh();
        for (std::int16_t mode = 1; mode <= 5; ++mode)
            EXPECT_FALSE(toolbar.tBtn(WheelCommand(WheelMode{mode})).Value());
        EXPECT_FALSE(toolbar.tBtn(CommandId::Exit).Value());
    }
}

TEST_F(ControlRefreshTest, VisibilityIsTheButtonsOwnAndNotThatOfTheBar)
{
    Show();
    PlayTrack();
    Refresh();
    toolbar.SetVisible(false);
    Refresh();
    EXPECT_FALSE(toolbar.tBtn(CommandId::Pause).isHidden());
    isPlaying = false;
    Refresh();
    toolbar.SetVisible(true);
    EXPECT_TRUE(toolbar.tBtn(CommandId::Play).isVisible());
    EXPECT_FALSE(toolbar.tBtn(CommandId::Pause).isVisible());
}

TEST_F(ControlRefreshTest, BeforeTheWindowIsShownTheStateIsTakenAllTheSame)
{
    Refresh();
    Show();
    EXPECT_TRUE(toolbar.tBtn(CommandId::Play).isVisible());
    EXPECT_FALSE(toolbar.tBtn(CommandId::Pause).isVisible());
    EXPECT_TRUE(toolbar.tBtn(CommandId::FullScreen).isVisible());
    EXPECT_FALSE(toolbar.tBtn(CommandId::RestoreScreen).isVisible());
    EXPECT_FALSE(toolbar.tBtn(CommandId::Stop).Enabled());
}

TEST_F(ControlRefreshTest, AButtonsStateAloneLeavesItsVisibility)
{
    Show();
    refresh.SetButtonState(CommandId::Pause, false);
    EXPECT_TRUE(toolbar.tBtn(CommandId::Pause).isVisible());
    EXPECT_FALSE(toolbar.tBtn(CommandId::Pause).Enabled());
    refresh.SetButtonState(CommandId::Pause, true, ControlRefresh::kLeaveVisible);
    EXPECT_TRUE(toolbar.tBtn(CommandId::Pause).isVisible());
    EXPECT_TRUE(toolbar.tBtn(CommandId::Pause).Enabled());
    refresh.SetButtonState(CommandId::Pause, true, 0);
    EXPECT_FALSE(toolbar.tBtn(CommandId::Pause).isVisible());
    refresh.SetButtonState(CommandId::Pause, true, -1); // true, as a 16-bit boolean
    EXPECT_TRUE(toolbar.tBtn(CommandId::Pause).isVisible());
}

TEST_F(ControlRefreshTest, ACheckStateGoesToEitherButtonOrBoth)
{
    refresh.SetCheckState(CommandId::Mute, {}, true);
    EXPECT_TRUE(toolbar.tBtn(CommandId::Mute).Value());
    EXPECT_FALSE(options.cmd(8).Value());
    refresh.SetCheckState({}, 8, true);
    EXPECT_TRUE(options.cmd(8).Value());
    refresh.SetCheckState(CommandId::Mute, 8, false);
    EXPECT_FALSE(toolbar.tBtn(CommandId::Mute).Value());
    EXPECT_FALSE(options.cmd(8).Value());
    refresh.SetCheckState({}, {}, true);
}

TEST_F(ControlRefreshTest, AControlValueIsSetOnlyIfItDiffers)
{
    ctlSlide slider(nullptr);
    int changes = 0;
    slider.Change = [&changes] { ++changes; };
    ControlRefresh::SetControlValue(slider, 0);
    EXPECT_EQ(changes, 0);
    ControlRefresh::SetControlValue(slider, 40);
    ControlRefresh::SetControlValue(slider, 40);
    EXPECT_EQ(changes, 1);
}

} // namespace
} // namespace lantern
