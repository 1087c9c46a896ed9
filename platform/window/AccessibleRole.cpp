// SPDX-License-Identifier: GPL-3.0-or-later
#include "AccessibleRole.h"

#include <QAccessibleWidget>
#include <QVariant>
#include <QWidget>

namespace lantern {
namespace {

constexpr const char* kRoleProperty = "lanternAccessibleRole";

QAccessibleInterface* InterfaceFor(const QString&, QObject* object)
{
    auto* const widget = qobject_cast<QWidget*>(object);
    const QVariant role = widget ? widget->property(kRoleProperty) : QVariant();
    return role.isValid()
               ? new QAccessibleWidget(widget, static_cast<QAccessible::Role>(role.toInt()))
               : nullptr;
}

} // namespace

void SetAccessibleRole(QWidget& widget, QAccessible::Role role)
{
    QAccessible::installFactory(InterfaceFor); // which takes a second time for none
    widget.setProperty(kRoleProperty, static_cast<int>(role));
    // The toolkit keeps what it knew before; a name that was given is enough for that.
    QAccessible::deleteAccessibleInterface(
        QAccessible::uniqueId(QAccessible::queryAccessibleInterface(&widget)));
}

} // namespace lantern
