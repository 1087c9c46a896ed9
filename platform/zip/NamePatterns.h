// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace lantern {

// Whether the name matches one of the patterns, which have a vertical bar between each two. A "*"
// stands for any text, folders included; letter case doesn't count.
bool MatchesPatterns(const QString& name, const QString& patterns);

} // namespace lantern
