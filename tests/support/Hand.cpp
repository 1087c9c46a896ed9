// SPDX-License-Identifier: GPL-3.0-or-later
#include "Hand.h"

#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <ranges>
#include <stdexcept>

namespace lantern::test {
namespace {

constexpr Clock::duration kPressTime = 25ms;
constexpr int kDragSteps = 12;
constexpr unsigned kWheelUp = 4;
constexpr unsigned kWheelDown = 5;

struct Modifier {
    std::string_view name;
    KeySym symbol;
};
constexpr std::array<Modifier, 3> kModifiers = {
    {{"ctrl", XK_Control_L}, {"shift", XK_Shift_L}, {"alt", XK_Alt_L}}};

KeySym SymbolOf(std::string_view name)
{
    for (const Modifier& modifier : kModifiers) {
        if (modifier.name == name)
            return modifier.symbol;
    }
    const KeySym symbol = XStringToKeysym(std::string(name).c_str());
    if (symbol == NoSymbol)
        throw std::invalid_argument("no key " + std::string(name));
    return symbol;
}

// The keys to hold for a chord, in order, with Shift where the symbol needs it.
std::vector<unsigned> KeyCodes(Display* display, std::string_view chord)
{
    std::vector<unsigned> codes;
    for (const auto part : std::views::split(chord, '+')) {
        const KeySym symbol = SymbolOf(std::string_view(part.begin(), part.end()));
        const KeyCode code = XKeysymToKeycode(display, symbol);
        if (code == 0)
            throw std::invalid_argument("the keyboard lacks a key of " + std::string(chord));
        int symbolCount = 0;
        KeySym* symbols = XGetKeyboardMapping(display, code, 1, &symbolCount);
        if (symbols[0] != symbol && symbolCount > 1 && symbols[1] == symbol)
            codes.push_back(XKeysymToKeycode(display, XK_Shift_L));
        XFree(symbols);
        codes.push_back(code);
    }
    return codes;
}

} // namespace

void Hand::Key(std::string_view chord)
{
    HoldKey(chord, kPressTime);
}

void Hand::HoldKey(std::string_view chord, Clock::duration howLong)
{
    SetKeys(chord, true);
    std::this_thread::sleep_for(howLong);
    SetKeys(chord, false);
    std::this_thread::sleep_for(kPressTime);
}

void Hand::SetKeys(std::string_view chord, bool down)
{
    Display* display = m_connection.Display();
    std::vector<unsigned> codes = KeyCodes(display, chord);
    if (!down)
        std::ranges::reverse(codes);
    for (const unsigned code : codes)
        XTestFakeKeyEvent(display, code, down ? True : False, CurrentTime);
    XSync(display, False);
}

void Hand::MoveTo(Point point)
{
    XTestFakeMotionEvent(m_connection.Display(), -1, point.x, point.y, CurrentTime);
    XSync(m_connection.Display(), False);
    std::this_thread::sleep_for(kPressTime);
}

void Hand::SetButton(unsigned button, bool down)
{
    XTestFakeButtonEvent(m_connection.Display(), button, down ? True : False, CurrentTime);
    XSync(m_connection.Display(), False);
    std::this_thread::sleep_for(kPressTime);
}

void Hand::PressAndRelease(unsigned button)
{
    SetButton(button, true);
    SetButton(button, false);
}

void Hand::Click(Point point, unsigned button)
{
    MoveTo(point);
    PressAndRelease(button);
}

void Hand::DoubleClick(Point point)
{
    Click(point);
    PressAndRelease(1);
}

void Hand::Drag(Point from, Point to)
{
    MoveTo(from);
    SetButton(1, true);
    for (int step = 1; step <= kDragSteps; ++step) {
        MoveTo({from.x + (to.x - from.x) * step / kDragSteps,
                from.y + (to.y - from.y) * step / kDragSteps});
    }
    SetButton(1, false);
}

void Hand::Wheel(int notches)
{
    for (int i = 0; i < std::abs(notches); ++i)
        PressAndRelease(notches > 0 ? kWheelUp : kWheelDown);
}

} // namespace lantern::test
