// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "WindowInput.h"

namespace lantern {

// What the options window asks of the player, besides the audio control: what the user does there
// acts as it does on the main window. Every call comes on the user-interface thread, and may run a
// menu, and so the event loop, before it returns.
class OptionsHost : public InputTarget {
public:
    virtual void ShowPopMenu() = 0;    // where the pointer is, as is the next one
    virtual void ShowDeviceMenu() = 0; // runs what was chosen, too
    virtual void OpenWebSite() = 0;
};

} // namespace lantern
