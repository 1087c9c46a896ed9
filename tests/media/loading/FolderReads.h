// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace lantern::test {

// How often this program has begun to read a folder.
int FolderReads();

} // namespace lantern::test
