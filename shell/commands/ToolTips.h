// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace lantern {

// What a button is for, from a tool tip that tells its key in brackets, too.
QString WithoutKey(QStringView toolTip);

} // namespace lantern
