// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAccessible>
#include <QString>

#include <cstdint>
#include <optional>

namespace lantern {

struct SpokenRange {
    std::int32_t minimum = 0;
    std::int32_t maximum = 0;
    std::int32_t value = 0;
    std::int32_t step = 1;
};

// What a control tells assistive tools of itself at the moment.
struct Spoken {
    QAccessible::Role role = QAccessible::Client;
    QString name;        // unless its host has named it
    QString description; // empty: what its host has given, or the tool tip
    QString value;       // in words, of what has no range
    bool isDisabled = false;
    bool isCheckBox = false;
    bool isChecked = false;
    bool isPressed = false;
    bool hasPopup = false;
    QString action;    // what Control::Act does, by the toolkit's name for it; empty for nothing
    QString accessKey; // that does it, too
    std::optional<SpokenRange> range; // of a value that Control::TakeValue sets
};

} // namespace lantern
