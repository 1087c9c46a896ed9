// SPDX-License-Identifier: GPL-3.0-or-later
#include "Player.h"

#include <X11/Xlib.h>
#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <sstream>

namespace lantern::test {
namespace {

EnvironmentChanges Joined(EnvironmentChanges first, const EnvironmentChanges& second,
                          const EnvironmentChanges& third, const EnvironmentChanges& last)
{
    for (const EnvironmentChanges* more : {&second, &third, &last})
        first.insert(first.end(), more->begin(), more->end());
    return first;
}

std::vector<std::string> CommandOf(const PlayerStart& start)
{
    std::vector<std::string> command = {start.program.empty() ? Player::ProgramPath()
                                                              : start.program};
    command.insert(command.end(), start.arguments.begin(), start.arguments.end());
    return command;
}

std::filesystem::path NewLogName(const PlayerHome& home)
{
    static std::atomic<int> count = 0;
    return home.Folder() / ("player-" + std::to_string(++count) + ".log");
}

} // namespace

PlayerHome::PlayerHome()
{
    for (const char* name : {"home", "runtime", "appdata"})
        m_folder.PrivateFolder(name);
}

EnvironmentChanges PlayerHome::Environment() const
{
    return {{"HOME", (m_folder / "home").string()},
            {"XDG_CONFIG_HOME", std::nullopt},
            {"XDG_STATE_HOME", std::nullopt},
            {"XDG_RUNTIME_DIR", (m_folder / "runtime").string()},
            {"appdata", (m_folder / "appdata").string()},
            {"LC_ALL", "C.UTF-8"},
            {"LSAN_OPTIONS", "print_suppressions=0:suppressions=" LANTERN_LEAKS_FILE},
            // None at all: without an address, the bus's own library would start one.
            {"DBUS_SESSION_BUS_ADDRESS", "disabled:"}};
}

std::filesystem::path PlayerHome::SettingsFile() const
{
    return m_folder / "appdata" / "Lyric Lantern" / "data_player.ini";
}

std::string PlayerHome::Setting(const std::string& key) const
{
    std::istringstream lines(ReadFile(SettingsFile()));
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with(key + "\t"))
            return line.substr(key.size() + 1, line.find('\r') - key.size() - 1);
    }
    return {};
}

Player::Player(const XServer& screen, const EnvironmentChanges& sound, const PlayerHome& home,
               const PlayerStart& start)
    : m_connection(screen.DisplayName()), m_log(NewLogName(home)),
      m_process({.arguments = CommandOf(start),
                 .environment =
                     Joined(screen.Environment(), sound, home.Environment(), start.environment),
                 .log = m_log})
{
    // Answers to signs of life come to the root window, by one of these masks.
    XSelectInput(m_connection.Display(), m_connection.Root(),
                 StructureNotifyMask | SubstructureNotifyMask);
}

Player::~Player() = default;

std::string Player::ProgramPath()
{
    const char* other = std::getenv("LANTERN_PLAYER");
    return other != nullptr ? other : LANTERN_PLAYER_PATH;
}

std::vector<Player::Window> Player::Windows() const
{
    std::vector<Window> windows;
    for (const unsigned long id : m_connection.Property(m_connection.Root(), "_NET_CLIENT_LIST")) {
        const std::vector<unsigned long> process = m_connection.Property(id, "_NET_WM_PID");
        if (process == std::vector{static_cast<unsigned long>(m_process.Id())})
            windows.push_back({id, m_connection.TextProperty(id, "_NET_WM_NAME")});
    }
    return windows;
}

bool Player::AwaitWindow(Clock::duration atMost)
{
    const auto hasKeyboard = [&] {
        const unsigned long window = MainWindow();
        return window != 0 && m_connection.Property(m_connection.Root(), "_NET_ACTIVE_WINDOW") ==
                                  std::vector{window};
    };
    return Eventually([&] { return hasKeyboard() || !m_process.IsRunning(); }, atMost) &&
           m_process.IsRunning();
}

bool Player::AwaitWindowTitled(const std::string& title, Clock::duration atMost) const
{
    return Eventually(
        [&] {
            return std::ranges::any_of(Windows(),
                                       [&](const Window& window) { return window.title == title; });
        },
        atMost);
}

