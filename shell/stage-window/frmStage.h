// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SkinParts.h"
#include "StageParts.h"
#include "StageTable.h"
#include "WindowInput.h"
#include "ctlFrame.h"
#include "ctlSkinner.h"
#include "ctlSlide.h"

#include <QWidget>

#include <array>
#include <cstddef>
#include <functional>
#include <vector>

namespace lantern {

class StageControl;

// The small window with what singers and their hosts choose. All of it can be done by keyboard:
// Tab walks, Space switches, Escape and F2 close; other keys are the player's. It keeps no value
// of its own: its controls act on the stage control, and Show brings them what that holds.
//
// Life cycle: made hidden at the first wish to see it; it is hidden rather than closed, and goes
// with the player.
class frmStage : public QWidget {
public:
    // All are borrowed and outlive the window.
    frmStage(QWidget& mainWindow, InputTarget& player, StageControl& stage, TwipsPerPixel twips);

    // The right mouse button was released: the player shows its menu. It may run the event loop.
    std::function<void()> RightButtonUp;
    std::function<void(StageDeed)> Do;

    std::function<void()> ChooseScreen;     // by a menu; it may run the event loop
    std::function<void(int by)> StepScreen; // to the next choice, or to the one before

    // The test of the delay is to begin, or to end.
    std::function<void(bool isOn)> Test;

    void ShowForm(bool isShown);
    void ShowTest(bool isOn); // whether it runs
    void ShowSinger(const QString& screen, const QString& status);
    // Brings the controls to what holds now.
    void ShowSettings();

    ctlFrame& Group(StageGroup group);
    ctlPicBtn& Switch(std::size_t index) { return *m_switches.at(index); }
    ctlSlide& DelaySlider() { return *m_delay; }
    QLabel& DelayValue() { return *m_delayValue; }
    QLabel& DelayDevice() { return *m_delayDevice; }
    ctlPicBtn& TestSwitch() { return *m_test; }
    ChoiceButton& Choice(std::size_t index) { return *m_choices.at(index); }
    ctlPicBtn& Button(std::size_t index) { return *m_buttons.at(index); }
    MenuButton& ScreenButton() { return *m_screen; }
    QLabel& SingerStatus() { return *m_singerStatus; }
    ctlPicBtn& HideButton() { return *m_hide; }

protected:
    void resizeEvent(QResizeEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void MakeGroup(const StageGroupRow& row);
    void MakeDelay();
    void ShowDelay();
    void MakeSinger();
    bool MoveDelay(int key);
    void Escape();
    void SetTest(bool isOn);
    void EndTest();
    void MakeSwitch(const StageSwitch& design);
    void MakeChoice(const StageChoice& design);
    void MakeButton(const StageButton& design);
    void Dress(ctlPicBtn& button, const TwipRect& rect, QStringView caption, QStringView toolTip);
    void MakeHideButton();

    QWidget& m_mainWindow;
    StageControl& m_stage;
    TwipsPerPixel m_twips;
    WindowInput m_input;

    ctlSkinner m_skinner; // owns all that stands on it
    FocusMark m_focusMark;
    std::array<ctlFrame*, kStageGroups.size()> m_groups{};
    // In the order of their tables.
    std::vector<ctlPicBtn*> m_switches;
    std::vector<ChoiceButton*> m_choices;
    std::vector<ctlPicBtn*> m_buttons;
    ctlSlide* m_delay = nullptr;
    WhiteLabel* m_delayValue = nullptr;
    WhiteLabel* m_delayDevice = nullptr;
    ctlPicBtn* m_test = nullptr;
    MenuButton* m_screen = nullptr;
    WhiteLabel* m_singerStatus = nullptr;
    ctlPicBtn* m_hide = nullptr;
};

} // namespace lantern
