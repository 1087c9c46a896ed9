// SPDX-License-Identifier: GPL-3.0-or-later
#include "ControlAccessibility.h"

#include "Control.h"

#include <QAccessible>

#include <utility>

namespace lantern {
namespace {

QAccessibleInterface* InterfaceFor(const QString&, QObject* object)
{
    auto* control = dynamic_cast<Control*>(object);
    return control ? control->MakeAccessible() : nullptr;
}

ToolListener& Listener()
{
    static ToolListener listener;
    return listener;
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
    TellTools(QAccessibleEvent(&control, QAccessible::NameChanged));
}

void TellDescriptionChanged(QWidget& control)
{
    TellTools(QAccessibleEvent(&control, QAccessible::DescriptionChanged));
}

void TellEnabledChanged(QWidget& control)
{
    QAccessible::State changed;
    changed.disabled = true;
    TellTools(QAccessibleStateChangeEvent(&control, changed));
}

void TellCheckedChanged(QWidget& control)
{
    QAccessible::State changed;
    changed.checked = true;
    TellTools(QAccessibleStateChangeEvent(&control, changed));
}

void TellValueChanged(QWidget& control, std::int32_t value)
{
    TellTools(QAccessibleValueChangeEvent(&control, value));
}

// The toolkit passes it on if anybody listens.
void TellTools(QAccessibleEvent&& event)
{
    if (Listener())
        Listener()(event);
    QAccessible::updateAccessibility(&event);
}

void SetToolListener(ToolListener listener)
{
    Listener() = std::move(listener);
}

} // namespace lantern
