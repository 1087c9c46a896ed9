// SPDX-License-Identifier: GPL-3.0-or-later
#include "frmOptions.h"

#include "AccessibleRole.h"
#include "Application.h"
#include "ArtPictures.h"
#include "AudioControl.h"
#include "ButtonDress.h"
#include "OptionsAccessible.h"
#include "OptionsHost.h"
#include "SideWindow.h"
#include "ToolTips.h"

#include <algorithm>
#include <utility>

namespace lantern {
namespace {

constexpr std::size_t kFirstValueLabel = 4;

QString AboutText()
{
    return QStringList{
        QStringLiteral("\u00A9 2026 Lyric Lantern. Licence: GPL-3.0-or-later."),
        QString(),
        QStringLiteral(
            "You may use and distribute this player without charge and without restriction."),
        QString(),
        QStringLiteral("Visit our web site for news of our other product,"),
        QStringLiteral("Lyric Lantern Studio, our award-winning software for making your own CDG "
                       "karaoke tracks."),
    }
        .join(QStringLiteral("\r\n"));
}

QString WithTitle(QStringView text)
{
    return text.toString().replace(QStringLiteral("%1"), kApplicationTitle);
}

const OptionsButton& DesignOf(const OptionsPlace& place)
{
    return *std::ranges::find_if(kOptionsButtons, [&](const OptionsButton& button) {
        return button.control == place.control && button.index == place.index;
    });
}

} // namespace

frmOptions::frmOptions(QWidget& mainWindow, OptionsHost& player, AudioControl& audio,
                       SpectrumAnalyser* analyser, TwipsPerPixel twips)
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint), m_mainWindow(mainWindow),
      m_player(player), m_audio(audio), m_twips(twips), m_input(player),
      m_skinner(this, SkinAmbient()), m_skinAbout(this, SkinAmbient())
{
    OptionsAccessible::Install();
    // The program runs on when no other window is to be seen.
    setAttribute(Qt::WA_QuitOnClose, false);
    resize(PixelsOf(kOptionsSize, m_twips));
    MakeControls();
    m_skinner.Initialize(this, false, true);
    m_skinAbout.Initialize(this, false, true);
    CentreOnScreen(*this, kOptionsSize, m_twips);
    SetupSpectrum(analyser);
    SetupOptions();
    for (ctlPicBtn* button : m_cmd)
        button->setFocusProxy(m_specPic);
    m_skinner.MouseUp = m_skinAbout.MouseUp = [this](const MouseReport& report) {
        if (report.button == RightButton)
            m_player.ShowPopMenu();
    };
    BringToFront(OptionsPanel::Skinner);
    m_specPic->setFocus();
    StandBeforePlayer(*this, m_mainWindow);
}

ctlSkinner& frmOptions::Panel(OptionsPanel panel)
{
    return panel == OptionsPanel::Skinner ? m_skinner : m_skinAbout;
}

void frmOptions::MakeControls()
{
    for (std::size_t i = 0; i < kOptionsPlaces.size(); ++i) {
        const OptionsPlace& place = kOptionsPlaces[i];
        m_controls[i] = MakeControl(place);
        m_controls[i]->setGeometry(PixelsOf(place.rect, m_twips));
        if (place.control == OptionsControl::lab)
            m_lab.at(place.index)->FitToText();
    }
}

QWidget* frmOptions::MakeControl(const OptionsPlace& place)
{
    QWidget* panel = &Panel(place.panel);
    switch (place.control) {
    case OptionsControl::lab:
        return m_lab.at(place.index) = MakeLabel(place);
    case OptionsControl::cmd:
        return m_cmd.at(place.index) = MakeButton(place);
    case OptionsControl::dev:
        return m_dev.at(place.index) = MakeButton(place);
    case OptionsControl::Slider:
        return m_sliders.at(place.index) = MakeSlider(place);
    case OptionsControl::SpecPic:
        m_specPic = new SpectrumSurface(panel);
        m_specPic->setFocusPolicy(Qt::StrongFocus);
        return m_specPic;
    case OptionsControl::labInfo:
        return m_labInfo = MakeLabel(place);
    case OptionsControl::AboutPic:
        return m_aboutPic = new PictureBox(panel, AboutPicture());
    case OptionsControl::URL:
        return m_url = new WebAddress(panel, m_player);
    }
    return nullptr; // the switch is complete
}

WhiteLabel* frmOptions::MakeLabel(const OptionsPlace& place)
{
    auto* label = new WhiteLabel(&Panel(place.panel));
    label->setText(place.caption.toString());
    if (place.control == OptionsControl::labInfo) {
        label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
        label->setWordWrap(true);
    } else {
        const bool namesSlider = place.index < kFirstValueLabel;
        label->setAlignment(Qt::AlignBottom | (namesSlider ? Qt::AlignRight : Qt::AlignLeft));
    }
    return label;
}

