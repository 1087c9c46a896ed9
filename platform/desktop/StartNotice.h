// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace lantern {

// Tells the desktop that this start is complete, so that it stops showing that it goes on. For a
// process that shows no window and has no toolkit; a toolkit does it with its first window. Does
// nothing where no launcher waits for it, and takes two seconds at most: the process should end
// soon afterwards, as a display that does not answer may still be waited for in the background.
void EndStartNotice();

} // namespace lantern
