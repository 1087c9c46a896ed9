// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <optional>

namespace lantern {

// An item of the pop-up menu.
struct MenuEntry {
    QString text; // "-" for a separator
    QString key;  // the number of a command, kOptionsKey or a screen's; empty in a separator
    std::optional<bool> isChosen = {}; // of one among several of which one holds

    bool operator==(const MenuEntry&) const = default;
};

inline MenuEntry MenuSeparator()
{
    return {QStringLiteral("-"), {}};
}

} // namespace lantern
