// SPDX-License-Identifier: GPL-3.0-or-later
#include "Control.h"

#include "ControlAccessibility.h"
#include "ControlAccessible.h"
#include "ScreenMetrics.h"

#include <QKeyEvent>
#include <QMouseEvent>

#include <tuple>
#include <utility>

namespace lantern {
namespace {

std::int16_t ButtonBits(Qt::MouseButtons buttons)
{
    int bits = 0;
    bits |= buttons.testFlag(Qt::LeftButton) ? LeftButton : 0;
    bits |= buttons.testFlag(Qt::RightButton) ? RightButton : 0;
    bits |= buttons.testFlag(Qt::MiddleButton) ? MiddleButton : 0;
    return static_cast<std::int16_t>(bits);
}

MouseReport ReportOf(const QMouseEvent& event, Qt::MouseButtons buttons)
{
    int shift = 0;
    shift |= event.modifiers().testFlag(Qt::ShiftModifier) ? 1 : 0;
    shift |= event.modifiers().testFlag(Qt::ControlModifier) ? 2 : 0;
    shift |= event.modifiers().testFlag(Qt::AltModifier) ? 4 : 0;
    return {ButtonBits(buttons), static_cast<std::int16_t>(shift),
            static_cast<float>(event.position().x()), static_cast<float>(event.position().y())};
}

bool IsOfAButtonWithoutNumber(const QEvent& event)
{
    switch (event.type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseButtonRelease:
        return ButtonBits(static_cast<const QMouseEvent&>(event).button()) == 0;
    default:
        return false;
    }
}

} // namespace

MouseReport PressReport(const QMouseEvent& event)
{
    return ReportOf(event, event.button());
}

MouseReport MoveReport(const QMouseEvent& event)
{
    return ReportOf(event, event.buttons());
}

MouseReport InTwips(MouseReport report)
{
    const TwipsPerPixel twips = ScreenTwips();
    report.x *= static_cast<float>(twips.x);
    report.y *= static_cast<float>(twips.y);
    return report;
}

bool IsAnyButtonHeld(const QMouseEvent& event)
{
    return ButtonBits(event.buttons()) != 0;
}

QCursor PointerShape(int number)
{
    switch (number) {
    case 6:
        return Qt::SizeBDiagCursor;
    case 7:
        return Qt::SizeVerCursor;
    case 8:
        return Qt::SizeFDiagCursor;
    case 9:
        return Qt::SizeHorCursor;
    default:
        return Qt::ArrowCursor;
    }
}

Control::Control(QWidget* parent, Ambient ambient) : QWidget(parent), m_ambient(std::move(ambient))
{
    InstallControlAccessibility();
}

bool Control::event(QEvent* event)
{
    return IsOfAButtonWithoutNumber(*event) || QWidget::event(event);
}

void Control::ForwardKey(const KeyHandler& handler, QKeyEvent& event)
{
    event.setAccepted(handler != nullptr);
    const bool isHeld = event.type() == QEvent::KeyRelease && event.isAutoRepeat();
    if (!handler || isHeld)
        return;
    KeyCode keyCode = KeyCodeOf(event);
    std::ignore = Raise(handler, keyCode, ShiftBitsOf(event));
}

QAccessibleInterface* Control::MakeAccessible()
{
    return new ControlAccessible(*this);
}

void Control::SetAmbient(Ambient ambient)
{
    m_ambient = std::move(ambient);
    AmbientChanged();
}

} // namespace lantern
