// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Eyes.h"
#include "XServer.h"

namespace lantern::test {

// A Wayland compositor (weston), ready when the constructor returns. Its only output covers an X
// screen without a window manager: what a hand does there and what eyes see there is what its user
// does and sees. It has no panel and no animations.
class WaylandServer {
public:
    // The scale is that of the output: pixels of the screen to the unit.
    explicit WaylandServer(const XServer& screen, int scale = 1);

    EnvironmentChanges Environment() const;
    std::string Log() const;

    static constexpr unsigned kBackground = 0xFF808080;

private:
    static bool AlignPointer(const XServer& screen, Eyes& eyes);

    ScratchFolder m_folder;
    std::unique_ptr<Process> m_compositor;
};

} // namespace lantern::test
