// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "FileDialog.h"

#include <QStringList>

namespace lantern {

// The filters as the toolkit writes them, "label (pattern pattern)". Its own dialog does not look
// at letter case; a desktop's may, so each letter of a pattern stands for both of its cases.
QStringList ToolkitFilters(const std::vector<FileFilter>& filters);

} // namespace lantern
