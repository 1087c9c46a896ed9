// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

namespace lantern {

class DropData;

// Fills the data's list of files with their true names, in the order of the list. False if there
// is no such list, or the program that it comes from doesn't deliver it; the list is then empty.
bool UnicodeDropFiles(DropData& data);

// The first name that the player can open, by its extension; empty if there is none.
QString FirstUsableFile(const QStringList& files);

} // namespace lantern
