// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "XServer.h"

#include <string_view>

namespace lantern::test {

struct Point {
    int x = 0;
    int y = 0;
    bool operator==(const Point&) const = default;
};

// A person's hand on keyboard and mouse. It is quick but not infinitely so: 25 ms pass between
// press and release, since a press and release in one instant is what no person ever does.
class Hand {
public:
    explicit Hand(const XServer& server) : m_connection(server.DisplayName()) {}

    // A key by its X name, with modifiers in front: "p", "Right", "ctrl+q", "alt+F4", "shift+Up".
    void Key(std::string_view chord);
    void HoldKey(std::string_view chord, Clock::duration howLong);
    // A held key by its parts.
    void PressKey(std::string_view chord) { SetKeys(chord, true); }
    void ReleaseKey(std::string_view chord) { SetKeys(chord, false); }

    void MoveTo(Point point);
    void Click(Point point, unsigned button = 1);
    void DoubleClick(Point point);
    void Drag(Point from, Point to);
    // A drag by its parts.
    void Press(unsigned button = 1) { SetButton(button, true); }
    void Release(unsigned button = 1) { SetButton(button, false); }
    // Notches of the wheel where the pointer is: up and away from the body is positive.
    void Wheel(int notches);

private:
    void PressAndRelease(unsigned button);
    void SetButton(unsigned button, bool down);
    void SetKeys(std::string_view chord, bool down);

    XConnection m_connection;
};

} // namespace lantern::test
