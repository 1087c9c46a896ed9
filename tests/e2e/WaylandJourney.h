// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Journey.h"
#include "PlayerDesk.h"
#include "WaylandServer.h"

namespace lantern::test {

// The player under a Wayland compositor. Nobody outside a program can ask for its windows there:
// where they are is seen, and what the program says to the compositor is in its log.
class WaylandJourney : public Journey {
protected:
    // With outputs of these scales beside each other.
    explicit WaylandJourney(const std::vector<int>& scales = {1});
    void TearDown() override;

    // Starts the player, with nothing or with a file, and waits for nothing.
    void Start(const std::vector<std::string>& arguments = {},
               const EnvironmentChanges& environment = {});
    // A later start beside it.
    std::unique_ptr<Process> StartLater(const std::vector<std::string>& arguments,
                                        const EnvironmentChanges& environment) const;
    // Starts it with a track of one tone, and waits for its picture and its sound.
    void OpenTone();
    // Whether the program says this to the compositor, now or soon.
    bool AwaitRequest(const std::string& text) const;
    // How often it has said it.
    std::size_t Requests(const std::string& text) const;

    // Whether a menu stands there that the pointer opened, now or soon; whether it is gone.
    bool AwaitMenu(Point opened);
    bool AwaitNoMenu(Point opened);

    bool AwaitPictureSize(const QSize& units);
    QRect WindowArea(); // of the main window, by its picture
    PlayerDesk Desk() { return PlayerDesk(WindowArea()); }
    // Where a frame of the player's own colour stands: a window of this size in units, or a menu;
    // empty if there is none. A height of 0 stands for any.
    QRect FrameArea(const QSize& units);
    // The same, now or soon.
    QRect AwaitFrame(const QSize& units);
    bool AwaitNoFrame(const QSize& units);
    static constexpr QSize kOptions = {412, 220};

    int scale; // of the output that the player is on, which is the first at the start
    std::unique_ptr<WaylandServer> compositor;
    std::unique_ptr<Process> program;

private:
    Process::Command CommandOf(const std::vector<std::string>& arguments,
                               const EnvironmentChanges& environment,
                               const std::filesystem::path& log) const;

    std::filesystem::path m_log;
};

} // namespace lantern::test
