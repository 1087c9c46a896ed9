// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Hand.h"

#include <QRect>

#include <string>

namespace lantern::test {

// A window that a window manager looks after, by its title: whether it can be seen, and where.
class ScreenWindow {
public:
    ScreenWindow(const XServer& screen, std::string title);

    bool IsThere() const; // neither hidden nor minimised
    bool IsThereSoon() const;
    bool IsGoneSoon() const;
    bool HasKeyboard() const;
    bool HasKeyboardSoon() const;
    bool IsTopmost() const; // of those that stay in front of all others
    bool StandsInFrontOf(const ScreenWindow& other) const;

    QRect Area() const; // on the screen; empty if it isn't there
    Point At(int x, int y) const;

    void Minimise() const;
    void BringBack() const; // with the keyboard
    // As the window manager's button would.
    void AskToClose() const;

private:
    unsigned long Id() const;
    bool HasState(const char* state) const;
    void AskManager(const char* message, long data) const;

    XConnection m_connection;
    std::string m_title;
};

} // namespace lantern::test
