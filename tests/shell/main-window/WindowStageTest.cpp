// SPDX-License-Identifier: GPL-3.0-or-later
// The stage window, as the player opens it and acts on it.
#include "WindowHand.h"
#include "frmStage.h"

#include <QFile>

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
