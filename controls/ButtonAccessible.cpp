// SPDX-License-Identifier: GPL-3.0-or-later
#include "ButtonAccessible.h"

#include "ButtonControl.h"
#include "ControlAccessibility.h"

#include <QKeySequence>

namespace lantern {

ButtonAccessible::ButtonAccessible(ButtonControl& button)
    : QAccessibleWidget(&button), m_button(button)
{
}

QAccessible::Role ButtonAccessible::role() const
{
    return m_button.IsCheckBox() ? QAccessible::CheckBox : QAccessible::Button;
}

QAccessible::State ButtonAccessible::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    state.disabled = state.disabled || !m_button.Enabled();
    state.checkable = m_button.IsCheckBox();
    state.checked = m_button.IsCheckBox() && m_button.Value();
    state.pressed = m_button.IsDown() && !state.checked;
    return state;
}

QString ButtonAccessible::text(QAccessible::Text kind) const
{
    const QString given = QAccessibleWidget::text(kind);
    if (kind == QAccessible::Name && given.isEmpty())
        return SpokenName(m_button.Caption(), m_button.toolTip());
    if (kind == QAccessible::Accelerator && given.isEmpty())
        return QKeySequence::mnemonic(m_button.Caption()).toString(QKeySequence::NativeText);
    return given;
}

const QString& ButtonAccessible::OwnAction() const
{
    return m_button.IsCheckBox() ? toggleAction() : pressAction();
}

QStringList ButtonAccessible::actionNames() const
{
    QStringList names = QAccessibleWidget::actionNames();
    if (m_button.Enabled())
        names.prepend(OwnAction());
    return names;
}

void ButtonAccessible::doAction(const QString& name)
{
    if (name == pressAction() || name == toggleAction())
        m_button.Press();
    else
        QAccessibleWidget::doAction(name);
}

QStringList ButtonAccessible::keyBindingsForAction(const QString& name) const
{
    const QString key = text(QAccessible::Accelerator);
    return name == OwnAction() && !key.isEmpty() ? QStringList{key} : QStringList();
}

void TellCheckedChanged(ButtonControl& button)
{
    if (!button.IsCheckBox())
        return;
    QAccessible::State changed;
    changed.checked = true;
    TellStateChanged(button, changed);
}

} // namespace lantern
