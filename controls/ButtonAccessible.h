// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAccessibleWidget>

namespace lantern {

class ButtonControl;

// A button as assistive tools know it: a push button or a check box, named by its caption or its
// tool tip, which they can press or toggle.
class ButtonAccessible : public QAccessibleWidget {
public:
    explicit ButtonAccessible(ButtonControl& button);

    QAccessible::Role role() const override;
    QAccessible::State state() const override;
    QString text(QAccessible::Text kind) const override;
    QStringList actionNames() const override;
    void doAction(const QString& name) override;
    QStringList keyBindingsForAction(const QString& name) const override;

private:
    const QString& OwnAction() const;

    ButtonControl& m_button;
};

// To those tools, from the button.
void TellCheckedChanged(ButtonControl& button);

} // namespace lantern
