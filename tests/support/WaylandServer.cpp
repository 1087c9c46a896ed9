// SPDX-License-Identifier: GPL-3.0-or-later
#include "WaylandServer.h"

#include <X11/Xlib.h>
#include <stdexcept>

namespace lantern::test {
namespace {

constexpr const char* kSocket = "wayland";

// "animation" and its kin: a window is there, or it is not.
constexpr const char* kSettings = "[core]\n"
                                  "idle-time=0\n"
                                  "[shell]\n"
                                  "panel-position=none\n"
                                  "background-color=0xff808080\n"
                                  "animation=none\n"
                                  "startup-animation=none\n"
                                  "close-animation=none\n"
                                  "focus-animation=none\n"
                                  "locking=false\n";

} // namespace

WaylandServer::WaylandServer(const XServer& screen, const std::vector<int>& scales)
    : m_outputWidth(screen.Width() / static_cast<int>(scales.size()))
{
    EnvironmentChanges environment = screen.Environment();
    environment.emplace_back("XDG_RUNTIME_DIR", m_folder.PrivateFolder("runtime").string());
    // No settings of whoever runs the tests.
    environment.emplace_back("HOME", m_folder.PrivateFolder("home").string());
    environment.emplace_back("XDG_CONFIG_HOME", std::nullopt);
    std::string settings = kSettings;
    int count = 0;
    for (const int scale : scales) { // the size is that before it is scaled
        settings += "[output]\nname=X" + std::to_string(++count) +
                    "\nmode=" + std::to_string(m_outputWidth / scale) + "x" +
                    std::to_string(screen.Height() / scale) + "\nscale=" + std::to_string(scale) +
                    "\n";
    }
    WriteFile(m_folder / "weston.ini", settings);
    m_compositor = std::make_unique<Process>(
        Process::Command{.arguments = {"weston", "--backend=x11-backend.so", "--use-pixman",
                                       "--config=" + (m_folder / "weston.ini").string(),
                                       std::string("--socket=") + kSocket,
                                       "--output-count=" + std::to_string(count)},
                         .environment = environment,
                         .log = m_folder / "weston.log"});
    for (int number = 2; number <= count; ++number) {
        if (!Eventually([&] { return PlaceOutput(screen, number); }, 20s))
            throw std::runtime_error("weston did not start: " + Log());
    }
    Eyes eyes(screen);
    const auto isReady = [&] {
        return eyes.At({1, 1}) == kBackground &&
               eyes.At({screen.Width() - 2, screen.Height() - 2}) == kBackground;
    };
    if (!Eventually(isReady, 20s))
        throw std::runtime_error("weston did not start: " + Log());
    if (!Eventually([&] { return AlignPointer(screen, eyes); }, 20s)) {
        KeepPicture(eyes.Screen(), "wayland-pointer");
        throw std::runtime_error("weston does not follow the pointer: " + Log());
    }
}

// Each output is a window, and nobody is there who would place it.
bool WaylandServer::PlaceOutput(const XServer& screen, int number) const
{
    const XConnection connection(screen.DisplayName());
    for (const unsigned long window : connection.TopWindows()) {
        const std::string title = connection.TextProperty(window, "_NET_WM_NAME");
        if (!title.ends_with(" X" + std::to_string(number)))
            continue;
        XMoveWindow(connection.Display(), window, (number - 1) * m_outputWidth, 0);
        XSync(connection.Display(), False);
        return true;
    }
    return false;
}

// It adds up the way of the screen's pointer, and may have missed the first of it. In the corners
// either of the two pointers waits for the other. In the end they are in the middle of the first
// output.
bool WaylandServer::AlignPointer(const XServer& screen, Eyes& eyes) const
{
    Hand hand(screen);
    const Point middle = {m_outputWidth / 2, screen.Height() / 2};
    for (const Point point : {Point{0, 0}, Point{screen.Width() - 1, screen.Height() - 1}, middle})
        hand.MoveTo(point);
    constexpr QRect kShape(-8, -8, 80, 80); // where its picture may be, around where it points
    const QRect shape = kShape.translated(middle.x, middle.y);
    const QImage image = eyes.Screen();
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) != kBackground && !shape.contains(x, y))
                return false;
        }
    }
    return eyes.At(middle) != kBackground;
}

EnvironmentChanges WaylandServer::Environment() const
{
    return {{"DISPLAY", std::nullopt},
            {"WAYLAND_DISPLAY", (m_folder / "runtime" / kSocket).string()},
            {"QT_QPA_PLATFORM", "wayland"}};
}

std::string WaylandServer::Log() const
{
    return ReadFile(m_folder / "weston.log");
}

} // namespace lantern::test
