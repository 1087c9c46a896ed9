// SPDX-License-Identifier: GPL-3.0-or-later
// By the startup notification protocol of X11: the message goes to the root window as client
// messages of twenty bytes each, from a window that exists for nothing else.
#include "StartNotice.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <future>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <xcb/xcb.h>

namespace lantern {
namespace {

// A launcher's names are far shorter.
constexpr std::size_t kLongestName = 1000;
constexpr auto kLongestWait = std::chrono::seconds(2);

struct Disconnect {
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};
struct Free {
    void operator()(void* reply) const { std::free(reply); }
};

std::string_view Variable(const char* name)
{
    const char* value = std::getenv(name);
    return value ? value : std::string_view();
}

xcb_atom_t Atom(xcb_connection_t* connection, std::string_view name)
{
    const auto cookie =
        xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
    const std::unique_ptr<xcb_intern_atom_reply_t, Free> reply(
        xcb_intern_atom_reply(connection, cookie, nullptr));
    if (!reply)
        return XCB_ATOM_NONE;
    return reply->atom;
}

// The blanks, quotation marks and backslashes of a value have to be marked as its own.
std::string RemoveMessage(std::string_view name)
{
    std::string message = "remove: ID=";
    for (const char letter : name) {
        if (letter == ' ' || letter == '"' || letter == '\\')
            message += '\\';
        message += letter;
    }
    return message;
}

void Broadcast(xcb_connection_t* connection, const std::string& message)
{
    const xcb_screen_t& screen = *xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    const xcb_window_t sender = xcb_generate_id(connection);
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, sender, screen.root, -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_client_message_event_t event = {};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 8;
    event.window = sender;
    event.type = Atom(connection, "_NET_STARTUP_INFO_BEGIN");
    const xcb_atom_t nextPiece = Atom(connection, "_NET_STARTUP_INFO");
    // The zero at the end is part of the message.
    for (std::size_t sent = 0; sent <= message.size(); sent += sizeof event.data) {
        const std::size_t size = std::min(sizeof event.data, message.size() + 1 - sent);
        event.data = {};
        std::memcpy(event.data.data8, message.c_str() + sent, size);
        xcb_send_event(connection, 0, screen.root, XCB_EVENT_MASK_PROPERTY_CHANGE,
                       reinterpret_cast<const char*>(&event));
        event.type = nextPiece;
    }
    // A server drops what it has not read yet of a connection that is gone: one answer more.
    const std::unique_ptr<xcb_get_input_focus_reply_t, Free> reply(
        xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
}

void Tell(const std::string& message)
{
    const std::unique_ptr<xcb_connection_t, Disconnect> connection(xcb_connect(nullptr, nullptr));
    if (xcb_connection_has_error(connection.get()) == 0)
        Broadcast(connection.get(), message);
}

} // namespace

void EndStartNotice()
{
    const std::string_view name = Variable("DESKTOP_STARTUP_ID");
    if (name.empty() || name.size() > kLongestName || Variable("DISPLAY").empty())
        return;
    // In a thread of its own, as nothing bounds the wait for a display's answers.
    std::packaged_task<void()> task([message = RemoveMessage(name)] { Tell(message); });
    const std::future<void> told = task.get_future();
    std::thread(std::move(task)).detach();
    told.wait_for(kLongestWait);
}

} // namespace lantern
