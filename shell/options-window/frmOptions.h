// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "OptionsParts.h"
#include "OptionsTable.h"
#include "SpectrumSurface.h"
#include "Twips.h"
#include "WindowInput.h"
#include "ctlPicBtn.h"
#include "ctlSkinner.h"
#include "ctlSlide.h"

#include <QLabel>
#include <QWidget>

#include <array>
#include <cstddef>

namespace lantern {

class AudioControl;
class OptionsHost;

// The small window with the audio controls and the About panel. It stays in front of the player,
// and is hidden rather than closed. It keeps no value of its own: its controls act on the player,
// and the player's tick writes the engine's state back into them.
//
// Life cycle: made hidden at the first touch of any of its elements, which may be before the main
// window is on the screen; it goes with the player.
class frmOptions : public QWidget {
public:
    // All are borrowed and outlive the window. Without an analyser, the spectrum stays black.
    frmOptions(QWidget& mainWindow, OptionsHost& player, AudioControl& audio,
               SpectrumAnalyser* analyser, TwipsPerPixel twips);

    // "OPTIONS" shows the options, "NONE" hides the window, any other word shows the About panel.
    void ShowForm(const QString& word);
    bool IsAboutShown() const { return isVisible() && m_front == OptionsPanel::SkinAbout; }
    QWidget& PanelInFront() { return Panel(m_front); }

    // Read and written by the player. Setting the value of a slider to another one acts as if the
    // user had moved it.
    ctlSlide& ctlBalance() { return Slider(AudioValue::Balance); }
    ctlSlide& ctlKeyPitch() { return Slider(AudioValue::KeyPitch); }
    ctlSlide& ctlSpeed() { return Slider(AudioValue::Speed); }
    ctlSlide& ctlVolume() { return Slider(AudioValue::Volume); }
    ctlPicBtn& cmd(std::size_t index) { return *m_cmd.at(index); }
    QLabel& lab(std::size_t index) { return *m_lab.at(index); }
    ctlPicBtn& dev(std::size_t index) { return *m_dev.at(index); }
    SpectrumSurface& SpecPic() { return *m_specPic; }

    // The label that tells the value as text.
    QLabel& ValueLabel(AudioValue value) { return lab(4 + static_cast<std::size_t>(value)); }

protected:
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    ctlSlide& Slider(AudioValue value) { return *m_sliders.at(static_cast<std::size_t>(value)); }
    ctlSkinner& Panel(OptionsPanel panel);

    void MakeControls();
    QWidget* MakeControl(const OptionsPlace& place);
    WhiteLabel* MakeLabel(const OptionsPlace& place);
    ctlPicBtn* MakeButton(const OptionsPlace& place);
    ctlSlide* MakeSlider(const OptionsPlace& place);
    void SetupSpectrum(SpectrumAnalyser* analyser);
    void SetupOptions();
    void NameForReaders();
    void BringToFront(OptionsPanel panel);

    void Click(const OptionsButton& design, const ctlPicBtn& button);
    void ChooseDevice(ctlPicBtn& button);
    void SliderMoved(std::size_t slider);

    QWidget& m_mainWindow;
    OptionsHost& m_player;
    AudioControl& m_audio;
    TwipsPerPixel m_twips;
    WindowInput m_input;

    ctlSkinner m_skinner;
    ctlSkinner m_skinAbout;
    OptionsPanel m_front = OptionsPanel::Skinner;
    // The panels own all that stands on them.
    std::array<QWidget*, kOptionsPlaces.size()> m_controls{};
    std::array<WhiteLabel*, kOptionsLabels> m_lab{};
    std::array<ctlPicBtn*, kOptionsCommands> m_cmd{};
    std::array<ctlPicBtn*, kOptionsDevices> m_dev{};
    std::array<ctlSlide*, kOptionsSliders> m_sliders{};
    SpectrumSurface* m_specPic = nullptr;
    QLabel* m_labInfo = nullptr;
    QWidget* m_aboutPic = nullptr;
    QLabel* m_url = nullptr;
};

} // namespace lantern
