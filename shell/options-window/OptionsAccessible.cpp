// SPDX-License-Identifier: GPL-3.0-or-later
#include "OptionsAccessible.h"

#include "frmOptions.h"

namespace lantern {
namespace {

QAccessibleInterface* InterfaceFor(const QString&, QObject* object)
{
    auto* const options = dynamic_cast<frmOptions*>(object);
    return options ? new OptionsAccessible(*options) : nullptr;
}

} // namespace

void OptionsAccessible::Install()
{
    QAccessible::installFactory(InterfaceFor); // which takes a second time for none
}

OptionsAccessible::OptionsAccessible(frmOptions& options)
    : QAccessibleWidget(&options, QAccessible::Dialog), m_options(options)
{
}

QAccessibleInterface* OptionsAccessible::child(int index) const
{
    return index == 0 ? QAccessible::queryAccessibleInterface(&m_options.PanelInFront()) : nullptr;
}

int OptionsAccessible::indexOfChild(const QAccessibleInterface* child) const
{
    return child && child->object() == &m_options.PanelInFront() ? 0 : -1;
}

QAccessibleInterface* OptionsAccessible::childAt(int x, int y) const
{
    QAccessibleInterface* const panel = child(0);
    return panel->rect().contains(x, y) ? panel : nullptr;
}

} // namespace lantern
