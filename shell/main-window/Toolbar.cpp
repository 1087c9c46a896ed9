// SPDX-License-Identifier: GPL-3.0-or-later
#include "Toolbar.h"

#include "CommandTable.h"
#include "PlayerLook.h"
#include "ToolTips.h"
#include "ToolbarLayout.h"

#include <algorithm>
#include <cstdlib>

namespace lantern {
namespace {

constexpr std::int32_t kFirstVolume = 50;
constexpr std::int32_t kMsPerSecond = 1000;

} // namespace

Toolbar::Toolbar(QWidget& window, QWidget& pic, TwipsPerPixel twips)
    : m_twips(twips), m_tBar(&window), m_tBar2(&m_tBar), m_tBarZoom(&m_tBar2), m_ctlSlider(&m_tBar),
      m_ctlVolume(&m_tBar2), m_playTicker(&m_tBar2)
{
    MakeFrame(m_tBar, kTBar, QStringLiteral("TBar"));
    MakeFrame(m_tBar2, kTBar2, QStringLiteral("TBar2"));
    MakeFrame(m_tBarZoom, kTBarZoom, QStringLiteral("TBarZoom"));
    m_tBar.setAccessibleName(QStringLiteral("Toolbar"));
    m_tBar2.setAccessibleName(QStringLiteral("Time and volume"));
    m_tBarZoom.setAccessibleName(QStringLiteral("Display size"));
    MakeSlider(m_ctlSlider, kSliderRect, QStringLiteral("ctlSlider"));
    MakeSlider(m_ctlVolume, kVolumeRect, QStringLiteral("ctlVolume"));
    m_ctlSlider.setAccessibleName(QStringLiteral("Track position"));
    m_ctlVolume.setAccessibleName(QStringLiteral("Volume"));
    m_ctlSlider.SetGlide(kMsPerSecond);
    m_ctlVolume.SetValue(kFirstVolume);
    m_playTicker.setObjectName(QStringLiteral("PlayTicker"));
    m_playTicker.setAccessibleName(QStringLiteral("Time"));
    m_playTicker.setGeometry(PixelsOf(kTickerRect, m_twips));
    for (const ToolbarButton& row : kToolbarButtons)
        MakeButton(row, pic);
    PartSkipPairs();
    m_ctlSlider.setFocusProxy(&pic);
    m_ctlVolume.setFocusProxy(&pic);
    m_ctlSlider.Scroll = [this] {
        if (SliderChange)
            SliderChange();
    };
    m_ctlVolume.Scroll = [this] {
        if (VolumeChange)
            VolumeChange();
    };
    LetButtonsTakeFocus();
}

void Toolbar::MakeFrame(ctlFrame& frame, const TwipRect& rect, const QString& name)
{
    frame.setObjectName(name);
    frame.SetFrameBorder(kNoBorder);
    frame.SetCaption(QString());
    frame.SetBackColor(kBlack);
    frame.setGeometry(PixelsOf(rect, m_twips));
    frame.show();
}

void Toolbar::MakeSlider(ctlSlide& slider, const TwipRect& rect, const QString& name)
{
    slider.setObjectName(name);
    slider.SetSliderColor(kAccentColour);
    slider.SetSliderBack(kDarkGrey);
    slider.SetBackColor(kBlack);
    slider.setGeometry(PixelsOf(rect, m_twips));
}

// Shown one by one, so that a button counts as visible before its window is: what is hidden then
// stays hidden when the window is shown.
void Toolbar::MakeButton(const ToolbarButton& row, QWidget& pic)
{
    auto* const button = new ctlPicBtn(&FrameOf(row.parent));
    m_tBtn.at(static_cast<std::size_t>(NumberOf(row.command))) = button;
    button->setObjectName(QStringLiteral("tBtn(%1)").arg(NumberOf(row.command)));
    button->DisableRefresh();
    button->SetBackColor(kBlack);
    GiveStyle(*button, row.style);
    GiveFace(*button, row.face);
    button->setGeometry(PixelsOf(row.rect, m_twips));
    button->Refresh();
    button->setFocusProxy(&pic);
    button->Click = [this, command = row.command] {
        if (Click)
            Click(command);
    };
    button->show();
}

void Toolbar::PartSkipPairs()
{
    for (const SkipPair& pair : kSkipPairs) {
        const int middle = MiddleOf(pair) / m_twips.x;
        ctlPicBtn& back = tBtn(pair.back);
        back.setMask(QRect(0, 0, middle - back.x(), back.height()));
        ctlPicBtn& forward = tBtn(pair.forward);
        forward.setMask(forward.rect().adjusted(middle - forward.x(), 0, 0, 0));
    }
}

void Toolbar::LetButtonsTakeFocus()
{
    for (const CommandId command : kFocusingButtons) {
        ctlPicBtn& button = tBtn(command);
        button.MouseUp = [&button](const MouseReport&) { button.setFocus(); };
    }
}

void Toolbar::SetupToolbar()
{
    for (const SharedPlace& place : kSharedPlaces)
        tBtn(place.moved).move(tBtn(place.onto).pos());
    for (const ToolbarButton& row : kToolbarButtons) {
        const QStringView toolTip = ToolTipOf(row.command);
        tBtn(row.command).setToolTip(toolTip.toString());
        tBtn(row.command).setAccessibleName(WithoutKey(toolTip));
    }
}

void Toolbar::Place(const TwipRect& bar)
{
    m_tBar.setGeometry(PixelsOf(bar, m_twips));
    const BarLayout layout = LayoutBar(bar.width, m_twips.x);
    m_tBar2.setGeometry(
        PixelsOf({layout.rightGroupLeft, kTBar2.top, kTBar2.width, kTBar2.height}, m_twips));
    m_tBarZoom.setVisible(layout.isZoomVisible);
    m_ctlSlider.setGeometry(PixelsOf(
        {layout.sliderLeft, kSliderRect.top, layout.sliderWidth, kSliderRect.height}, m_twips));
}

ctlPicBtn& Toolbar::tBtn(CommandId command)
{
    const std::int16_t number = NumberOf(command);
    if (number < 0 || number > kHighestIndex || !m_tBtn[static_cast<std::size_t>(number)])
        std::abort(); // a command that no button has is a bug of ours
    return *m_tBtn[static_cast<std::size_t>(number)];
}

ctlFrame& Toolbar::FrameOf(BarFrame frame)
{
    switch (frame) {
    case BarFrame::TBar:
        return m_tBar;
    case BarFrame::TBar2:
        return m_tBar2;
    case BarFrame::TBarZoom:
        return m_tBarZoom;
    }
    std::abort();
}

} // namespace lantern
