// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "PathText.h"

#include <QString>
#include <QStringView>

#include <span>

// Names that are found though they are not written as they were asked for. ResolveName, which finds
// one of them, is told in PathText.h.
namespace lantern {

// Whether the path, exactly as it stands, names something that is no folder.
bool NamesFile(const QString& path);

// The path that a text means: the text itself if that names a file, otherwise the text without any
// quotation marks and without blanks at its ends, as a command line may have put them there.
QString PathInText(const QString& text);

// The first file that has the stem, a "." and one of the extensions, in the order of these. Names
// count as for ResolveName; a folder doesn't count. Extensions are in lower case. Empty if there is
// none. The folder is read once at most, however many names there are to look for.
QString FindFile(const QString& stem, std::span<const QStringView> extensions);

} // namespace lantern
