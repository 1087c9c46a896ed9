// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

#include <string>

namespace lantern::test {

// Lines that nobody has sung, of at most 26 letters.
const QStringList& LinesIn(const std::string& language);

} // namespace lantern::test
