// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>

#include <optional>

// The names of files in a list of type text/uri-list, read from its bytes: a file's name may be no
// text in any encoding, and the toolkit's own reading loses such names.
namespace lantern {

inline constexpr qsizetype kLongestUriList = qsizetype{16} * 1024 * 1024;
inline constexpr qsizetype kMostUriListNames = 65536;

// The full name, as native bytes, of the file that a URI of the scheme "file" means on this
// machine: one without a host, with "localhost" or with the host's own name. Nothing for any other
// URI, and for a name that no file can have.
//
// What should have been escaped and wasn't means itself: bytes above 127, "?", "#", and a percent
// sign without two hexadecimal digits behind it.
std::optional<QByteArray> FileNameOfUri(QByteArrayView uri, QByteArrayView ownHost);

// The names of all such files, in the order of the list. A line ends at CR, LF or NUL; comments
// and other lines that name no file are passed over. Of a list beyond the limits the rest is
// ignored, as is a line that the limit cuts in two.
QList<QByteArray> FileNamesOfUriList(QByteArrayView list, QByteArrayView ownHost);

} // namespace lantern
