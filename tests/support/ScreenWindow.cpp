// SPDX-License-Identifier: GPL-3.0-or-later
#include "ScreenWindow.h"

#include <X11/Xlib.h>
#include <algorithm>
#include <utility>

namespace lantern::test {
namespace {

constexpr Clock::duration kPatience = 20s; // the machine may be busy

} // namespace

ScreenWindow::ScreenWindow(const XServer& screen, std::string title)
    : m_connection(screen.DisplayName()), m_title(std::move(title))
{
}

unsigned long ScreenWindow::Id() const
{
    for (const unsigned long id : m_connection.Property(m_connection.Root(), "_NET_CLIENT_LIST")) {
        if (m_connection.TextProperty(id, "_NET_WM_NAME") == m_title)
            return id;
    }
    return 0;
}

bool ScreenWindow::HasState(const char* state) const
{
    const std::vector<unsigned long> states = m_connection.Property(Id(), "_NET_WM_STATE");
    return std::ranges::find(states, m_connection.Atom(state)) != states.end();
}

bool ScreenWindow::IsThere() const
{
    XWindowAttributes attributes = {};
    const unsigned long id = Id();
    return id != 0 && XGetWindowAttributes(m_connection.Display(), id, &attributes) != 0 &&
           attributes.map_state == IsViewable;
}

bool ScreenWindow::IsThereSoon() const
{
    return Eventually([this] { return IsThere(); }, kPatience);
}

bool ScreenWindow::IsGoneSoon() const
{
    return Eventually([this] { return !IsThere(); }, kPatience);
}

bool ScreenWindow::HasKeyboard() const
{
    const unsigned long id = Id();
    return id != 0 &&
           m_connection.Property(m_connection.Root(), "_NET_ACTIVE_WINDOW") == std::vector{id};
}

bool ScreenWindow::HasKeyboardSoon() const
{
    return Eventually([this] { return HasKeyboard(); }, kPatience);
}

bool ScreenWindow::IsTopmost() const
{
    return HasState("_NET_WM_STATE_ABOVE");
}

bool ScreenWindow::StandsInFrontOf(const ScreenWindow& other) const
{
    const std::vector<unsigned long> fromTheBack =
        m_connection.Property(m_connection.Root(), "_NET_CLIENT_LIST_STACKING");
    const auto own = std::ranges::find(fromTheBack, Id());
    return own != fromTheBack.end() && std::find(fromTheBack.begin(), own, other.Id()) != own;
}

QRect ScreenWindow::Area() const
{
    XWindowAttributes attributes = {};
    const unsigned long id = Id();
    if (id == 0 || XGetWindowAttributes(m_connection.Display(), id, &attributes) == 0)
        return {};
    int x = 0;
    int y = 0;
    ::Window child = 0;
    XTranslateCoordinates(m_connection.Display(), id, m_connection.Root(), 0, 0, &x, &y, &child);
    return {x, y, attributes.width, attributes.height};
}

Point ScreenWindow::At(int x, int y) const
{
    const QPoint corner = Area().topLeft();
    return {corner.x() + x, corner.y() + y};
}

void ScreenWindow::AskManager(const char* message, long data) const
{
    XEvent event = {};
    event.xclient.type = ClientMessage;
    event.xclient.window = Id();
    event.xclient.message_type = m_connection.Atom(message);
    event.xclient.format = 32;
    event.xclient.data.l[0] = data;
    XSendEvent(m_connection.Display(), m_connection.Root(), False,
               SubstructureRedirectMask | SubstructureNotifyMask, &event);
    XFlush(m_connection.Display());
}

void ScreenWindow::Minimise() const
{
    XIconifyWindow(m_connection.Display(), Id(), 0);
    XFlush(m_connection.Display());
}

void ScreenWindow::BringBack() const
{
    constexpr long kByUser = 2; // as a panel asks
    AskManager("_NET_ACTIVE_WINDOW", kByUser);
}

void ScreenWindow::AskToClose() const
{
    AskManager("_NET_CLOSE_WINDOW", CurrentTime);
}

} // namespace lantern::test
