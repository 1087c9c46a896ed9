// SPDX-License-Identifier: GPL-3.0-or-later
#include "WindowManagerGrab.h"

#include <QGuiApplication>
#include <QWindow>

#include <cstdlib>
#include <memory>
#include <string_view>
#include <xcb/xcb.h>

namespace lantern {
namespace {

struct FreeDeleter {
    void operator()(void* reply) const { std::free(reply); }
};
template <typename Reply>
using ReplyPointer = std::unique_ptr<Reply, FreeDeleter>;

// Of _NET_WM_MOVERESIZE.
constexpr std::uint32_t kCancelDirection = 11;
constexpr std::uint32_t kFromApplication = 1;

xcb_connection_t* Connection()
{
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 ? x11->connection() : nullptr;
}

// Of the first screen, which is the one that the toolkit shows all its windows on.
xcb_window_t Root(xcb_connection_t* connection)
{
    return xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
}

xcb_atom_t Atom(xcb_connection_t* connection, std::string_view name)
{
    const auto cookie =
        xcb_intern_atom(connection, 1, static_cast<std::uint16_t>(name.size()), name.data());
    const ReplyPointer<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(connection, cookie, nullptr));
    if (!reply)
        return XCB_ATOM_NONE;
    return reply->atom;
}

} // namespace

bool IsLeftButtonDown()
{
    xcb_connection_t* connection = Connection();
    if (!connection)
        return true;
    const auto cookie = xcb_query_pointer(connection, Root(connection));
    const ReplyPointer<xcb_query_pointer_reply_t> reply(
        xcb_query_pointer_reply(connection, cookie, nullptr));
    return !reply || (reply->mask & XCB_BUTTON_MASK_1) != 0;
}

void CancelWindowManagerGrab(const QWindow& window)
{
    xcb_connection_t* connection = Connection();
    if (!connection)
        return;
    xcb_client_message_event_t message = {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = static_cast<xcb_window_t>(window.winId());
    message.type = Atom(connection, "_NET_WM_MOVERESIZE");
    message.data.data32[2] = kCancelDirection;
    message.data.data32[3] = XCB_BUTTON_INDEX_1;
    message.data.data32[4] = kFromApplication;
    xcb_send_event(connection, 0, Root(connection),
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&message));
    xcb_flush(connection);
}

} // namespace lantern
