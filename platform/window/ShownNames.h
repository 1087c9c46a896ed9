// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

// The toolkit's file dialogs show each byte of a name that is no text as U+FFFD, and know the file
// by that. These functions lead from there back to the file.
namespace lantern {

// Whether a path, as a dialog gives it, may stand for a file of another name.
bool MayBeShownOnly(const QString& path);

// How a dialog shows the path (lossless text as PathText.h has it).
QString ShownPath(const QString& path);

struct ShownFile {
    enum class Match { None, One, Several };
    Match match = Match::None;
    QString path; // lossless text of the one match
};

// The file or folder that a dialog shows as this absolute path. Several match where names differ
// only in what can't be shown; none of them is preferred.
ShownFile FileShownAs(const QString& shownPath);

} // namespace lantern
