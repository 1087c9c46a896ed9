// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace lantern {

// What a screen is, by which it is known again: what it tells of itself, and the name of the plug
// that it hangs on. Any of these may be empty; all of them are where no screen is meant.
struct ScreenIdentity {
    QString name;
    QString maker;
    QString model;
    QString serial;

    bool IsNone() const { return *this == ScreenIdentity(); }
    bool operator==(const ScreenIdentity&) const = default;
};

} // namespace lantern
