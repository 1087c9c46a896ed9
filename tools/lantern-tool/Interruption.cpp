// SPDX-License-Identifier: GPL-3.0-or-later
#include "Interruption.h"

#include "ErrorLine.h"

#include <array>
#include <csignal>
#include <cstdio>
#include <set>
#include <thread>
#include <unistd.h>

namespace lantern::tool {
namespace {

struct HalfFiles {
    std::mutex mutex;
    std::set<QByteArray> paths;
    bool isLineShown = false;
};

// It outlives all threads: never destroyed.
HalfFiles& TheHalfFiles()
{
    static auto* const files = new HalfFiles;
    return *files;
}

void EndBy(int signal)
{
    HalfFiles& files = TheHalfFiles();
    // Kept to the end: no other thread makes or finishes a file from here on.
    files.mutex.lock();
    for (const QByteArray& path : files.paths)
        unlink(path.constData());
    if (files.isLineShown)
        std::fputs("\r\x1B[K", ErrorStream());
    std::signal(signal, SIG_DFL);
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, signal);
    pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
    kill(getpid(), signal);
    // The default of all of them ends the program before this.
    _exit(128 + signal);
}

// The signal comes to the thread that writes, in the middle of its write: it holds no lock then.
void EndByBrokenPipe(int signal)
{
    EndBy(signal);
}

} // namespace

void Interruption::Watch()
{
    sigset_t set;
    sigemptyset(&set);
    for (const int signal : std::array{SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction action = {};
        if (sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_DFL)
            sigaddset(&set, signal);
    }
    pthread_sigmask(SIG_BLOCK, &set, nullptr);
    struct sigaction onBrokenPipe = {};
    if (sigaction(SIGPIPE, nullptr, &onBrokenPipe) == 0 && onBrokenPipe.sa_handler == SIG_DFL) {
        onBrokenPipe.sa_handler = EndByBrokenPipe;
        sigaction(SIGPIPE, &onBrokenPipe, nullptr);
    }
    // What goes beyond a limit of file sizes is an error of the write, as a full disk is.
    std::signal(SIGXFSZ, SIG_IGN);
    std::thread([set] {
        int signal = 0;
        if (sigwait(&set, &signal) == 0)
            EndBy(signal);
    }).detach();
}

bool Interruption::Begin(const QByteArray& path, const std::function<bool()>& make)
{
    HalfFiles& files = TheHalfFiles();
    const std::lock_guard lock(files.mutex);
    if (!make())
        return false;
    files.paths.insert(path);
    return true;
}

bool Interruption::Finish(const QByteArray& path, const std::function<bool()>& put)
{
    HalfFiles& files = TheHalfFiles();
    const std::lock_guard lock(files.mutex);
    if (!put())
        return false;
    files.paths.erase(path);
    return true;
}

void Interruption::SetLineShown(bool isShown)
{
    HalfFiles& files = TheHalfFiles();
    const std::lock_guard lock(files.mutex);
    files.isLineShown = isShown;
}

} // namespace lantern::tool
