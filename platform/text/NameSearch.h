// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "PathText.h"

#include <QString>
#include <QStringView>

#include <span>

// Names that are found though they are not written as they were asked for. ResolveName, which finds
// one of them, is told in PathText.h.
namespace lantern {

// The first file that has the stem, a "." and one of the extensions, in the order of these. Names
// count as for ResolveName; a folder doesn't count. Extensions are in lower case. Empty if there is
// none. The folder is read once at most, however many names there are to look for.
QString FindFile(const QString& stem, std::span<const QStringView> extensions);

} // namespace lantern
