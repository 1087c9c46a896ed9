// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <cstdint>
#include <functional>

class QAccessibleEvent;
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
void TellDescriptionChanged(QWidget& control);
void TellEnabledChanged(QWidget& control);
void TellCheckedChanged(QWidget& control);
void TellValueChanged(QWidget& control, std::int32_t value);
void TellTools(QAccessibleEvent&& event);

// Whoever else wants to hear what they are told: a test, on a system without such tools. One at a
// time; none by default.
using ToolListener = std::function<void(const QAccessibleEvent& event)>;
void SetToolListener(ToolListener listener);

} // namespace lantern
