// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CommandId.h"
#include "ToolbarTable.h"
#include "Twips.h"
#include "ctlFrame.h"
#include "ctlPicBtn.h"
#include "ctlSlide.h"
#include "ctlTicker.h"

#include <QString>

#include <array>
#include <cstdint>
#include <functional>

namespace lantern {

// The bar of buttons, sliders and time under the picture: the controls, where they lie, and what
// the user does to them. What they show is up to ControlRefresh.
//
// The controls are children of the main window; the buttons belong to the frames that they stand
// on. Any of them that gets the keyboard's focus hands it to pic. Everything runs on the
// user-interface thread.
class Toolbar {
public:
    // Both are borrowed and outlive the toolbar.
    Toolbar(QWidget& window, QWidget& pic, TwipsPerPixel twips);

    std::function<void(CommandId command)> Click; // of the button of that command
    std::function<void()> SliderChange;           // the user moved ctlSlider; it has the position
    std::function<void()> VolumeChange;           // the user moved ctlVolume

    // Puts the buttons that share a place onto each other, and tells what each button is for.
    void SetupToolbar();
    // In twips, within the window. The parts follow the width.
    void Place(const TwipRect& bar);
    void SetVisible(bool visible) { m_tBar.setVisible(visible); }
    bool IsVisible() const { return !m_tBar.isHidden(); }
    // Of TBar, in twips.
    static constexpr std::int32_t Height() { return kTBar.height; }

    // Where the bar shows none of its controls, and the time: the mouse there is the window's.
    std::array<QWidget*, 3> BareSurfaces() { return {&m_tBar, &m_tBar2, &m_playTicker}; }

    ctlFrame& TBar() { return m_tBar; }
    ctlFrame& TBar2() { return m_tBar2; }
    ctlFrame& TBarZoom() { return m_tBarZoom; }
    ctlSlide& ctlSlider() { return m_ctlSlider; }
    ctlSlide& ctlVolume() { return m_ctlVolume; }
    ctlTicker& PlayTicker() { return m_playTicker; }
    // The command has to be one of kToolbarButtons.
    ctlPicBtn& tBtn(CommandId command);

private:
    ctlFrame& FrameOf(BarFrame frame);
    void MakeFrame(ctlFrame& frame, const TwipRect& rect, const QString& name);
    void MakeSlider(ctlSlide& slider, const TwipRect& rect, const QString& name);
    void MakeButton(const ToolbarButton& row, QWidget& pic);
    void PartSkipPairs();
    void LetButtonsTakeFocus();

    static constexpr std::int16_t kHighestIndex =
        NumberOf(std::ranges::max(kToolbarButtons, {}, &ToolbarButton::command).command);

    TwipsPerPixel m_twips;
    // From the back to the front: the empty left end of TBar2 lies under the slider and, in a
    // narrow window, under the left group.
    ctlFrame m_tBar;
    ctlFrame m_tBar2;
    ctlFrame m_tBarZoom;
    ctlSlide m_ctlSlider;
    ctlSlide m_ctlVolume;
    ctlTicker m_playTicker;
    std::array<ctlPicBtn*, kHighestIndex + 1> m_tBtn{}; // by number; none in a gap
};

} // namespace lantern
