// SPDX-License-Identifier: GPL-3.0-or-later
#include "frmStage.h"

#include "AccessibleRole.h"
#include "Application.h"
#include "ButtonDress.h"
#include "PlayerLook.h"
#include "SideWindow.h"
#include "SkinParts.h"
#include "StageControl.h"
#include "ToolTips.h"

#include <QKeyEvent>

namespace lantern {
namespace {

constexpr std::int32_t kNoEdge = 0;

const QString kStageTitle = kApplicationTitle + QStringLiteral(" Stage");

} // namespace

frmStage::frmStage(QWidget& mainWindow, InputTarget& player, StageControl& stage,
                   TwipsPerPixel twips)
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint), m_mainWindow(mainWindow),
      m_stage(stage), m_twips(twips), m_input(player), m_skinner(this, SkinAmbient()),
      m_focusMark(*this)
{
    // The program runs on when no other window is to be seen.
    setAttribute(Qt::WA_QuitOnClose, false);
    SetAccessibleRole(*this, QAccessible::Dialog);
    setWindowTitle(kStageTitle);
    resize(PixelsOf(StageSize(), m_twips));
    m_skinner.SetCaption(kStageTitle + u' ');
    m_skinner.Initialize(this, false, true);
    m_skinner.MouseUp = [this](const MouseReport& report) {
        if (report.button == RightButton && RightButtonUp)
            RightButtonUp();
    };
    for (const StageGroupRow& row : kStageGroups)
        MakeGroup(row);
    MakeHideButton();
    CentreOnScreen(*this, StageSize(), m_twips);
    ShowSettings();
    m_choices.front()->setFocus();
    StandBeforePlayer(*this, m_mainWindow);
}

ctlFrame& frmStage::Group(StageGroup group)
{
    return *m_groups.at(static_cast<std::size_t>(group));
}

void frmStage::MakeGroup(const StageGroupRow& row)
{
    auto* const frame = new ctlFrame(&m_skinner, SkinAmbient());
    m_groups.at(static_cast<std::size_t>(row.group)) = frame;
    frame->SetFrameBorder(kNoEdge);
    frame->SetBackColor(kBlack);
    frame->SetForeColor(kAccentColour);
    frame->SetCaption(row.caption.toString());
    frame->setGeometry(PixelsOf(TwipRect{kStageMargin, StageGroupTop(row.group),
                                         kStageWidth - 2 * kStageMargin, row.height},
                                m_twips));
    frame->MouseUp = m_skinner.MouseUp;
    for (const StageSwitch& design : kStageSwitches) {
        if (design.group == row.group)
            MakeSwitch(design);
    }
    for (const StageChoice& design : kStageChoices) {
        if (design.group == row.group)
            MakeChoice(design);
    }
    for (const StageButton& design : kStageButtons) {
        if (design.group == row.group)
            MakeButton(design);
    }
}

void frmStage::Dress(ctlPicBtn& button, const TwipRect& rect, QStringView caption,
                     QStringView toolTip)
{
    button.SetCaption(caption.toString());
    button.setToolTip(toolTip.toString());
    button.setGeometry(PixelsOf(rect, m_twips));
}

void frmStage::MakeSwitch(const StageSwitch& design)
{
    auto* const button = new ctlPicBtn(&Group(design.group), SkinAmbient());
    m_switches.push_back(button);
    Dress(*button, design.rect, design.caption, design.toolTip);
    GiveStyle(*button, {true, 0, kWhite, kAccentColour});
    GiveFace(*button, ButtonFace::RememberDevice);
    button->Click = [this, &design, button] { m_stage.Set(design.field, button->Value()); };
}

void frmStage::MakeChoice(const StageChoice& design)
{
    auto* const button = new ChoiceButton(&Group(design.group), SkinAmbient());
    m_choices.push_back(button);
    Dress(*button, design.rect, design.caption, design.toolTip);
    GiveStyle(*button, {true, 0, kWhite, kAccentColour});
    GiveFace(*button, ButtonFace::Choice);
    button->Click = [this, &design] {
        m_stage.Set(&StageSettings::voiceGuide, design.guide);
        ShowSettings(); // one that was down already stays so
    };
}

void frmStage::MakeButton(const StageButton& design)
{
    auto* const button = new ctlPicBtn(&Group(design.group), SkinAmbient());
    m_buttons.push_back(button);
    Dress(*button, design.rect, design.caption, design.toolTip);
    GiveStyle(*button, {false, 0, kWhite, kAccentColour});
    GiveFace(*button, ButtonFace::Plate);
    button->Click = [this, &design] {
        if (Do)
            Do(design.deed);
    };
}

void frmStage::MakeHideButton()
{
    const TwipSize size = StageSize();
    m_hide = new ctlPicBtn(&m_skinner, SkinAmbient());
    m_hide->setToolTip(kHideStageToolTip.toString());
    m_hide->setAccessibleName(WithoutKey(m_hide->toolTip()));
    GiveStyle(*m_hide, {false, 1, kWhite, kAccentColour});
    GiveFace(*m_hide, ButtonFace::Hide);
    m_hide->setGeometry(
        PixelsOf(TwipRect{size.width - kStageCorner - kStageButton,
                          size.height - kStageCorner - kStageButton, kStageButton, kStageButton},
                 m_twips));
    m_hide->Click = [this] { ShowForm(false); };
}

void frmStage::ShowSettings()
{
    const StageSettings& now = m_stage.Settings();
    for (std::size_t i = 0; i < m_switches.size(); ++i)
        m_switches[i]->SetValue(now.*kStageSwitches.at(i).field);
    for (std::size_t i = 0; i < m_choices.size(); ++i)
        m_choices[i]->SetValue(kStageChoices.at(i).guide == now.voiceGuide);
}

void frmStage::ShowForm(bool isShown)
{
    ShowBeforePlayer(*this, m_mainWindow, isShown);
    if (isShown)
        activateWindow();
    else
        m_stage.Save();
}

void frmStage::resizeEvent(QResizeEvent*)
{
    if (!isMinimized())
        m_skinner.setGeometry(rect());
}

// The window manager's close, too, only hides.
void frmStage::closeEvent(QCloseEvent*)
{
    ShowForm(false);
}

// Here Escape is not the key of the options.
void frmStage::keyPressEvent(QKeyEvent* event)
{
    if (event->key() != Qt::Key_Escape)
        m_input.KeyPress(*event);
    else if (!event->isAutoRepeat())
        ShowForm(false);
}

void frmStage::keyReleaseEvent(QKeyEvent* event)
{
    m_input.KeyRelease(*event);
}

void frmStage::wheelEvent(QWheelEvent* event)
{
    m_input.Wheel(*event);
}

} // namespace lantern
