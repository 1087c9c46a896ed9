// SPDX-License-Identifier: GPL-3.0-or-later
#include "XServer.h"

#include <X11/Xlib.h>
#include <algorithm>
#include <array>
#include <fcntl.h>
#include <poll.h>
#include <stdexcept>
#include <unistd.h>

namespace lantern::test {
namespace {

// What the server writes to its -displayfd: the number of the free display that it took.
std::string ReadDisplayNumber(int descriptor)
{
    std::string number;
    pollfd wait = {descriptor, POLLIN, 0};
    char character = 0;
    while (poll(&wait, 1, 10'000) == 1 && read(descriptor, &character, 1) == 1) {
        if (character == '\n')
            return number;
        number += character;
    }
    return {};
}

// A window may go while it is being asked about: that is an answer, not the end of the test.
int IgnoreError(Display*, XErrorEvent*)
{
    return 0;
}

} // namespace

XConnection::XConnection(const std::string& displayName)
    : m_display(XOpenDisplay(displayName.c_str()))
{
    if (m_display == nullptr)
        throw std::runtime_error("no display " + displayName);
    XSetErrorHandler(IgnoreError);
}

XConnection::~XConnection()
{
    XCloseDisplay(m_display);
}

unsigned long XConnection::Root() const
{
    return DefaultRootWindow(m_display);
}

unsigned long XConnection::Atom(const char* name) const
{
    return XInternAtom(m_display, name, False);
}

std::vector<unsigned long> XConnection::Property(unsigned long window, const char* name) const
{
    ::Atom type = 0;
    int format = 0;
    unsigned long count = 0;
    unsigned long remaining = 0;
    unsigned char* data = nullptr;
    std::vector<unsigned long> items;
    if (XGetWindowProperty(m_display, window, Atom(name), 0, 1024, False, AnyPropertyType, &type,
                           &format, &count, &remaining, &data) == Success &&
        data != nullptr) {
        // Xlib hands 32-bit items out as longs.
        if (format == 32) {
            const void* longs = data;
            const auto* first = static_cast<const unsigned long*>(longs);
            items.assign(first, first + count);
        }
        XFree(data);
    }
    return items;
}

std::string XConnection::TextProperty(unsigned long window, const char* name) const
{
    ::Atom type = 0;
    int format = 0;
    unsigned long count = 0;
    unsigned long remaining = 0;
    unsigned char* data = nullptr;
    std::string text;
    if (XGetWindowProperty(m_display, window, Atom(name), 0, 1024, False, AnyPropertyType, &type,
                           &format, &count, &remaining, &data) == Success &&
        data != nullptr) {
        if (format == 8)
            text.assign(data, data + count);
        XFree(data);
    }
    return text;
}

std::vector<unsigned long> XConnection::TopWindows() const
{
    ::Window root = 0;
    ::Window parent = 0;
    ::Window* children = nullptr;
    unsigned int count = 0;
    if (XQueryTree(m_display, Root(), &root, &parent, &children, &count) == 0)
        return {};
    const std::vector<unsigned long> windows(children, children + count);
    XFree(children);
    return windows;
}

std::size_t XConnection::VisibleWindows() const
{
    std::size_t visible = 0;
    for (const ::Window window : TopWindows()) {
        XWindowAttributes attributes = {};
        if (XGetWindowAttributes(m_display, window, &attributes) != 0 &&
            attributes.map_state == IsViewable)
            ++visible;
    }
    return visible;
}

XServer::XServer(int width, int height, WindowManager manager) : m_width(width), m_height(height)
{
    StartServer();
    if (manager == WindowManager::Openbox)
        StartWindowManager();
    m_windowsAtStart = XConnection(m_displayName).VisibleWindows();
}

XServer::~XServer() = default;

bool XServer::MakeReady()
{
    if (!m_server->IsRunning() || (m_windowManager && !m_windowManager->IsRunning()))
        return false;
    const XConnection connection(m_displayName);
    const auto isBare = [&] {
        return connection.VisibleWindows() == m_windowsAtStart &&
               connection.Property(connection.Root(), "_NET_CLIENT_LIST").empty() &&
               XGetSelectionOwner(connection.Display(), connection.Atom("CLIPBOARD")) == None &&
               // Where assistive tools look for their bus, which ends with its case.
               connection.TextProperty(connection.Root(), "AT_SPI_BUS").empty();
    };
    if (!Eventually(isBare, 2s))
        return false;
    std::array<char, 32> keys = {};
    XQueryKeymap(connection.Display(), keys.data());
    XWarpPointer(connection.Display(), None, connection.Root(), 0, 0, 0, 0, m_width / 2,
                 m_height / 2);
    ::Window root = 0;
    ::Window child = 0;
    int x = 0;
    int y = 0;
    unsigned int held = 0; // buttons and modifiers
    XQueryPointer(connection.Display(), connection.Root(), &root, &child, &x, &y, &x, &y, &held);
    return held == 0 && std::ranges::all_of(keys, [](char key) { return key == 0; });
}

EnvironmentChanges XServer::Environment() const
{
    return {{"DISPLAY", m_displayName},
            {"WAYLAND_DISPLAY", std::nullopt},
            {"QT_QPA_PLATFORM", "xcb"},
            {"QT_QPA_PLATFORMTHEME", std::nullopt},
            {"XDG_CURRENT_DESKTOP", std::nullopt},
            {"QT_FONT_DPI", "96"}};
}

void XServer::StartServer()
{
    int ends[2] = {-1, -1};
    if (pipe2(ends, O_CLOEXEC) != 0)
        throw std::runtime_error("no pipe");
    const std::string size = std::to_string(m_width) + "x" + std::to_string(m_height) + "x24";
    m_server = std::make_unique<Process>(
        Process::Command{.arguments = {"Xvfb", "-displayfd", "7", "-screen", "0", size, "-nolisten",
                                       "tcp", "-noreset"},
                         .log = m_folder / "server.log",
                         .keptDescriptor = ends[1]});
    close(ends[1]);
    const std::string number = ReadDisplayNumber(ends[0]);
    close(ends[0]);
    if (number.empty())
        throw std::runtime_error("Xvfb did not start: " + ReadFile(m_folder / "server.log"));
    m_displayName = ":" + number;
}

void XServer::StartWindowManager()
{
    EnvironmentChanges environment = Environment();
    // No menus or settings of whoever runs the tests.
    environment.emplace_back("HOME", m_folder.PrivateFolder("home").string());
    environment.emplace_back("XDG_CONFIG_HOME", std::nullopt);
    m_windowManager =
        std::make_unique<Process>(Process::Command{.arguments = {"openbox", "--sm-disable"},
                                                   .environment = environment,
                                                   .log = m_folder / "openbox.log"});
    const XConnection connection(m_displayName);
    const auto isReady = [&] {
        return !connection.Property(connection.Root(), "_NET_SUPPORTING_WM_CHECK").empty();
    };
    if (!Eventually(isReady, 10s))
        throw std::runtime_error("openbox did not start: " + ReadFile(m_folder / "openbox.log"));
}

} // namespace lantern::test
