// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

// The program's own files. What is installed with it lies at a fixed way from it, and in the build
// tree just so.
namespace lantern {

// The file of the running program; empty if the system does not tell.
QString ProgramFile();

// Where a file that is installed with the program has to lie, by its name among the program's data.
QString InstalledFile(const QString& name);

} // namespace lantern
