// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAccessibleWidget>

namespace lantern {

class Control;

// A control as assistive tools know it: it asks the control for what it tells, and each time anew.
class ControlAccessible : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    explicit ControlAccessible(Control& control);

    QRect rect() const override;
    QAccessible::Role role() const override;
    QAccessible::State state() const override;
    QString text(QAccessible::Text kind) const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    QStringList actionNames() const override;
    void doAction(const QString& name) override;
    QStringList keyBindingsForAction(const QString& name) const override;

    QVariant currentValue() const override;
    void setCurrentValue(const QVariant& value) override;
    QVariant maximumValue() const override;
    QVariant minimumValue() const override;
    QVariant minimumStepSize() const override;

private:
    Control& m_control;
};

} // namespace lantern
