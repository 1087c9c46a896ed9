// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace lantern {

// Makes the controls known to assistive tools, each as it describes itself. Once is enough; every
// control sees to it.
void InstallControlAccessibility();

// What a control is called when it is read aloud: its caption without the marks of access keys, or
// its tool tip if the caption is blank.
QString SpokenName(const QString& caption, const QString& toolTip);

} // namespace lantern
