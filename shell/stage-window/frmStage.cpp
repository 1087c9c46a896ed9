// SPDX-License-Identifier: GPL-3.0-or-later
#include "frmStage.h"

#include "AccessibleRole.h"
#include "Application.h"
#include "ButtonDress.h"
#include "PlayerLook.h"
#include "SideWindow.h"
#include "StageControl.h"
#include "ToolTips.h"

#include <QKeyEvent>

namespace lantern {
namespace {

constexpr std::int32_t kNoEdge = 0;
constexpr ColourValue kCentreLine = 0x808080;

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
    m_delay->setFocus();
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
    if (row.group == StageGroup::SoundDelay)
        MakeDelay();
    else if (row.group == StageGroup::Singer)
        MakeSinger();
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

void frmStage::MakeDelay()
{
    QWidget* const group = &Group(StageGroup::SoundDelay);
    m_delay = new ctlSlide(group, SkinAmbient());
    m_delay->setGeometry(PixelsOf(kDelaySlider, m_twips));
    m_delay->SetValues(-kLongestSoundDelayMs, kLongestSoundDelayMs, 0);
    m_delay->SetSliderColor(kAccentColour);
    m_delay->SetSliderBack(kAccentColour);
    m_delay->SetCenterLine(true);
    m_delay->SetCenterLineColor(kCentreLine);
    m_delay->setAccessibleName(kDelayName.toString());
    m_delay->setToolTip(kDelayToolTip.toString());
    m_delay->Change = [this] { m_stage.SetDelayMs(m_delay->Value()); };

    m_delayValue = new WhiteLabel(group);
    m_delayValue->setGeometry(PixelsOf(kDelayValue, m_twips));
    m_delayValue->setAccessibleDescription(kDelayName.toString());
    m_delayDevice = new WhiteLabel(group);
    m_delayDevice->setGeometry(PixelsOf(kDelayDevice, m_twips));

    m_test = new ctlPicBtn(group, SkinAmbient());
    Dress(*m_test, kDelayTest, kDelayTestCaption, kDelayTestToolTip);
    GiveStyle(*m_test, {true, 0, kWhite, kAccentColour});
    GiveFace(*m_test, ButtonFace::RememberDevice);
    m_test->Click = [this] { SetTest(m_test->Value()); };
}

// While the test runs, the arrow keys are at hand for what it is made for.
void frmStage::SetTest(bool isOn)
{
    if (Test)
        Test(isOn);
    if (isOn)
        m_delay->setFocus();
}

// Before anything is done to the song: while the test runs, its clicks are in the song's place.
void frmStage::EndTest()
{
    if (m_test->Value())
        SetTest(false);
}

void frmStage::ShowTest(bool isOn)
{
    m_test->SetValue(isOn);
}

void frmStage::ShowDelay()
{
    const std::int32_t ms = m_stage.DelayMs();
    const SoundDevice& device = m_stage.Device();
    if (m_delay->Value() != ms)
        m_delay->SetValues(m_delay->Min(), m_delay->Max(), ms);
    m_delay->SetEnabled(!device.id.isEmpty());
    m_delayValue->setText((ms > 0 ? QStringLiteral("+") : QString()) + QString::number(ms) +
                          QStringLiteral(" ms"));
    const QString name = device.id.isEmpty() ? QStringLiteral("No sound device") : device.name;
    m_delayDevice->setToolTip(name);
    m_delayDevice->setAccessibleName(name);
    m_delayDevice->setText(
        m_delayDevice->fontMetrics().elidedText(name, Qt::ElideRight, m_delayDevice->width()));
}

// False for a key that moves no slider.
bool frmStage::MoveDelay(int key)
{
    const auto by = [this](std::int32_t ms) {
        m_delay->TakeValue(m_delay->Value() + ms);
        return true;
    };
    switch (key) {
    case Qt::Key_Right:
    case Qt::Key_Up:
        return by(kDelayStepMs);
    case Qt::Key_Left:
    case Qt::Key_Down:
        return by(-kDelayStepMs);
    case Qt::Key_PageUp:
        return by(kDelayPageMs);
    case Qt::Key_PageDown:
        return by(-kDelayPageMs);
    case Qt::Key_Home:
        return by(m_delay->Min() - m_delay->Value());
    case Qt::Key_End:
        return by(m_delay->Max() - m_delay->Value());
    default:
        return false;
    }
}

void frmStage::MakeSwitch(const StageSwitch& design)
{
    auto* const button = new ctlPicBtn(&Group(design.group), SkinAmbient());
    m_switches.push_back(button);
    Dress(*button, design.rect, design.caption, design.toolTip);
    GiveStyle(*button, {true, 0, kWhite, kAccentColour});
    GiveFace(*button, ButtonFace::RememberDevice);
    button->Click = [this, &design, button] {
        EndTest();
        m_stage.Set(design.field, button->Value());
    };
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
        EndTest();
        if (Do)
            Do(design.deed);
    };
}

void frmStage::MakeSinger()
{
    QWidget* const group = &Group(StageGroup::Singer);
    m_screen = new MenuButton(group, SkinAmbient());
    Dress(*m_screen, kSingerButton, {}, kSingerToolTip);
    GiveStyle(*m_screen, {false, 0, kWhite, kAccentColour});
    GiveFace(*m_screen, ButtonFace::Plate);
    m_screen->Click = [this] {
        EndTest();
        if (ChooseScreen)
            ChooseScreen();
    };
    m_screen->Step = [this](int by) {
        if (StepScreen)
            StepScreen(by);
    };
    m_singerStatus = new WhiteLabel(group);
    m_singerStatus->setGeometry(PixelsOf(kSingerStatus, m_twips));
    m_singerStatus->setAccessibleDescription(kSingerName.toString());
}

void frmStage::ShowSinger(const QString& screen, const QString& status)
{
    constexpr int kBesideText = 10; // pixels
    const QFontMetrics letters(m_screen->Font());
    m_screen->SetCaption(
        letters.elidedText(screen, Qt::ElideMiddle, m_screen->width() - 2 * kBesideText));
    m_screen->setAccessibleName(screen);
    m_singerStatus->setText(status);
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
    ShowDelay();
    for (std::size_t i = 0; i < m_switches.size(); ++i)
        m_switches[i]->SetValue(now.*kStageSwitches.at(i).field);
    for (std::size_t i = 0; i < m_choices.size(); ++i)
        m_choices[i]->SetValue(kStageChoices.at(i).guide == now.voiceGuide);
}

void frmStage::ShowForm(bool isShown)
{
    if (isShown)
        m_stage.Follow(true);
    else
        EndTest();
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
    if (event->key() == Qt::Key_Escape) {
        if (!event->isAutoRepeat())
            Escape();
    } else if (focusWidget() != m_delay || !MoveDelay(event->key())) {
        m_input.KeyPress(*event);
    }
}

void frmStage::Escape()
{
    if (m_test->Value())
        SetTest(false);
    else
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
