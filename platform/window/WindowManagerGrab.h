// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QWindow;

namespace lantern {

// What is asked of the window system around a move or size that it does for us. Where the toolkit
// doesn't run on an X server, nothing is asked and the button counts as held.

// The button as it is now, not as of the last event.
bool IsLeftButtonDown();

// Makes a window manager let go of a window that it moves or sizes. One that has let go already
// does nothing.
void CancelWindowManagerGrab(const QWindow& window);

} // namespace lantern
