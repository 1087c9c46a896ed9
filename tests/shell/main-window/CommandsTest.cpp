// SPDX-License-Identifier: GPL-3.0-or-later
#include "CommandTable.h"
#include "KeyMap.h"
#include "WindowFixture.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <QKeyEvent>
#include <QWheelEvent>

#include <map>
#include <set>

namespace lantern {
namespace {

using CommandsTest = WindowFixture;

constexpr KeyCode kUnusedKey = static_cast<KeyCode>('X');

TEST(CommandTable, EachCommandStandsOnce)
{
    std::set<CommandId> commands;
    for (const Command& command : kCommandTable)
        EXPECT_TRUE(commands.insert(command.id).second) << NumberOf(command.id);
}

TEST(CommandTable, AToolTipEndsInTheKeyThatRunsTheCommand)
{
    EXPECT_EQ(ToolTipOf(CommandId::Open), u"Open (O)");
    EXPECT_EQ(ToolTipOf(CommandId::Options), u"Options (ESC)");
    EXPECT_EQ(ToolTipOf(CommandId::CopyPicture), u"Copy Screen to ClipBoard (C)");
    EXPECT_EQ(ToolTipOf(CommandId::WheelTrack), u"Track (T) - Adjust With Wheel");
    EXPECT_TRUE(ToolTipOf(CommandId::About).isEmpty());
    EXPECT_TRUE(ToolTipOf(CommandId{99}).isEmpty());
}

TEST(CommandTable, MenuTextsTellTheTitle)
{
    const std::map<std::int16_t, const char*> texts = {
        {0, "Open "},
        {1, "Play"},
        {2, "Pause"},
        {3, "Stop"},
        {4, "Forward +10 seconds "},
        {5, "Forward +60 seconds "},
        {10, "Full Screen"},
        {12, "Copy Screen"},
        {15, "About Lyric Lantern CDG Player "},
        {16, "Exit Lyric Lantern CDG Player"},
        {24, "Rewind 10 seconds "},
        {25, "Rewind 60 seconds "},
        {41, "Increase Display Size"},
        {42, "Reduce Display Size"},
        {44, "Go to the Lyric Lantern web site"},
    };
    for (std::int16_t number = 0; number < 100; ++number) {
        const auto text = texts.find(number);
        EXPECT_EQ(MenuTextOf(CommandId{number}),
                  QString::fromLatin1(text == texts.end() ? "" : text->second))
            << number;
    }
}

TEST(KeyMap, EightKeysRepeatWhileTheyAreHeld)
{
    const std::set<KeyCode> repeating = {KeyCode::Left, KeyCode::Right, KeyCode::Up,
                                         KeyCode::Down, KeyCode::O,     KeyCode::Control,
                                         KeyCode::Alt,  KeyCode::Shift};
    for (int code = 0; code < 256; ++code) {
        const auto key = static_cast<KeyCode>(code);
        EXPECT_EQ(RepeatsWhileHeld(key), repeating.contains(key)) << code;
    }
}

TEST(KeyMap, ThreeKeysTellAboutTheProgram)
{
    const auto commandOf = [](KeyCode key) {
        return std::ranges::find(kKeyMap, key, &KeyBinding::key)->command;
    };
    EXPECT_EQ(commandOf(KeyCode::I), CommandId::About);
    EXPECT_EQ(commandOf(KeyCode::A), CommandId::About);
    EXPECT_EQ(commandOf(KeyCode::F1), CommandId::About);
}

TEST(KeyMap, EachRowRunsSomethingAndNoRowIsShadowed)
{
    for (std::size_t i = 0; i < kKeyMap.size(); ++i) {
        const KeyBinding& row = kKeyMap[i];
        EXPECT_TRUE(row.command.has_value() != (row.run != nullptr)) << i;
        bool isReached = false;
        for (ShiftBits shift = 0; shift < 8; ++shift) {
            bool isTaken = false;
            for (std::size_t earlier = 0; earlier < i; ++earlier)
                isTaken |= kKeyMap[earlier].key == row.key && kKeyMap[earlier].shift.Holds(shift);
            isReached |= row.shift.Holds(shift) && !isTaken;
        }
        EXPECT_TRUE(isReached) << i;
    }
}

TEST(KeyMap, EachCommandOfAKeyIsInTheTable)
{
    for (const KeyBinding& row : kKeyMap) {
        if (row.run)
            continue;
        const auto isIt = [&](const Command& command) { return command.id == row.command; };
        EXPECT_TRUE(std::ranges::any_of(kCommandTable, isIt)) << NumberOf(*row.command);
    }
}

TEST_F(CommandsTest, ThreeKeysPlayAndPause)
{
    Load(MakeBlueTrack());
    ASSERT_EQ(engine.Status, SoundStatus::Playing);
    for (const KeyCode key : {KeyCode::P, KeyCode::Blank, KeyCode::Pause}) {
        Press(key);
        EXPECT_EQ(engine.Status, SoundStatus::Paused);
        Press(key);
        EXPECT_EQ(engine.Status, SoundStatus::Playing);
    }
}

TEST_F(CommandsTest, TwoKeysStop)
{
    Load();
    for (const KeyCode key : {KeyCode::FullStop, KeyCode::NumericPoint}) {
        window.OpenMedia(MakeBlueTrack());
        Press(key);
        EXPECT_EQ(engine.Status, SoundStatus::Stopped);
        EXPECT_EQ(engine.PositionMs, 0);
    }
}

TEST_F(CommandsTest, MediaKeysPlayPauseAndStop)
{
    Load(MakeBlueTrack());
    ASSERT_EQ(engine.Status, SoundStatus::Playing);
    Press(KeyCode::MediaPlay);
    EXPECT_EQ(engine.Status, SoundStatus::Paused);
    Press(KeyCode::MediaPause);
    EXPECT_EQ(engine.Status, SoundStatus::Paused);
    Press(KeyCode::MediaPlay);
    EXPECT_EQ(engine.Status, SoundStatus::Playing);
    Press(KeyCode::MediaPause);
    EXPECT_EQ(engine.Status, SoundStatus::Paused);
    Press(KeyCode::MediaStop);
    EXPECT_EQ(engine.Status, SoundStatus::Stopped);
}

TEST_F(CommandsTest, MediaKeysGoToTheTracksBesideThisOneAndLeaveItPlayingPausedOrStopped)
{
    const QStringList tracks = {MakeBlueTrack(), MakeBlueTrack(), MakeBlueTrack()};
    Load(tracks[1]);
    const auto goes = [this](KeyCode key, const QString& track, SoundStatus status) {
        Press(key);
        EXPECT_EQ(state.Settings->GetSetting(QStringLiteral("LastPlayed"), {}), track);
        EXPECT_EQ(engine.Status, status);
    };
    goes(KeyCode::MediaNext, tracks[2], SoundStatus::Playing);
    engine.PositionMs = 5000;
    goes(KeyCode::MediaNext, tracks[2], SoundStatus::Playing);
    EXPECT_EQ(engine.PositionMs, 5000) << "there is no further one";
    Press('P');
    goes(KeyCode::MediaPrevious, tracks[1], SoundStatus::Paused);
    Press(KeyCode::MediaStop);
    goes(KeyCode::MediaPrevious, tracks[0], SoundStatus::Stopped);
    goes(KeyCode::MediaPrevious, tracks[0], SoundStatus::Stopped);
    goes(KeyCode::MediaNext, tracks[1], SoundStatus::Stopped);
}

TEST_F(CommandsTest, MediaKeysWithoutATrackDoNothing)
{
    Load();
    engine.Log.clear();
    for (const KeyCode key : {KeyCode::MediaPlay, KeyCode::MediaPause, KeyCode::MediaStop,
                              KeyCode::MediaNext, KeyCode::MediaPrevious})
        Press(key);
    EXPECT_EQ(engine.Status, SoundStatus::Empty);
    EXPECT_FALSE(engine.Loaded);
}

TEST_F(CommandsTest, ArrowsAndPageKeysSkip)
{
    engine.DurationMs = 200000;
    Load(MakeTrack({}, 200));
    engine.PositionMs = 100000;
    Press(KeyCode::Right);
    EXPECT_EQ(engine.PositionMs, 110000);
    Press(KeyCode::Left);
    EXPECT_EQ(engine.PositionMs, 100000);
    Press(KeyCode::PageDown);
    EXPECT_EQ(engine.PositionMs, 160000);
    Press(KeyCode::PageUp);
    EXPECT_EQ(engine.PositionMs, 100000);
}

TEST_F(CommandsTest, ASkipWithAModifierDoesNothing)
{
    Load(MakeTrack({}, 200));
    engine.PositionMs = 100000;
    for (const KeyCode key : {KeyCode::Right, KeyCode::Left, KeyCode::PageDown, KeyCode::PageUp}) {
        for (const ShiftBits shift : {kShiftBit, kControlBit, kAltBit})
            Press(key, shift);
    }
    EXPECT_EQ(engine.PositionMs, 100000);
}

TEST_F(CommandsTest, UpAndDownAdjustWithAnyModifier)
{
    Load();
    engine.Volume = 50;
    Press(KeyCode::Up);
    Press(KeyCode::Up, kShiftBit);
    EXPECT_EQ(engine.Volume, 54);
    Press(KeyCode::Down, kControlBit);
    EXPECT_EQ(engine.Volume, 52);
    EXPECT_EQ(Status(), QStringLiteral("Volume: 52%"));
}

TEST_F(CommandsTest, EachHeldArrowRepeatsAndOtherKeysActOncePerPress)
{
    engine.DurationMs = 200000;
    Load(MakeTrack({}, 200));
    const auto hold = [this](KeyCode key) {
        window.DoKeyDown(key, 0);
        window.DoKeyDown(key, 0);
        window.DoKeyDown(key, 0);
        window.DoKeyUp(key, 0);
    };
    hold(KeyCode::Right);
    EXPECT_EQ(engine.PositionMs, 30000);
    hold(KeyCode::Left);
    EXPECT_EQ(engine.PositionMs, 0);
    hold(KeyCode::Down);
    EXPECT_EQ(engine.Volume, 94);
    hold(KeyCode::Up);
    EXPECT_EQ(engine.Volume, 100);

    hold(KeyCode::PageDown);
    EXPECT_EQ(engine.PositionMs, 60000);
}

TEST_F(CommandsTest, AHeldKeyBlocksOthersUntilAnyKeyIsReleased)
{
    Load();
    engine.Volume = 50;
    window.DoKeyDown(kUnusedKey, 0);
    window.DoKeyDown(KeyCode::Up, 0);
    EXPECT_EQ(engine.Volume, 50);
    window.DoKeyUp(KeyCode::Shift, 0);
    window.DoKeyDown(KeyCode::Up, 0);
    EXPECT_EQ(engine.Volume, 52);
}

TEST_F(CommandsTest, ModifierKeysBlockNothing)
{
    Load();
    engine.Volume = 50;
    for (const KeyCode key : {KeyCode::Shift, KeyCode::Control, KeyCode::Alt})
        window.DoKeyDown(key, 0);
    window.DoKeyDown(KeyCode::Up, kControlBit);
    EXPECT_EQ(engine.Volume, 52);
}

TEST_F(CommandsTest, DigitsSizeTheWindow)
{
    Load();
    for (int digit = 1; digit <= 5; ++digit) {
        Press(static_cast<char>('0' + digit));
        Settle();
        EXPECT_EQ(window.size(), QSize(288 * digit + 50, 192 * digit + 55 + 48)) << digit;
    }
}

TEST_F(CommandsTest, DigitsWithControlGiveTheSizesInBetween)
{
    Load();
    const std::array factors = {1.5, 1.25, 1.2, 1.125, 1.1};
    for (int digit = 1; digit <= 5; ++digit) {
        Press(static_cast<char>('0' + digit), kControlBit);
        Settle();
        const double scale = digit * factors.at(static_cast<std::size_t>(digit) - 1);
        EXPECT_EQ(window.width(), static_cast<int>(288 * scale + 50.001)) << digit;
        EXPECT_EQ(window.height(), static_cast<int>(192 * scale + 55.001) + 48) << digit;
    }
}

TEST_F(CommandsTest, FourKeysToggleFullScreen)
{
    Load();
    for (const char key : {'F', 'R', '0', '6'}) {
        Press(key);
        EXPECT_TRUE(window.isFullScreen()) << key;
        Press(key);
        EXPECT_FALSE(window.isFullScreen()) << key;
    }
}

TEST_F(CommandsTest, PlusAndMinusWalkTheRingOfSizes)
{
    Load();
    Press('5');
    Press(KeyCode::NumericPlus);
    EXPECT_TRUE(window.isFullScreen());
    Press(KeyCode::NumericMinus);
    EXPECT_FALSE(window.isFullScreen());
    EXPECT_EQ(window.width(), 1490);
    Press(KeyCode::Minus);
    EXPECT_EQ(window.width(), 4 * 288 + 50);
    Press(KeyCode::Equals);
    EXPECT_EQ(window.width(), 1490);
}

TEST_F(CommandsTest, CCopiesThePicture)
{
    Load(MakeBlueTrack());
    engine.PositionMs = 100;
    window.UpdatePlayer();
    Press('C');
    const QImage image = QGuiApplication::clipboard()->image();
    ASSERT_EQ(image.size(), QSize(288, 192));
    EXPECT_EQ(image.pixel(0, 0), 0xFF0000AAu);
    EXPECT_EQ(Status(), QStringLiteral("Screen Copied to Clipboard"));
}

TEST_F(CommandsTest, QTogglesTheCustomSpeedAndMTheSound)
{
    Load();
    Press('Q');
    EXPECT_EQ(engine.Tempo, 20);
    Press('Q');
    EXPECT_EQ(engine.Tempo, 0);
    Press('M');
    EXPECT_EQ(engine.Volume, 0);
    Press('M');
    EXPECT_EQ(engine.Volume, 100);
}

TEST_F(CommandsTest, LettersChooseWhatTheWheelChanges)
{
    engine.DurationMs = 20000;
    Load(MakeTrack({}, 20));
    engine.PositionMs = 5000;
    Press('B');
    window.MouseWheel(0, 120, 0, 0);
    EXPECT_EQ(engine.Balance, 2);
    Press('K');
    window.MouseWheel(0, -120, 0, 0);
    EXPECT_EQ(engine.Pitch, -1);
    Press('S');
    window.MouseWheel(0, 240, 0, 0);
    EXPECT_EQ(engine.Tempo, 2);
    Press('T');
    EXPECT_EQ(Status(), QStringLiteral("Track Position"));
    window.MouseWheel(0, 1, 0, 0);
    EXPECT_EQ(engine.PositionMs, 6000);
    Press('V');
    window.MouseWheel(0, -1, 0, 0);
    EXPECT_EQ(engine.Volume, 98);
}

TEST_F(CommandsTest, TheWheelInTrackModeWithoutATrackDoesNothing)
{
    Load();
    Press('T');
    engine.Log.clear();
    window.MouseWheel(0, 120, 0, 0);
    EXPECT_TRUE(engine.Actions().empty());
}

TEST_F(CommandsTest, TheNumberOfADeviceSelectsIt)
{
    engine.Devices = {QStringLiteral("Default"), QStringLiteral("Headphones")};
    Load();
    window.MainPopup(CommandId{1001});
    EXPECT_EQ(engine.SelectedDevice, 1);
    window.MainPopup(CommandId{1009}); // no such device: the default
    EXPECT_EQ(engine.SelectedDevice, 0);
}

TEST_F(CommandsTest, AnUnknownNumberDoesNothing)
{
    Load();
    engine.Log.clear();
    for (const std::int16_t number : std::to_array<std::int16_t>({-1, 11, 13, 30, 36, 43, 999}))
        window.MainPopup(CommandId{number});
    EXPECT_TRUE(engine.Log.empty());
}

TEST_F(CommandsTest, ControlQAndAltF4CloseAndF4AloneDoesNot)
{
    Load();
    Press(KeyCode::F4);
    EXPECT_TRUE(window.isVisible());
    Press(KeyCode::F4, kAltBit);
    EXPECT_FALSE(window.isVisible());
    window.show();
    Press('Q', kControlBit);
    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(engine.Tempo, 0);
}

TEST_F(CommandsTest, EventsOfTheWindowReachTheHandlers)
{
    Load();
    engine.Volume = 50;
    const auto send = [this](QEvent::Type type, int key, bool repeats) {
        QKeyEvent event(type, key, Qt::NoModifier, {}, repeats);
        QCoreApplication::sendEvent(&window, &event);
    };
    send(QEvent::KeyPress, Qt::Key_M, false);
    send(QEvent::KeyRelease, Qt::Key_M, true);
    send(QEvent::KeyPress, Qt::Key_M, true);
    EXPECT_EQ(engine.Volume, 0) << "a held key acts once";
    send(QEvent::KeyRelease, Qt::Key_M, false);
    send(QEvent::KeyPress, Qt::Key_M, false);
    EXPECT_EQ(engine.Volume, 50);
    QWheelEvent turn({}, {}, {}, {0, 120}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&window, &turn);
    EXPECT_EQ(engine.Volume, 52);
}

TEST_F(CommandsTest, ADoubleClickTogglesFullScreen)
{
    Load();
    QMouseEvent click(QEvent::MouseButtonDblClick, QPointF(50, 50), QPointF(50, 50), Qt::LeftButton,
                      Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&window, &click);
    EXPECT_TRUE(window.isFullScreen());
}

} // namespace
} // namespace lantern
