// SPDX-License-Identifier: GPL-3.0-or-later
#include "ControlAccessibility.h"

#include "Control.h"

#include <QAccessible>

namespace lantern {
namespace {

QAccessibleInterface* InterfaceFor(const QString&, QObject* object)
{
    auto* control = dynamic_cast<Control*>(object);
    return control ? control->MakeAccessible() : nullptr;
}

} // namespace

void InstallControlAccessibility()
{
    QAccessible::installFactory(InterfaceFor); // which takes a second time for none
}

QString SpokenName(const QString& caption, const QString& toolTip)
{
    if (caption.trimmed().isEmpty())
        return toolTip;
    QString name;
    for (qsizetype i = 0; i < caption.size(); ++i) {
        const bool isMark = caption[i] == QLatin1Char('&');
        if (isMark && ++i == caption.size())
            break;
        name += caption[i];
    }
    return name.trimmed();
}

void TellNameChanged(QWidget& control)
{
    if (!QAccessible::isActive())
        return;
    QAccessibleEvent event(&control, QAccessible::NameChanged);
    QAccessible::updateAccessibility(&event);
}

void TellEnabledChanged(QWidget& control)
{
    QAccessible::State changed;
    changed.disabled = true;
    TellStateChanged(control, changed);
}

void TellStateChanged(QWidget& control, QAccessible::State changed)
{
    if (!QAccessible::isActive())
        return;
    QAccessibleStateChangeEvent event(&control, changed);
    QAccessible::updateAccessibility(&event);
}

} // namespace lantern
