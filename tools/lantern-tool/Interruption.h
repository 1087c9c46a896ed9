// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <functional>
#include <mutex>

namespace lantern::tool {

// What Ctrl+C, a request to end, a terminal that goes and a reader of a pipe that goes would leave
// half done: files that are removed before the program ends by that signal.
//
// Watch is called once, before any other thread is started. The rest may be called from any.
class Interruption {
public:
    // From here on a thread of its own waits for the signals. One that was ignored stays ignored.
    static void Watch();

    // Makes or removes the file and notes that, both at once as a signal sees it. The function
    // tells whether it succeeded; the file then counts as half, or no longer.
    static bool Begin(const QByteArray& path, const std::function<bool()>& make);
    static bool Finish(const QByteArray& path, const std::function<bool()>& put);

    // What is on the terminal's line is wiped away first.
    static void SetLineShown(bool isShown);
};

} // namespace lantern::tool
