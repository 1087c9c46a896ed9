// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace lantern {

// An item of the pop-up menu.
struct MenuEntry {
    QString text; // "-" for a separator
    QString key;  // the number of a command, or kOptionsKey; empty in a separator

    bool operator==(const MenuEntry&) const = default;
};

inline MenuEntry MenuSeparator()
{
    return {QStringLiteral("-"), {}};
}

} // namespace lantern
