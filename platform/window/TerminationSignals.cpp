// SPDX-License-Identifier: GPL-3.0-or-later
#include "TerminationSignals.h"

#include <array>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace lantern {
namespace {

constexpr std::array kSignals = {SIGTERM, SIGINT, SIGHUP};

// A signal handler can reach nothing but globals, and may do little more than write to a pipe.
std::array<int, 2> g_pipe = {-1, -1};

void WakeEventLoop(int)
{
    const char byte = 1;
    [[maybe_unused]] const ssize_t written = write(g_pipe[1], &byte, 1);
}

int OpenPipe()
{
    if (pipe2(g_pipe.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        g_pipe = {-1, -1};
    return g_pipe[0];
}

// What the program was started to ignore, as by nohup, it goes on ignoring.
bool IsIgnored(int number)
{
    struct sigaction current = {};
    return sigaction(number, nullptr, &current) == 0 && current.sa_handler == SIG_IGN;
}

void HandleSignals(void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    for (const int number : kSignals) {
        if (!IsIgnored(number))
            sigaction(number, &action, nullptr);
    }
}

} // namespace

TerminationSignals::TerminationSignals(std::function<void()> terminate)
    : m_terminate(std::move(terminate)), m_notifier(OpenPipe(), QSocketNotifier::Read)
{
    if (g_pipe[1] < 0)
        return;
    QObject::connect(&m_notifier, &QSocketNotifier::activated, &m_notifier, [this] {
        m_notifier.setEnabled(false);
        HandleSignals(SIG_DFL); // whoever asks twice is not kept waiting
        m_terminate();
    });
    HandleSignals(WakeEventLoop);
}

TerminationSignals::~TerminationSignals()
{
    HandleSignals(SIG_DFL);
    m_notifier.setEnabled(false);
    for (int& end : g_pipe) {
        if (end >= 0)
            close(end);
        end = -1;
    }
}

} // namespace lantern
