// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Process.h"

#include <memory>
#include <string>

struct _XDisplay;

namespace lantern::test {

// A connection to a display, for one thread.
class XConnection {
public:
    explicit XConnection(const std::string& displayName);
    ~XConnection();
    XConnection(const XConnection&) = delete;
    XConnection& operator=(const XConnection&) = delete;

    _XDisplay* Display() const { return m_display; }
    unsigned long Root() const;
    unsigned long Atom(const char* name) const;
    // The 32-bit items of a window's property; empty if there is none.
    std::vector<unsigned long> Property(unsigned long window, const char* name) const;
    std::string TextProperty(unsigned long window, const char* name) const;
    // Those right on the screen, frames of a window manager among them; how many can be seen.
    std::vector<unsigned long> TopWindows() const;
    std::size_t VisibleWindows() const;

private:
    _XDisplay* m_display;
};

enum class WindowManager { Absent, Openbox };

// A screen that nobody sees, ready when the constructor returns.
class XServer {
public:
    explicit XServer(int width = 1280, int height = 800,
                     WindowManager manager = WindowManager::Openbox);
    ~XServer();

    const std::string& DisplayName() const { return m_displayName; }
    EnvironmentChanges Environment() const;
    // Whether it is as a new one: no window and no clipboard is left, no key is held, and the
    // pointer, which it puts there, is in the middle.
    bool MakeReady();
    int Width() const { return m_width; }
    int Height() const { return m_height; }

private:
    void StartServer();
    void StartWindowManager();

    ScratchFolder m_folder;
    int m_width;
    int m_height;
    std::string m_displayName;
    std::unique_ptr<Process> m_server;
    std::unique_ptr<Process> m_windowManager;
    std::size_t m_windowsAtStart = 0; // the window manager's own
};

} // namespace lantern::test
