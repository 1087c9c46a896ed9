// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAccessible>
#include <QString>

class QWidget;

namespace lantern {

// Makes the controls known to assistive tools, each as it describes itself. Once is enough; every
// control sees to it.
void InstallControlAccessibility();

// What a control is called when it is read aloud: its caption without the marks of access keys, or
// its tool tip if the caption is blank.
QString SpokenName(const QString& caption, const QString& toolTip);

// To those tools, if there are any.
void TellNameChanged(QWidget& control);
void TellEnabledChanged(QWidget& control);
void TellStateChanged(QWidget& control, QAccessible::State changed);

} // namespace lantern
