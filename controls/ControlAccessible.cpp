// SPDX-License-Identifier: GPL-3.0-or-later
#include "ControlAccessible.h"

#include "Control.h"

#include <QApplication>
#include <QTimer>

namespace lantern {

ControlAccessible::ControlAccessible(Control& control)
    : QAccessibleWidget(&control), m_control(control)
{
}

// What a mask leaves out belongs to what lies there.
QRect ControlAccessible::rect() const
{
    const QRect whole = QAccessibleWidget::rect();
    const QRect shown = m_control.mask().boundingRect();
    return whole.isEmpty() || shown.isEmpty() ? whole : shown.translated(whole.topLeft());
}

QAccessible::Role ControlAccessible::role() const
{
    return m_control.Speak().role;
}

QAccessible::State ControlAccessible::state() const
{
    const Spoken spoken = m_control.Speak();
    QAccessible::State state = QAccessibleWidget::state();
    state.disabled = state.disabled || spoken.isDisabled;
    state.checkable = spoken.isCheckBox;
    state.checked = spoken.isChecked;
    state.pressed = spoken.isPressed;
    state.hasPopup = spoken.hasPopup;
    // To the toolkit, a control that hands the focus on to another has it as long as that has it.
    state.focusable = state.focusable && !m_control.focusProxy();
    state.focused = QApplication::focusWidget() == &m_control;
    return state;
}

QString ControlAccessible::text(QAccessible::Text kind) const
{
    const Spoken spoken = m_control.Speak();
    const QString given = QAccessibleWidget::text(kind);
    switch (kind) {
    case QAccessible::Name:
        return given.isEmpty() ? spoken.name : given;
    case QAccessible::Description:
        return spoken.description.isEmpty() ? given : spoken.description;
    case QAccessible::Value:
        return spoken.range ? QString::number(spoken.range->value) : spoken.value;
    case QAccessible::Accelerator:
        return given.isEmpty() ? spoken.accessKey : given;
    default:
        return given;
    }
}

void* ControlAccessible::interface_cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::ValueInterface && m_control.Speak().range)
        return static_cast<QAccessibleValueInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
}

QStringList ControlAccessible::actionNames() const
{
    QStringList names = QAccessibleWidget::actionNames();
    if (m_control.focusProxy())
        names.removeAll(setFocusAction());
    if (const QString action = m_control.Speak().action; !action.isEmpty())
        names.prepend(action);
    return names;
}

void ControlAccessible::doAction(const QString& name)
{
    // Soon, not now: it may open a menu or a dialog, and who asked for it would wait for its end.
    Control* const control = &m_control;
    if (!name.isEmpty() && name == m_control.Speak().action)
        QTimer::singleShot(0, control, [control] { control->Act(); });
    else
        QAccessibleWidget::doAction(name);
}

QStringList ControlAccessible::keyBindingsForAction(const QString& name) const
{
    const QString key = text(QAccessible::Accelerator);
    return name == m_control.Speak().action && !key.isEmpty() ? QStringList{key} : QStringList();
}

QVariant ControlAccessible::currentValue() const
{
    return m_control.Speak().range.value_or(SpokenRange()).value;
}

void ControlAccessible::setCurrentValue(const QVariant& value)
{
    m_control.TakeValue(value.toInt());
}

QVariant ControlAccessible::maximumValue() const
{
    return m_control.Speak().range.value_or(SpokenRange()).maximum;
}

QVariant ControlAccessible::minimumValue() const
{
    return m_control.Speak().range.value_or(SpokenRange()).minimum;
}

QVariant ControlAccessible::minimumStepSize() const
{
    return m_control.Speak().range.value_or(SpokenRange()).step;
}

} // namespace lantern
