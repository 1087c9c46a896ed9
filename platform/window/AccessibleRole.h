// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAccessible>

class QWidget;

namespace lantern {

// What assistive tools take a widget for that is none of the toolkit's own: without a role it
// would be an area of no meaning.
void SetAccessibleRole(QWidget& widget, QAccessible::Role role);

} // namespace lantern
