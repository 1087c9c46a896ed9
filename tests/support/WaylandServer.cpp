// SPDX-License-Identifier: GPL-3.0-or-later
#include "WaylandServer.h"

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

WaylandServer::WaylandServer(const XServer& screen, int scale)
{
    EnvironmentChanges environment = screen.Environment();
    environment.emplace_back("XDG_RUNTIME_DIR", m_folder.PrivateFolder("runtime").string());
    // No settings of whoever runs the tests.
    environment.emplace_back("HOME", m_folder.PrivateFolder("home").string());
    environment.emplace_back("XDG_CONFIG_HOME", std::nullopt);
    WriteFile(m_folder / "weston.ini", kSettings);
    // The size is that of the window before it is scaled.
    m_compositor = std::make_unique<Process>(Process::Command{
        .arguments = {"weston", "--backend=x11-backend.so", "--use-pixman",
                      "--config=" + (m_folder / "weston.ini").string(),
                      std::string("--socket=") + kSocket, "--scale=" + std::to_string(scale),
                      "--width=" + std::to_string(screen.Width() / scale),
                      "--height=" + std::to_string(screen.Height() / scale)},
        .environment = environment,
        .log = m_folder / "weston.log"});
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

// It adds up the way of the screen's pointer, and may have missed the first of it. In the corners
// either of the two pointers waits for the other.
bool WaylandServer::AlignPointer(const XServer& screen, Eyes& eyes)
{
    Hand hand(screen);
    const Point middle = {screen.Width() / 2, screen.Height() / 2};
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
