// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "FakeAudioEngine.h"
#include "StageControl.h"
#include "StageFolder.h"
#include "frmStage.h"

#include <QCoreApplication>
#include <QTest>

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace lantern {

// A player that only remembers what keys and wheel asked of it.
class RecordingPlayer : public InputTarget {
public:
    void DoKeyDown(KeyCode keyCode, ShiftBits) override
    {
        Calls.push_back("down " + std::to_string(static_cast<int>(keyCode)));
    }
    // Of any key, and nothing acts on it alone.
    void DoKeyUp(KeyCode, ShiftBits) override {}
    void MouseWheel(std::int32_t, std::int32_t delta, std::int32_t, std::int32_t) override
    {
        Calls.push_back("wheel " + std::to_string(delta));
    }
    void ToggleStage() override { Calls.emplace_back("stage"); }

    std::vector<std::string> TakeCalls() { return std::exchange(Calls, {}); }

    std::vector<std::string> Calls;
};

// The stage window before an empty main window, with an engine without sound.
class StageWindowFixture : public ::testing::Test {
protected:
    StageWindowFixture()
    {
        mainWindow.setGeometry(100, 100, 600, 400);
        mainWindow.show();
        stage.Load();
        stage.Changed = [this](const StageSettings&) { window.ShowSettings(); };
    }

    void Show()
    {
        window.ShowForm(true);
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    }
    // To whoever has the keyboard.
    static void Type(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
        QCoreApplication::processEvents(); // some keys act when they are done
    }

    StageFolder folder;
    FakeAudioEngine engine;
    StageControl stage{engine, folder.Path()};
    RecordingPlayer player;
    QWidget mainWindow;
    frmStage window{mainWindow, player, stage, TwipsPerPixel{15, 15}};
};

} // namespace lantern
