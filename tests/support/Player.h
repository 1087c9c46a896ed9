// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Version.h"
#include "XServer.h"

#include <QRect>

#include <string>
#include <vector>

namespace lantern::test {

// Only the main window's title names the version.
inline constexpr const char* kMainTitle = "Lyric Lantern CDG Player " LANTERN_VERSION;

// The folders of a user of the player: settings, run-time files, home.
class PlayerHome {
public:
    PlayerHome();

    EnvironmentChanges Environment() const;
    std::filesystem::path SettingsFile() const;
    // The value of a setting in the file; empty if it is not there.
    std::string Setting(const std::string& key) const;
    const std::filesystem::path& Folder() const { return m_folder.Path(); }

private:
    ScratchFolder m_folder;
};

struct PlayerStart {
    std::vector<std::string> arguments = {};
    EnvironmentChanges environment = {}; // beyond display, sound and home
    std::string program = {};            // another build of the player; empty for the usual one
};

// The real program on a display, with a sound server and the folders of a user. Does not wait for
// the window; what asks for it does.
class Player {
public:
    struct Window {
        unsigned long id = 0;
        std::string title;
    };

    Player(const XServer& screen, const EnvironmentChanges& sound, const PlayerHome& home,
           const PlayerStart& start = {});
    ~Player();

    static std::string ProgramPath();

    Process& Program() { return m_process; }
    std::string Log() const { return ReadFile(m_log); }
    // Whether it runs, its windows and which of all windows has the keyboard, for a failure that
    // no log explains.
    std::string Account();

    // The windows of the program on the screen: the main window, message boxes, options.
    std::vector<Window> Windows() const;
    // Waits until the main window is there and has the keyboard. False if it never comes.
    bool AwaitWindow(Clock::duration atMost = 30s);
    bool AwaitWindowTitled(const std::string& title, Clock::duration atMost = 30s) const;
    QRect WindowArea() const; // of the main window, on the screen
    bool IsFullScreen() const;
    bool IsMaximised() const;

    // Asks the main window for a sign of life, which the program's event loop gives. Nothing if
    // there is none within the time.
    std::optional<Clock::duration> AnswerTime(Clock::duration atMost = 5s) const;
    // Asks the window to close, as a window manager's button would.
    void AskToClose() const;
    // Asks the window manager for a full screen or its end, as a panel or a key of its own would.
    void AskForFullScreen(bool isWanted) const;
    void AskToMaximise() const; // the same, with the panel left to be seen

private:
    unsigned long MainWindow() const;
    bool HasState(const char* name) const;
    void AskManager(bool isWanted, const std::vector<const char*>& states) const;
    void SendToMainWindow(const char* protocol, long stamp) const;

    XConnection m_connection;
    std::filesystem::path m_log;
    Process m_process;
};

} // namespace lantern::test
