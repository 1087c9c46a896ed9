// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Eyes.h"
#include "XServer.h"

namespace lantern::test {

// A Wayland compositor (weston), ready when the constructor returns. Its outputs, which stand side
// by side and have the same width, cover an X screen without a window manager: what a hand does
// there and what eyes see there is what its user does and sees. It has no panel and no animations.
class WaylandServer {
public:
    // The scales are those of the outputs, from left to right: pixels of the screen to the unit.
    explicit WaylandServer(const XServer& screen, const std::vector<int>& scales = {1});

    EnvironmentChanges Environment() const;
    std::string Log() const;

    static constexpr unsigned kBackground = 0xFF808080;

private:
    bool PlaceOutput(const XServer& screen, int number) const;
    bool AlignPointer(const XServer& screen, Eyes& eyes) const;

    ScratchFolder m_folder;
    int m_outputWidth; // in pixels
    std::unique_ptr<Process> m_compositor;
};

} // namespace lantern::test
