// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace lantern::tool {

// A function of a module: a part of the program that is loaded only where it is needed, since its
// libraries take longer to load than a thumbnail takes to draw. The path is seen from the
// program's folder.
//
// Null if there is no such module; why, is in `error` then. Any thread.
void* ModuleFunction(const char* fromProgram, const char* name, QString& error);

} // namespace lantern::tool