ctlPicBtn* frmOptions::MakeButton(const OptionsPlace& place)
{
    const OptionsButton& design = DesignOf(place);
    QWidget* const panel = &Panel(place.panel);
    auto* button = place.control == OptionsControl::dev ? new DeviceButton(panel, SkinAmbient())
                                                        : new ctlPicBtn(panel, SkinAmbient());
    button->SetCaption(place.caption.toString());
    GiveStyle(*button, {design.isCheckBox, design.mousePointer, kWhite, kAccentColour});
    if (design.face)
        GiveFace(*button, *design.face);
    if (place.control == OptionsControl::cmd)
        button->Click = [this, &design, button] { Click(design, *button); };
    else
        button->Click = [this, button] { ChooseDevice(*button); };
    return button;
}

ctlSlide* frmOptions::MakeSlider(const OptionsPlace& place)
{
    const OptionsSlider& design = kOptionsSliderTable.at(place.index);
    auto* slider = new ctlSlide(&Panel(place.panel), SkinAmbient());
    slider->SetValues(design.min, design.max, design.value);
    slider->SetSliderColor(kAccentColour);
    slider->SetSliderBack(design.sliderBack);
    slider->SetCenterLine(design.centerLine);
    slider->SetCenterLineColor(kOptionsCentreLine);
    slider->Change = [this, index = place.index] { SliderMoved(index); };
    return slider;
}

void frmOptions::SetupSpectrum(SpectrumAnalyser* analyser)
{
    m_specPic->Attach(analyser);
    m_specPic->SetOn(true);
    m_specPic->SetFirstColour(kAccentColour);
    m_specPic->SetSecondColour(kOptionsSecondBars);
}

void frmOptions::SetupOptions()
{
    setWindowTitle(kApplicationTitle + QStringLiteral(" Options"));
    m_skinner.SetCaption(kApplicationTitle + u' ');
    m_skinAbout.SetCaption(kApplicationTitle + u' ');
    for (std::size_t i = 0; i < kOptionsPlaces.size(); ++i)
        m_controls[i]->setToolTip(WithTitle(kOptionsPlaces[i].toolTip));
    m_labInfo->setText(AboutText());
    m_url->setText(kWebSite);
    NameForReaders();
}

void frmOptions::NameForReaders()
{
    for (std::size_t i = 0; i < kOptionsSliders; ++i) {
        m_sliders[i]->setAccessibleName(m_lab[i]->text());
        m_lab[kFirstValueLabel + i]->setAccessibleDescription(m_lab[i]->text());
    }
    for (ctlPicBtn* button : m_cmd) {
        if (button->Caption().isEmpty())
            button->setAccessibleName(WithoutKey(button->toolTip()));
    }
    m_aboutPic->setAccessibleName(kApplicationTitle);
    SetAccessibleRole(*m_aboutPic, QAccessible::Graphic);
}

void frmOptions::ShowForm(const QString& word)
{
    BringToFront(word == kOptionsForm ? OptionsPanel::Skinner : OptionsPanel::SkinAbout);
    ShowBeforePlayer(*this, m_mainWindow, word != kNoForm);
}

void frmOptions::BringToFront(OptionsPanel panel)
{
    m_front = panel;
    Panel(panel).raise();
}

void frmOptions::Click(const OptionsButton& design, const ctlPicBtn& button)
{
    if (design.act)
        design.act(m_audio, button.Value());
    else
        ShowForm(design.form.toString());
}

void frmOptions::ChooseDevice(ctlPicBtn& button)
{
    const QPointer<QWidget> window(this);
    m_player.ShowDeviceMenu();
    if (!window)
        return;
    button.SetValue(false); // nothing is switched by it
    m_specPic->setFocus();
}

void frmOptions::SliderMoved(std::size_t slider)
{
    const OptionsSlider& design = kOptionsSliderTable.at(slider);
    m_audio.SetWheelType(design.wheelMode);
    design.set(m_audio, m_sliders.at(slider)->Value());
}

bool frmOptions::event(QEvent* event)
{
    if (event->type() == QEvent::WindowActivate && isVisible())
        m_specPic->setFocus();
    return QWidget::event(event);
}

void frmOptions::resizeEvent(QResizeEvent*)
{
    if (isMinimized())
        return;
    m_skinner.setGeometry(rect());
    m_skinAbout.setGeometry(rect());
}

// The window manager's close, too, only hides.
void frmOptions::closeEvent(QCloseEvent*)
{
    ShowForm(kNoForm.toString());
}

void frmOptions::keyPressEvent(QKeyEvent* event)
{
    m_input.KeyPress(*event);
}

void frmOptions::keyReleaseEvent(QKeyEvent* event)
{
    m_input.KeyRelease(*event);
}

void frmOptions::wheelEvent(QWheelEvent* event)
{
    m_input.Wheel(*event);
}

// Behind the About panel there is nothing to walk to.
bool frmOptions::focusNextPrevChild(bool next)
{
    return m_front == OptionsPanel::Skinner && QWidget::focusNextPrevChild(next);
}

} // namespace lantern
