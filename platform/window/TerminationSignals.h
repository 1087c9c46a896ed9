// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSocketNotifier>

#include <functional>

namespace lantern {

// Turns the system's requests to end the process (SIGTERM, SIGINT, SIGHUP) into a call from the
// event loop, so that the program ends as if its window had been closed. A signal that was ignored
// before stays so. One object at a time.
class TerminationSignals {
public:
    explicit TerminationSignals(std::function<void()> terminate);
    ~TerminationSignals();
    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;

private:
    std::function<void()> m_terminate;
    QSocketNotifier m_notifier;
};

} // namespace lantern