std::string Player::Account()
{
    std::ostringstream account;
    account << "The player " << (m_process.IsRunning() ? "runs" : "has ended") << ". Its windows:";
    for (const Window& window : Windows())
        account << ' ' << window.id << " \"" << window.title << '"';
    account << ". The keyboard:";
    for (const unsigned long id : m_connection.Property(m_connection.Root(), "_NET_ACTIVE_WINDOW"))
        account << ' ' << id;
    account << ". All that are managed:";
    for (const unsigned long id : m_connection.Property(m_connection.Root(), "_NET_CLIENT_LIST"))
        account << ' ' << id;
    return account.str();
}

unsigned long Player::MainWindow() const
{
    for (const Window& window : Windows()) {
        if (window.title == kMainTitle)
            return window.id;
    }
    return 0;
}

QRect Player::WindowArea() const
{
    const unsigned long window = MainWindow();
    XWindowAttributes attributes = {};
    if (window == 0 || XGetWindowAttributes(m_connection.Display(), window, &attributes) == 0)
        return {};
    int x = 0;
    int y = 0;
    ::Window child = 0;
    XTranslateCoordinates(m_connection.Display(), window, m_connection.Root(), 0, 0, &x, &y,
                          &child);
    return {x, y, attributes.width, attributes.height};
}

bool Player::HasState(const char* name) const
{
    const std::vector<unsigned long> states = m_connection.Property(MainWindow(), "_NET_WM_STATE");
    return std::ranges::find(states, m_connection.Atom(name)) != states.end();
}

bool Player::IsFullScreen() const
{
    return HasState("_NET_WM_STATE_FULLSCREEN");
}

bool Player::IsMaximised() const
{
    return HasState("_NET_WM_STATE_MAXIMIZED_VERT") && HasState("_NET_WM_STATE_MAXIMIZED_HORZ");
}

void Player::SendToMainWindow(const char* protocol, long stamp) const
{
    const unsigned long window = MainWindow();
    XEvent event = {};
    event.xclient.type = ClientMessage;
    event.xclient.window = window;
    event.xclient.message_type = m_connection.Atom("WM_PROTOCOLS");
    event.xclient.format = 32;
    event.xclient.data.l[0] = static_cast<long>(m_connection.Atom(protocol));
    event.xclient.data.l[1] = stamp;
    event.xclient.data.l[2] = static_cast<long>(window);
    XSendEvent(m_connection.Display(), window, False, NoEventMask, &event);
    XFlush(m_connection.Display());
}

std::optional<Clock::duration> Player::AnswerTime(Clock::duration atMost) const
{
    static std::atomic<long> stamps = 1;
    const long stamp = ++stamps;
    const Moment asked = Clock::now();
    SendToMainWindow("_NET_WM_PING", stamp);
    const auto isAnswered = [&] {
        XEvent event = {};
        while (XCheckTypedEvent(m_connection.Display(), ClientMessage, &event) != 0) {
            if (event.xclient.data.l[1] == stamp)
                return true;
        }
        return false;
    };
    if (!Eventually(isAnswered, atMost, 1ms))
        return std::nullopt;
    return Clock::now() - asked;
}

void Player::AskToClose() const
{
    SendToMainWindow("WM_DELETE_WINDOW", CurrentTime);
}

void Player::AskForFullScreen(bool isWanted) const
{
    AskManager(isWanted, {"_NET_WM_STATE_FULLSCREEN"});
}

void Player::AskToMaximise() const
{
    AskManager(true, {"_NET_WM_STATE_MAXIMIZED_VERT", "_NET_WM_STATE_MAXIMIZED_HORZ"});
}

// Two states at most go into one message.
void Player::AskManager(bool isWanted, const std::vector<const char*>& states) const
{
    constexpr long kByUser = 2;
    XEvent event = {};
    event.xclient.type = ClientMessage;
    event.xclient.window = MainWindow();
    event.xclient.message_type = m_connection.Atom("_NET_WM_STATE");
    event.xclient.format = 32;
    event.xclient.data.l[0] = isWanted ? 1 : 0;
    for (std::size_t i = 0; i < states.size(); ++i)
        event.xclient.data.l[1 + i] = static_cast<long>(m_connection.Atom(states[i]));
    event.xclient.data.l[3] = kByUser;
    XSendEvent(m_connection.Display(), m_connection.Root(), False,
               SubstructureRedirectMask | SubstructureNotifyMask, &event);
    XFlush(m_connection.Display());
}

} // namespace lantern::test
