// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "FakeAudioEngine.h"
#include "OptionsHost.h"
#include "RecordingAudioHost.h"
#include "frmOptions.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace lantern {

// A player that only remembers what the options window asked of it.
class RecordingOptionsHost : public OptionsHost {
public:
    void DoKeyDown(KeyCode keyCode, ShiftBits shift) override { Note("down", keyCode, shift); }
    void DoKeyUp(KeyCode keyCode, ShiftBits shift) override { Note("up", keyCode, shift); }
    void MouseWheel(std::int32_t keys, std::int32_t delta, std::int32_t x, std::int32_t y) override
    {
        EXPECT_EQ(keys, 0);
        EXPECT_EQ(x, 0);
        EXPECT_EQ(y, 0);
        Calls.push_back("wheel " + std::to_string(delta));
    }
    void ToggleStage() override { Calls.emplace_back("stage"); }
    void ShowPopMenu() override { Calls.emplace_back("menu"); }
    void ShowDeviceMenu() override
    {
        Calls.emplace_back("device menu");
        if (WhileDeviceMenu)
            WhileDeviceMenu();
    }
    void OpenWebSite() override { Calls.emplace_back("web site"); }

    std::vector<std::string> Calls;
    std::function<void()> WhileDeviceMenu;

private:
    void Note(const char* what, KeyCode keyCode, ShiftBits shift)
    {
        Calls.push_back(std::string(what) + ' ' + std::to_string(static_cast<int>(keyCode)) + ' ' +
                        std::to_string(shift));
    }
};

// The options window before an empty main window, with an engine without sound.
class OptionsFixture : public ::testing::Test {
protected:
    OptionsFixture()
    {
        mainWindow.setGeometry(100, 100, 600, 400);
        mainWindow.show();
    }

    void ShowOptions() { Show("OPTIONS"); }
    void ShowAbout() { Show("ABOUT"); }
    void Show(const char* word)
    {
        options.ShowForm(QString::fromLatin1(word));
        for (int i = 0; i < 3; ++i)
            QCoreApplication::processEvents();
    }

    FakeAudioEngine engine;
    RecordingAudioHost audioHost;
    AudioControl audio{engine, audioHost};
    RecordingOptionsHost player;
    QWidget mainWindow;
    frmOptions options{mainWindow, player, audio, engine.Spectrum(), TwipsPerPixel{15, 15}};
};

} // namespace lantern
